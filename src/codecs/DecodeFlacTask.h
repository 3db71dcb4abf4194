#pragma once

#include "codecs/ConversionTask.h"
#include "tags/TagsObject.h"

namespace quav {

/// Decodes one FLAC file to WAV or AIFF with `flac` and takes its tags along. The output path is
/// the last argument.
class DecodeFlacTask : public ConversionTask {
public:
    DecodeFlacTask(const QString& fileName, const Services& services, const QString& launchPath,
                   const QStringList& arguments);

protected:
    void processTaskOutput(const QString& text) override;
    TagResult copyTags() override;

private:
    TagsObject getFlacTags() const;
};

} // namespace quav
