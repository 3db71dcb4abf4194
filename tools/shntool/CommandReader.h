#pragma once

#include "audio/file/AudioFile.h"
#include "shntool/Formats.h"

#include <vector>

namespace quav::shntool {

/// Has files decoded by the programs that the user chose, here (the last one of a format counts) or
/// in the environment; all others are read by ourselves.
audio::OpenSettings openSettings(const std::vector<InputDecoder>& decoders);

} // namespace quav::shntool
