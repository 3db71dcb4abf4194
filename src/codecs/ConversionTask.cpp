#include "codecs/ConversionTask.h"

namespace quav {

ConversionTask::ConversionTask(const QString& fileName, const QString& outputPath,
                               const Services& services, const QString& launchPath,
                               const QStringList& arguments, ComplaintReader complaintReader)
    : Converting(fileName, outputPath, services, launchPath, arguments),
      complaintReader_(complaintReader) {}

void ConversionTask::startTask() {
    conversion().begin();
    try {
        QUAVAsyncNSTask::startTask();
    } catch (...) {
        conversion().giveUp();
        throw;
    }
}

void ConversionTask::report(const QString& piece) {
    const QStringList lines = appendToReport(piece).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const ToolComplaint complaint = complaintReader_(line, title());
        if (complaint != ToolComplaint::None) {
            complaints_.add(line);
        }
        if (complaint == ToolComplaint::Damage) {
            conversion().noteDamage();
        }
    }
}

void ConversionTask::cleanup() {
    if (exitStatus() != 0) {
        conversion().giveUp();
    } else {
        for (const QString& complaint : complaints_.lines()) {
            addWarning(complaint);
        }
        conversion().complete();
    }
}

void ConversionTask::finalCleanup() {
    reportFailureAlone();
}

} // namespace quav
