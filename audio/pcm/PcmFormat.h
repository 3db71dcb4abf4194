#pragma once

#include <cstddef>
#include <cstdint>

namespace quav::pcm {

/// How the samples of a stream lie: interleaved, one sample of every channel to a block, each
/// sample left-aligned in whole bytes.
struct PcmFormat {
    unsigned channels = 0;
    unsigned bitsPerSample = 0;  ///< 1 to 32; the low bits of the container beyond them are zero
    unsigned bytesPerSample = 0; ///< 1 to 4
    std::uint32_t sampleRate = 0;
    std::uint32_t channelMask = 0; ///< WAVE_FORMAT_EXTENSIBLE's speaker bits; 0 when none are told
    bool bigEndian = false;
    bool isUnsigned = false; ///< as the 8-bit samples of WAV are

    /// Bytes of a block.
    std::size_t blockAlign() const { return std::size_t{channels} * bytesPerSample; }
    unsigned containerBits() const { return bytesPerSample * 8; }
};

} // namespace quav::pcm
