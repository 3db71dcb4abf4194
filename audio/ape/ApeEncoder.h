#pragma once

#include "audio/ape/FrameFormat.h"
#include "audio/pcm/InputFile.h"

#include <cstddef>
#include <functional>
#include <string>

namespace quav::ape {

struct EncodeOptions {
    const Level* level = nullptr;
    std::size_t jobs = 1; ///< frames that are encoded side by side
    /// Called at the start, and again for every start at a lower level, with the number of blocks
    /// to come.
    std::function<Advance(std::uint64_t blocks)> begin;
};

/// Makes a WAV stream into a Monkey's Audio 3.99 file; everything before and behind the samples is
/// kept. Samples whose sums a level cannot hold in 32 bits are encoded at the next lower one, since
/// readers disagree on the rest.
///
/// Throws Failure; with Kind::Unsupported for what such a file cannot hold: AIFF, more than two
/// channels, other depths than 8, 16 and 24 bits, no samples at all, or more than 4 GiB.
void encodeApe(pcm::InputFile input, const std::string& outputPath, const EncodeOptions& options);

} // namespace quav::ape
