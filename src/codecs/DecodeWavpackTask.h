#pragma once

#include "codecs/DecoderTask.h"

namespace quav {

/// Decodes one WavPack file to WAV or AIFF with `wvunpack` and takes its tags along.
class DecodeWavpackTask : public DecoderTask {
public:
    DecodeWavpackTask(const Job& job, const Services& services);

protected:
    std::vector<ToolCall> repairs(const ToolCall& step) const override;
    std::optional<Tags> readTags(const TagLibTagsHelper& reader) const override;
};

} // namespace quav
