#include "codecs/ConversionTask.h"

#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/Util.h"
#include "platform/PathNames.h"
#include "tags/Losses.h"

#include <QFileInfo>

#include <algorithm>
#include <exception>

namespace quav {

ConversionTask::ConversionTask(const QString& fileName, const QString& outputPath,
                               const Services& services, const QString& launchPath,
                               const QStringList& arguments, ComplaintReader complaintReader)
    : QUAVAsyncNSTask(services.queue, launchPath, arguments), services_(services),
      fileName_(fileName), outputPath_(outputPath), complaintReader_(complaintReader) {
    setTitle(lastPathComponent(fileName));
    setTextFieldString(title());
    setTextFieldValue();
    setWeight(static_cast<double>(std::max<qint64>(1, QFileInfo(fileName).size())));
}

void ConversionTask::startTask() {
    guard_.emplace(outputPath_, fileName_, existing_);
    try {
        QUAVAsyncNSTask::startTask();
    } catch (...) {
        giveUpOutput();
        throw;
    }
}

void ConversionTask::report(const QString& piece) {
    const QStringList lines = appendToReport(piece).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const ToolComplaint complaint = complaintReader_(line, lastPathComponent(fileName_));
        if (complaint != ToolComplaint::None) {
            complaints_ << line;
        }
        damaged_ |= complaint == ToolComplaint::Damage;
    }
}

void ConversionTask::noteProblems(const QStringList& sentences) {
    for (const QString& sentence : sentences) {
        addWarning(sentence);
        damaged_ = true;
    }
}

void ConversionTask::noteLosses(const QStringList& lost) {
    if (!lost.isEmpty()) {
        noteProblems({QCoreApplication::translate("ConversionTask", "not in the output: %1")
                          .arg(lost.join(QStringLiteral(", ")))});
    }
}

void ConversionTask::cleanup() {
    if (exitStatus() != 0) {
        giveUpOutput();
        return;
    }
    for (const QString& complaint : complaints_) {
        addWarning(complaint);
    }
    if (!QFileInfo(outputPath_).isFile()) {
        fail(QCoreApplication::translate("ConversionTask", "There is no output file “%1”.")
                 .arg(outputPath_));
    } else if (const TagResult tagged = guard_->producedHere() ? writeTags() : TagResult();
               !tagged) {
        fail(QCoreApplication::translate("ConversionTask", "Error writing tags to file:\n%1")
                 .arg(outputPath_) +
             u'\n' + tagged.error());
    } else {
        guard_->commit();
        removeSource();
        return;
    }
    giveUpOutput();
}

void ConversionTask::fail(const QString& reason) {
    setError(true);
    results()->appendResults(reason + u'\n', *this);
}

void ConversionTask::giveUpOutput() {
    const QString putAside = guard_->rollBack();
    if (!putAside.isEmpty()) {
        fail(QCoreApplication::translate("ConversionTask", "The earlier output file is now “%1”.")
                 .arg(putAside));
    }
}

TagResult ConversionTask::writeTags() {
    TagResult written;
    try {
        written = copyTags();
    } catch (const std::exception& exception) {
        written = tl::make_unexpected(QString::fromUtf8(exception.what()));
    }
    if (!written && damaged_) {
        // The tool went on through damage because it was told to, and what it wrote may be torn.
        addWarning(
            QCoreApplication::translate("ConversionTask", "the tags could not be written: %1")
                .arg(written.error()));
        return {};
    }
    if (written && !isSameFile(fileName_, outputPath_)) {
        noteLosses(lostBetween(fileName_, outputPath_));
    }
    return written;
}

void ConversionTask::finalCleanup() {
    if (!error()) {
        results()->setHasResults(false);
    }
}

void ConversionTask::removeSource() {
    if (!deleteOriginal_ || error() || cancelled() || isSameFile(fileName_, outputPath_)) {
        return;
    }
    if (damaged_) {
        addWarning(QCoreApplication::translate("ConversionTask", "the original was kept"));
        return;
    }
    Util::deleteFile(fileName_, services_.settings, services_.desktop);
}

} // namespace quav
