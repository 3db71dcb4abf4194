#pragma once

#include "audio/pcm/InputFile.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quav::flac {

/// The frames of a FLAC file between its metadata and its end, and what STREAMINFO tells of them
/// (RFC 9639). Nothing is decoded: a frame's header tells which samples it holds.
struct Frames {
    std::uint64_t begin = 0; ///< the place of the first one in the file
    std::uint64_t end = 0;   ///< without the tags that other programs put behind
    unsigned minimalBlock = 0;
    unsigned maximalBlock = 0;
    unsigned channels = 0;
    unsigned bits = 0;
    std::uint64_t total = 0; ///< samples of a channel; 0 when that is not told

    /// Bytes of the longest frame that an encoder would write.
    std::uint64_t longestFrame() const;
};

/// Reads the metadata of a regular file; tags in front are passed over. Nothing when it is no FLAC
/// file or has no STREAMINFO. Throws pcm::Failure with Kind::Read.
std::optional<Frames> findFrames(const pcm::InputFile& input);

/// How many samples a decoder finds that reads on to the end: the last frame tells it. Nothing when
/// no whole frame stands there.
std::optional<std::uint64_t> samplesAtEnd(const pcm::InputFile& input, const Frames& frames);

/// What of the sound in a FLAC file is passed over by whoever reads as many samples as STREAMINFO
/// tells, as a part of a sentence; nothing when there is none.
std::optional<std::string> soundLeftOut(const pcm::InputFile& input);

} // namespace quav::flac
