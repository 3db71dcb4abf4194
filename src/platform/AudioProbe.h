#pragma once

#include <QString>

#include <chrono>

namespace quav {

/// Keeps the audio library from writing its own messages to standard error. Called once, at the
/// start.
void silenceAudioLibrary();

/// True when the file's content, whatever its name, is WAV (also RF64) or AIFF (also AIFF-C).
/// Reads only the first few kilobytes; false for what cannot be read.
bool isAiffOrWav(const QString& path);

/// True when the file is an MP4 file whose audio is Apple Lossless.
bool isAppleLossless(const QString& path);

/// The playing time as the file's header has it; none for what is no audio or does not say.
std::chrono::milliseconds audioLength(const QString& path);

} // namespace quav
