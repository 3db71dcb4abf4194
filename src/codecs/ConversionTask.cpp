#include "codecs/ConversionTask.h"

#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "tags/Losses.h"

#include <QFileInfo>

#include <algorithm>

namespace quav {

ConversionTask::ConversionTask(const QString& fileName, const QString& outputPath,
                               const Services& services, const QString& launchPath,
                               const QStringList& arguments, ComplaintReader complaintReader)
    : QUAVAsyncNSTask(services.queue, launchPath, arguments),
      conversion_(*this, fileName, outputPath,
                  {services.settings, services.desktop, services.claims},
                  {[this] { return copyTags(); }, lostBetween}),
      complaintReader_(complaintReader) {
    setTitle(lastPathComponent(fileName));
    setTextFieldString(title());
    setTextFieldValue();
    setWeight(static_cast<double>(std::max<qint64>(1, QFileInfo(fileName).size())));
}

void ConversionTask::setDeleteOriginal(bool deleteOriginal) {
    ConversionWishes wishes = conversion_.wishes();
    wishes.deleteOriginal = deleteOriginal;
    conversion_.setWishes(wishes);
}

void ConversionTask::startTask() {
    conversion_.begin();
    try {
        QUAVAsyncNSTask::startTask();
    } catch (...) {
        conversion_.giveUp();
        throw;
    }
}

void ConversionTask::abandon() {
    conversion_.abandon();
    QUAVAsyncNSTask::abandon();
}

void ConversionTask::report(const QString& piece) {
    const QStringList lines = appendToReport(piece).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const ToolComplaint complaint = complaintReader_(line, title());
        if (complaint != ToolComplaint::None) {
            complaints_.add(line);
        }
        if (complaint == ToolComplaint::Damage) {
            conversion_.noteDamage();
        }
    }
}

void ConversionTask::noteProblems(const QStringList& sentences) {
    for (const QString& sentence : sentences) {
        addWarning(sentence);
    }
}

void ConversionTask::cleanup() {
    if (exitStatus() != 0) {
        conversion_.giveUp();
    } else {
        for (const QString& complaint : complaints_.lines()) {
            addWarning(complaint);
        }
        conversion_.complete();
    }
}

void ConversionTask::finalCleanup() {
    if (!error()) {
        results()->setHasResults(false);
    }
}

} // namespace quav
