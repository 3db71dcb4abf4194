#pragma once

#include <QString>

#include <tl/expected.hpp>

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

/// What a file says of its sound.
struct AudioDescription {
    QString format;                      ///< "flac", "wav", "shn", ...
    std::chrono::milliseconds length{0}; ///< 0: not told
    int sampleRate = 0;                  ///< blocks per second
    int bits = 0;                        ///< of a sample; 0 where that means nothing
    int channels = 0;
    int misalignment = 0; ///< bytes behind the last whole sector, if it is CD audio
};

/// Reads the beginning of a file, and where its format asks for it a little of its end; decodes
/// nothing. The error is a sentence; it is empty for what is no audio at all. Any thread.
tl::expected<AudioDescription, QString> describeAudio(const QString& path);

} // namespace quav
