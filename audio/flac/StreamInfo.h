#pragma once

#include "audio/pcm/Digest.h"
#include "audio/pcm/InputFile.h"

#include <cstdint>
#include <optional>

namespace quav::flac {

/// What a FLAC file's STREAMINFO tells (RFC 9639, section 8.2), and where the file goes on behind
/// its metadata.
struct StreamInfo {
    unsigned minimalBlock = 0; ///< samples of a channel, like the next one
    unsigned maximalBlock = 0;
    std::uint32_t sampleRate = 0;
    unsigned channels = 0;
    unsigned bits = 0;         ///< of a sample
    std::uint64_t total = 0;   ///< samples of a channel; 0 when that is not told
    pcm::Md5Digest digest{};   ///< of the samples; zeros when it is not told
    std::uint64_t audioAt = 0; ///< the place of the first frame, at most the size of the file
};

/// Reads the metadata's headers; ID3v2 tags in front are passed over, all of them. Nothing when it
/// is no FLAC file or does not begin with STREAMINFO. Throws pcm::Failure with Kind::Read.
std::optional<StreamInfo> readStreamInfo(const pcm::InputFile& input);

} // namespace quav::flac
