#pragma once

#include <QString>

namespace quav {

/// True when the file's content, whatever its name, is WAV (also RF64) or AIFF (also AIFF-C).
/// Reads only the first few kilobytes; false for what cannot be read.
bool isAiffOrWav(const QString& path);

/// True when the file is an MP4 file whose audio is Apple Lossless.
bool isAppleLossless(const QString& path);

} // namespace quav
