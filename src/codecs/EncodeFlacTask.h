#pragma once

#include "codecs/ConversionTask.h"
#include "tags/TagsObject.h"

#include <memory>

namespace quav {

/// Encodes one file to FLAC with `flac` and takes the tags of WAV and AIFF files along. The output
/// path is the last argument. The report is shared with the other files of the batch.
class EncodeFlacTask : public ConversionTask {
public:
    EncodeFlacTask(const QString& fileName, const Services& services, const QString& launchPath,
                   const QStringList& arguments, std::shared_ptr<QUAVTaskResults> results);

protected:
    void processTaskOutput(const QString& text) override;
    TagResult copyTags() override;

private:
    TagsObject getAiffTags();
    TagsObject getWavTags();

    double lastPercentageDisplayed_ = 0;
};

} // namespace quav
