#pragma once

#include "pcm/PcmFormat.h"
#include "tta/Stream.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quav::tta {

/// FFmpeg's encoder takes memory for twice the size of a frame's samples, and ends the process when
/// a frame needs more. Code is larger than its samples by a quarter at most, but the checksum and
/// the first loud samples come on top, which are too much for a short frame. From this many blocks
/// on there is room enough.
constexpr std::uint32_t safeFrameLength = 4096;

/// Codes a frame of fewer blocks than that; what FrameEncoder does otherwise.
std::vector<std::uint8_t> encodeShortFrame(const Header& header, const pcm::PcmFormat& format,
                                           std::span<const std::uint8_t> samples);

} // namespace quav::tta
