#pragma once

#include "audio/ape/FrameFormat.h"
#include "audio/ape/RangeEncoder.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quav::ape {

/// Encodes frames of the Monkey's Audio 3.99 stream, each on its own.
class FrameEncoder {
public:
    explicit FrameEncoder(const FrameFormat& format, Advance advance = {})
        : format_(format), advance_(std::move(advance)) {}

    /// Encodes the blocks of a frame; `frame` gets exactly its bytes, in logical order. False when
    /// a sum grew so large that not every reader would get the samples back: then the whole stream
    /// is to be made at a lower level.
    bool encode(std::span<const std::uint8_t> pcm, std::vector<std::uint8_t>& frame) const;

private:
    std::uint32_t findSpecials(std::span<const std::uint8_t> pcm) const;
    template <typename Stage>
    bool encodeSamples(std::span<const std::uint8_t> pcm, RangeEncoder& coder) const;

    FrameFormat format_;
    Advance advance_;
};

} // namespace quav::ape
