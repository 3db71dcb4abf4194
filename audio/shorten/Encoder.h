#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/InputFile.h"

namespace quav::shorten {

/// Reads a WAV or AIFF file with samples of 8 or 16 bits and up to 8 channels to its end and writes
/// a Shorten stream of version 2 that holds every byte of it. Needs no size in advance.
/// Throws Failure for what PcmReader does, and with Kind::Unsupported for what Shorten cannot hold.
void encode(pcm::InputFile& input, pcm::ByteSink& output);

} // namespace quav::shorten
