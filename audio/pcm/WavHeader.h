#pragma once

#include "audio/pcm/PcmFormat.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quav::pcm {

enum class WavKind {
    Usual, ///< what programs that know many channels want to see
    Plain  ///< 44 bytes always, for programs that know no others
};

/// The header of a WAV file with so many blocks of little-endian samples: 44 bytes and format tag 1
/// for one or two channels whatever the depth, WAVE_FORMAT_EXTENSIBLE with a speaker mask for more,
/// RF64 (EBU Tech 3306) when the file grows beyond 4 GiB. The mask is the format's, or the usual
/// one for so many channels. WavKind::Plain leaves the speakers out.
std::vector<std::uint8_t> wavHeader(const PcmFormat& format, std::uint64_t blocks,
                                    WavKind kind = WavKind::Usual);

/// The same for samples of so many bytes, which need not make whole blocks.
std::vector<std::uint8_t> wavHeaderOfBytes(const PcmFormat& format, std::uint64_t dataBytes,
                                           WavKind kind = WavKind::Usual);

/// Number of zero bytes after the samples: 1 when they are an odd number of bytes.
std::size_t wavPadding(const PcmFormat& format, std::uint64_t blocks);

} // namespace quav::pcm
