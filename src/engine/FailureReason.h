#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

namespace quav {

/// What is known of a failed task beside its words.
struct FailureFacts {
    QString tool;       ///< the tool that it ran; empty when it ran none
    int exitStatus = 0; ///< the tool's, 128 plus the signal's number for one that a signal ended
    /// How long the tool had done nothing when it was ended for that.
    std::optional<std::chrono::milliseconds> stalledFor;
    bool outputDiskFull = false; ///< the disk of its output has or had no room left
    QString own = QString();     ///< what this program found wrong after the tool had succeeded
};

/// Whether the tool was ended by a signal.
bool wasKilled(int exitStatus);

/// Why a task failed, in one line that is never empty. `said` is what the task and its tool said.
QString failureReason(const FailureFacts& facts, const QString& said);

/// That a tool did nothing for so long and was ended, in words.
QString endedForStalling(const QString& tool, std::chrono::milliseconds quiet);

/// A span of time for such sentences: "45 s", "10 min".
QString spanInWords(std::chrono::milliseconds span);

/// Whether the disk that an output was being written to has no room left, or had none before a tool
/// that failed took its half output away: when what the tool had written would fill it again.
bool isDiskFullFor(const QString& output, std::uint64_t bytesWritten);

/// The same when the tool's words blame the writing, in the manner of `flac`: then the disk was
/// full if it has hardly room for what comes of so many bytes of input, since half outputs of
/// others may have made room in the meantime.
bool isDiskFullFor(const QString& output, std::uint64_t inputBytes, const QString& said);

} // namespace quav
