#pragma once

#include "libav/LibAv.h"
#include "pcm/PcmFormat.h"
#include "tta/Stream.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quav::tta {

/// Codes the frames of a stream, in any order; only the shorter last one must be the last it gets.
/// For frames of fewer than safeFrameLength blocks there is encodeShortFrame().
class FrameEncoder {
public:
    /// Throws pcm::Failure when libavcodec cannot be loaded or has no such encoder.
    explicit FrameEncoder(const Header& header);

    /// Codes the samples of a frame, whose container is as wide as the header says. Returns the
    /// coded frame with its checksum, valid until the next call.
    std::span<const std::uint8_t> encode(const pcm::PcmFormat& format,
                                         std::span<const std::uint8_t> samples);

private:
    libav::CodecContext context_;
    libav::Frame frame_;
    libav::Packet packet_;
    std::vector<std::int32_t> numbers_;
};

/// Decodes the frames of a stream, in any order.
class FrameDecoder {
public:
    /// Throws pcm::Failure when libavcodec cannot be loaded or has no such decoder.
    explicit FrameDecoder(const Header& header);

    /// Decodes a frame (checksum included, but not looked at) to the samples of a WAV file. Returns
    /// whether they are as many as the frame is to hold.
    bool decode(std::span<const std::uint8_t> coded, std::uint32_t blocks,
                std::vector<std::uint8_t>& samples);

private:
    pcm::PcmFormat format_;
    libav::CodecContext context_;
    libav::Frame frame_;
    libav::Packet packet_;
};

} // namespace quav::tta
