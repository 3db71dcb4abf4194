#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/PcmFormat.h"

#include <cstdint>

namespace quav::libav {

/// An audio stream that FFmpeg's libraries decode.
struct LibavStream {
    pcm::PcmFormat format;    ///< as a WAV file has the samples
    std::uint64_t blocks = 0; ///< 0 when the file does not tell
};

/// Looks at the file's header. `start` and `demuxer` are as for Demuxer. Throws
/// pcm::Failure, of Kind::Unsupported when the samples are not stored without loss.
LibavStream findLibavStream(const pcm::InputFile& input, std::uint64_t start, const char* demuxer);

/// Writes the samples in this format. Throws pcm::Failure at the first damage.
void decodeWithLibav(const pcm::InputFile& input, std::uint64_t start, const char* demuxer,
                     const pcm::PcmFormat& format, pcm::ByteSink& to);

} // namespace quav::libav
