#pragma once

#include <optional>
#include <string>

namespace quav::audio {

/// Who is to read a file to its end.
enum class ReadBy {
    Others,   ///< programs that take every size in it for what it seems to be
    Ourselves ///< our own readers, which read on where the true size is beyond doubt
};

/// What of the sound in a file would be passed over, as a part of a sentence that names it: "4.29
/// GB of sound stand behind its data chunk"; nothing when everything is read. That is known of WAV,
/// AIFF and FLAC files; of any other nothing is said.
///
/// It looks at headers and here and there at a few bytes, and decodes nothing. Throws pcm::Failure
/// when the file cannot be read, and for WAV and AIFF files that our readers refuse: damaged, cut
/// short, or without integer samples.
std::optional<std::string> soundLeftOut(const std::string& path, ReadBy reader = ReadBy::Others);

} // namespace quav::audio
