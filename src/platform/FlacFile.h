#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace quav {

/// How long a FLAC file is, in samples of one channel, by two witnesses. A decoder takes the first
/// for granted as long as there is enough to decode: one that is too small costs it no word.
struct FlacCount {
    std::uint64_t told; ///< what STREAMINFO at the beginning says; 0: it leaves it open
    std::uint64_t held; ///< where the last frame ends, counted from the start of the first

    bool agrees() const { return told == 0 || told == held; }

    /// A sentence for the user about two that do not agree.
    QString difference() const;
};

/// Reads little but the beginning and the last frame, and decodes nothing. None for what is no FLAC
/// file or cannot be read, and when no whole frame stands at the end; tags behind the frames
/// (ID3v1, APE) do not count. Any thread.
std::optional<FlacCount> flacCount(const QString& path);

/// The MD5 of the sound, 16 bytes, as STREAMINFO tells it; zeros when the encoder never had all of
/// it. None for what is no FLAC file or cannot be read. Any thread.
std::optional<QByteArray> flacDigest(const QString& path);

} // namespace quav
