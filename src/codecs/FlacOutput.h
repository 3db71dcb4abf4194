#pragma once

#include "codecs/ToolComplaint.h"

#include <QString>

#include <optional>

/// What `flac` says, read as text. Nothing here knows a task.
namespace quav::flacoutput {

/// What one piece of the decoder's output says about its progress: a percentage, or nothing when
/// the piece holds none.
///
///     "big.flac: 61% complete"   ->  61
///     "\b\b\b...99% complete"    ->  99
std::optional<double> decodePercentage(const QString& piece);

/// What one piece of the encoder's output says about its progress.
///
///     "big.wav: 28% complete, ratio=0.490"  ->  "28", 28, "ratio=0.490"
struct EncodeProgress {
    QString percentText; ///< empty when the piece holds no percentage
    double percent = -1;
    QString detail; ///< from "ratio=" on
};
EncodeProgress encodeProgress(const QString& piece);

/// What a completed line complains of. `fileName` is the name that the tool puts before what it
/// says about the file.
ToolComplaint complaintIn(const QString& line, const QString& fileName);

} // namespace quav::flacoutput
