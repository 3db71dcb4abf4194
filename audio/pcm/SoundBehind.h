#pragma once

#include "audio/pcm/InputFile.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace quav::pcm {

/// Reads at a place of what is looked at; fewer bytes than asked only at its end.
using ReadAt = std::function<std::size_t(std::uint64_t offset, std::span<std::uint8_t> to)>;

/// What stands behind the samples of a WAV or AIFF file.
struct Behind {
    /// What of it is sound, as a part of a sentence: "4.29 GB of sound stand behind its data
    /// chunk". Other chunks, tags, zeros and the few bytes that some programs leave are none.
    std::optional<std::string> sound;
    /// There are chunks and tags up to the very end, or nothing at all.
    bool isTidy = false;
};

/// Where samples end, and what kind of file they stand in.
struct SoundEnd {
    std::uint64_t samplesEnd = 0; ///< behind the last sample that is read
    std::uint64_t chunkEnd = 0;   ///< of the chunk they stand in, before a byte that evens it out
    std::uint64_t fileEnd = 0;    ///< of all there is
    std::size_t blockAlign = 1;
    bool isOdd = false; ///< the chunk's size is
    bool isAiff = false;
};

Behind lookBehind(const ReadAt& readAt, const SoundEnd& end);

/// How much sound the data chunk of a WAV file holds.
struct SoundExtent {
    std::uint64_t bytes = 0; ///< never more than there are when `isUnknown`
    bool isUnknown = false;  ///< the size that is told is no size; the samples go on to the end
    /// What would be left out by whoever reads no more than `bytes`.
    std::optional<std::string> leftOut;
    /// What would be left out by whoever takes the size that is told for what it seems to be.
    std::optional<std::string> leftOutAsTold;
};

/// What a header tells of its data chunk.
struct ToldData {
    std::uint64_t from = 0; ///< the place of the first sample
    std::uint64_t bytes = 0;
    bool isLong = false; ///< in 64 bits, as RF64 does
    std::size_t blockAlign = 1;
};

/// What that means in a regular file. Where it is beyond doubt, there is more than 32 bits tell:
/// they stand for an unknown size, or the true one is larger by some 4 GiB, and what follows the
/// samples stands there.
SoundExtent extentOfData(const InputFile& input, const ToldData& told);

/// Whether recorders that write to a pipe put this where the size belongs, which they do not know.
bool standsForUnknown(std::uint64_t size);

/// Where the tags begin that other programs put behind everything (ID3v1, ID3v2 with a footer, APE,
/// Lyrics3); `end` when there are none. They do not begin before `begin`.
std::uint64_t beginOfTags(const ReadAt& readAt, std::uint64_t begin, std::uint64_t end);

/// "816 bytes", "35.3 kB", "4.29 GB".
std::string sizeText(std::uint64_t bytes);

} // namespace quav::pcm
