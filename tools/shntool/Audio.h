#pragma once

#include "audio/file/AudioFile.h"
#include "audio/pcm/Reader.h"
#include "audio/wav/Wave.h"

/// The names of the audio library that every mode uses.
namespace quav::shntool {

using audio::AudioFile;
using pcm::Reader;
using wav::canonicalHeader;
using wav::paddingTo;
using wav::resizedHeader;
using wav::sectorSize;
using wav::sectorsPerSecond;
using wav::shortestTrack;
using wav::Wave;
using wav::WaveHeader;

} // namespace quav::shntool
