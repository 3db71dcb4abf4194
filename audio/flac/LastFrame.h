#pragma once

#include "audio/flac/StreamInfo.h"
#include "audio/pcm/InputFile.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quav::flac {

/// The frames of a FLAC file between its metadata and its end (RFC 9639, section 9). Nothing is
/// decoded: a frame's header tells which samples it holds.
struct Frames {
    StreamInfo info;
    std::uint64_t end = 0; ///< the end of the last one in the file: tags may stand behind it

    /// Bytes of the longest frame that an encoder would write.
    std::uint64_t longestFrame() const;
};

/// Nothing when it is no FLAC file. Throws pcm::Failure with Kind::Read.
std::optional<Frames> findFrames(const pcm::InputFile& input);

/// How many samples a decoder finds that reads on to the end: the last frame tells it. Nothing when
/// no whole frame stands there, 0 when there are no frames at all. One pass over the longest frame,
/// whatever stands there.
std::optional<std::uint64_t> samplesAtEnd(const pcm::InputFile& input, const Frames& frames);

/// What of the sound in a FLAC file is passed over by whoever reads as many samples as STREAMINFO
/// tells, as a part of a sentence; nothing when there is none.
std::optional<std::string> soundLeftOut(const pcm::InputFile& input);

} // namespace quav::flac
