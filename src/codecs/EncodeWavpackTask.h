#pragma once

#include "codecs/EncoderTask.h"

#include <memory>

namespace quav {

/// Encodes one file to WavPack with `wavpack` and takes the tags of FLAC, AIFF and WAV files along.
class EncodeWavpackTask : public EncoderTask {
public:
    EncodeWavpackTask(const Job& job, const Services& services,
                      std::shared_ptr<QUAVTaskResults> results);

protected:
    TagResult writeTags(TagLibTagsHelper& writer, const TagsObject& tags) override;
};

} // namespace quav
