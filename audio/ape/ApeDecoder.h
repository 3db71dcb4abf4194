#pragma once

#include "audio/ape/ApeFile.h"
#include "audio/ape/FrameFormat.h"
#include "audio/pcm/ByteSink.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quav::ape {

/// Writes the samples of a file and what stands behind them in the WAV file, `jobs` frames side by
/// side. Behind ApeFile::wavHeader() this makes the WAV file that was encoded.
///
/// Throws Failure with Kind::Input at the first damage; samples that it has written are right.
void decodeApe(const ApeFile& file, std::size_t jobs, const Advance& advance, pcm::ByteSink& to);

/// Decodes the whole file and compares all checksums. Returns what is damaged: which frames,
/// counted from 1, of what time; and whether the digest is wrong, which is over the frames and
/// everything around them. Nothing for a sound file.
std::vector<std::string> verifyApe(const ApeFile& file, std::size_t jobs, const Advance& advance);

} // namespace quav::ape
