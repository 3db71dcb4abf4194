#pragma once

#include "audio/pcm/PcmFormat.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quav::tta {

/// Codes and decodes the frames of a TTA1 stream, each on its own. A sample goes through the
/// difference of neighbouring channels, a fixed prediction from the sample before, an adaptive
/// filter of eight taps, and an adaptive Rice code with two depths, the lowest bit of every byte
/// first.
///
/// FFmpeg's coder would do, but its encoder ends the process where a few loud samples in near
/// silence need more room than it thinks, and its decoder cannot read five channels.
class FrameCoder {
public:
    /// `format` is that of the samples of encode(), in any byte order, and of decode().
    explicit FrameCoder(const pcm::PcmFormat& format) : format_(format) {}

    /// Codes whole blocks of samples; a checksum of four bytes ends the frame.
    void encode(std::span<const std::uint8_t> samples, std::vector<std::uint8_t>& coded);

    /// Decodes a frame of so many blocks, without looking at its checksum. False when the code ends
    /// too early or holds impossible numbers.
    bool decode(std::span<const std::uint8_t> coded, std::uint32_t blocks,
                std::vector<std::uint8_t>& samples);

private:
    pcm::PcmFormat format_;
    std::vector<std::int32_t> numbers_;
};

} // namespace quav::tta
