#include "codecs/EncodeFlacTask.h"

#include "codecs/FlacOutput.h"
#include "platform/PathNames.h"
#include "tags/TagLibTagsHelper.h"

#include <optional>
#include <utility>

namespace quav {

EncodeFlacTask::EncodeFlacTask(const QString& fileName, const Services& services,
                               const QString& launchPath, const QStringList& arguments,
                               std::shared_ptr<QUAVTaskResults> results)
    : ConversionTask(fileName, arguments.last(), services, launchPath, arguments,
                     flacoutput::complaintIn) {
    setResults(std::move(results));
}

void EncodeFlacTask::processTaskOutput(const QString& text) {
    const auto progress = flacoutput::encodeProgress(text);
    // The display moves in steps of one percent.
    if (!progress.percentText.isEmpty() && progress.percent >= lastPercentageDisplayed_ + 1) {
        showMainLine(title());
        showProgress(QCoreApplication::translate("EncodeFlacTask", "Encoding to Flac: %1% %2")
                         .arg(progress.percentText, progress.detail),
                     progress.percent);
        lastPercentageDisplayed_ = progress.percent;
    }
    report(text);
}

TagsObject EncodeFlacTask::getAiffTags() {
    showStatus(QCoreApplication::translate("EncodeFlacTask", "Reading AIFF Tags"));
    return TagLibTagsHelper().tagsForAIFFFile(fileName());
}

TagsObject EncodeFlacTask::getWavTags() {
    showStatus(QCoreApplication::translate("EncodeFlacTask", "Reading WAV Tags"));
    return TagLibTagsHelper().tagsForWAVEFile(fileName());
}

TagResult EncodeFlacTask::copyTags() {
    const QString word = formatWord(fileName());
    std::optional<TagsObject> tags;
    if (word == u"AIFF" || word == u"AIF") {
        tags = getAiffTags();
    } else if (word == u"WAV") {
        tags = getWavTags();
    }
    if (!tags) {
        return {};
    }
    showStatus(QCoreApplication::translate("EncodeFlacTask", "Writing Flac Tags"));
    TagLibTagsHelper writer;
    TagResult written = writer.writeTagsForFLACFile(outputPath(), *tags, true);
    noteProblems(writer.problems());
    return written;
}

} // namespace quav
