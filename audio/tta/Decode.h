#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/Progress.h"
#include "audio/tta/Stream.h"

#include <cstddef>
#include <functional>
#include <string>

namespace quav::tta {

/// Gets a line about every frame that cannot be decoded: its number, its time, what is wrong.
using DamageHandler = std::function<void(const std::string&)>;

/// Decodes a stream with up to `jobs` threads and passes on the samples as a WAV file has them.
/// Every frame's checksum is checked. A damaged frame leaves a gap, unless `damaged` throws.
void decode(const Stream& stream, std::size_t jobs, pcm::ByteSink& samples, pcm::Progress& progress,
            const DamageHandler& damaged);

} // namespace quav::tta
