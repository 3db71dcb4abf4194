#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/Digest.h"
#include "audio/pcm/PcmFormat.h"

#include <cstdint>
#include <string>

namespace quav::flac {

/// What a FLAC file's STREAMINFO tells.
struct FlacStream {
    pcm::PcmFormat format;    ///< as a WAV file has the samples
    std::uint64_t blocks = 0; ///< 0 when the file does not tell
    pcm::Md5Digest digest{};  ///< of the samples; zeros when the file does not tell
};

/// Throws pcm::Failure when there is no STREAMINFO or it contradicts itself.
FlacStream readFlacStream(const std::string& path);

/// Writes the samples. Throws pcm::Failure at the first damage, and in the end when `checksDigest`
/// and the digest is wrong.
void decodeFlac(const std::string& path, const pcm::PcmFormat& format, bool checksDigest,
                pcm::ByteSink& to);

} // namespace quav::flac
