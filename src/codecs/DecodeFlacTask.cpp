#include "codecs/DecodeFlacTask.h"

#include "codecs/FlacOutput.h"
#include "platform/PathNames.h"
#include "tags/TagLibTagsHelper.h"

namespace quav {

DecodeFlacTask::DecodeFlacTask(const QString& fileName, const Services& services,
                               const QString& launchPath, const QStringList& arguments)
    : ConversionTask(fileName, arguments.last(), services, launchPath, arguments,
                     flacoutput::complaintIn) {}

void DecodeFlacTask::processTaskOutput(const QString& text) {
    if (const auto percentage = flacoutput::decodePercentage(text)) {
        showProgress(QCoreApplication::translate("DecodeFlacTask", "Decoding Flac: %1%")
                         .arg(*percentage, 0, 'f', 6),
                     *percentage);
    }
    report(text);
    showMainLine(title());
}

TagsObject DecodeFlacTask::getFlacTags() const {
    return TagLibTagsHelper().tagsForFlacFile(fileName());
}

TagResult DecodeFlacTask::copyTags() {
    const TagsObject tags = getFlacTags();
    showStatus(QCoreApplication::translate("DecodeFlacTask", "Copying Flac Tags"));
    TagLibTagsHelper writer;
    TagResult written = outputPath().endsWith(u".aiff")
                            ? writer.writeTagsForAIFFFile(outputPath(), tags)
                            : writer.writeTagsForWAVEFile(outputPath(), tags);
    noteProblems(writer.problems());
    return written;
}

} // namespace quav
