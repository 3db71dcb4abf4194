#pragma once

#include "audio/ape/ApeFile.h"
#include "audio/ape/FrameDecoder.h"
#include "audio/ape/FrameFormat.h"

#include <cstdint>
#include <functional>

namespace quav::ape {

/// Gets the frames of a file in order; null for one that is damaged.
using FrameHandler = std::function<void(std::uint32_t frame, const DecodedFrame* samples)>;

/// Decodes all frames of a file of any version with FFmpeg's libraries. Throws Failure when they
/// are not there or do not take the file at all.
void decodeOldFrames(const ApeFile& file, const Advance& advance, const FrameHandler& handle);

} // namespace quav::ape
