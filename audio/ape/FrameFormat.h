#pragma once

#include "audio/ape/Level.h"
#include "audio/pcm/PcmFormat.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace quav::ape {

/// What all frames of a stream have in common.
struct FrameFormat {
    const Level* level = nullptr;
    pcm::PcmFormat pcm; ///< 8 to 24 bits, one or two channels, as in a WAV file
};

/// Called now and then from whatever thread works, with the number of blocks since the last call.
/// It may throw to end the work.
using Advance = std::function<void(std::uint64_t blocks)>;

/// What a frame holds besides its residuals, or in place of them.
namespace special {

inline constexpr std::uint32_t silent = 3;
inline constexpr std::uint32_t sameChannels = 4;

} // namespace special

/// Blocks that go through the stages of a codec at a time; few enough to stay in the nearest cache.
inline constexpr std::size_t chunkBlocks = 2048;

/// The byte that silence consists of.
inline std::uint8_t silentByte(const pcm::PcmFormat& format) {
    return format.isUnsigned ? 0x80 : 0;
}

} // namespace quav::ape
