#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <span>

namespace quav {

/// A tool call that reads a file and writes nothing: how a format is tested. The path stands behind
/// the option, or in front of it.
struct TestCall {
    const char* tool;
    const char* option;
    bool pathFirst = false;

    QStringList arguments(const QString& path) const;
};

/// A format of audio files, told by the extension. Which tool makes and reads it is the business of
/// the subsystems; what every one of them has to know of it stands here, once.
struct AudioFormat {
    /// The tabs that take files of a format.
    enum Taker : unsigned {
        Decode = 1U << 0,
        Encode = 1U << 1,
        Checksum = 1U << 2,
        Shntool = 1U << 3,
        FixSBE = 1U << 4,
        Lossy = 1U << 5,
        Tags = 1U << 6,
        Everybody = (1U << 7) - 1,
    };

    const char* word = "";      ///< the extension in capitals
    const char* extension = ""; ///< of new files
    bool isPacked = false;      ///< compressed without loss, so that decoding is what it is for
    unsigned takers = 0;        ///< some of `Taker`
    std::optional<TestCall> test = std::nullopt;
    const char* otherWord = nullptr; ///< another extension in capitals

    bool isTakenBy(Taker taker) const { return (takers & taker) != 0; }
    QString name() const { return QString::fromLatin1(word); }
    QStringList words() const;

    /// Formats are what they are by where they stand in the table.
    bool operator==(const AudioFormat& other) const { return this == &other; }
};

namespace formats {
inline constexpr AudioFormat flac{"FLAC", "flac", true, AudioFormat::Everybody,
                                  TestCall{"flac", "-t"}};
inline constexpr AudioFormat shn{"SHN", "shn", true,
                                 AudioFormat::Everybody & ~unsigned{AudioFormat::Tags}};
inline constexpr AudioFormat wv{"WV", "wv", true, AudioFormat::Everybody,
                                TestCall{"wvunpack", "-v"}};
inline constexpr AudioFormat tta{"TTA", "tta", true, AudioFormat::Everybody,
                                 TestCall{"ttaenc", "-t"}};
inline constexpr AudioFormat ape{"APE", "ape", true,
                                 AudioFormat::Everybody &
                                     ~unsigned{AudioFormat::FixSBE | AudioFormat::Lossy},
                                 TestCall{"mac", "-v", true}};
/// Encoding and the lossy tab take only what holds Apple Lossless, which the extension cannot tell.
inline constexpr AudioFormat m4a{"M4A", "m4a", true, AudioFormat::Decode | AudioFormat::Tags};
inline constexpr AudioFormat wav{"WAV", "wav", false, AudioFormat::Everybody};
inline constexpr AudioFormat aiff{"AIFF",       "aiff", false, AudioFormat::Everybody,
                                  std::nullopt, "AIF"};
inline constexpr AudioFormat opus{"OPUS", "opus", false, AudioFormat::Decode};
inline constexpr AudioFormat mp3{"MP3", "mp3", false, AudioFormat::Tags};
} // namespace formats

/// Every format that any tab takes.
inline constexpr std::array audioFormats{
    &formats::flac, &formats::shn, &formats::wv,   &formats::tta,  &formats::ape,
    &formats::m4a,  &formats::wav, &formats::aiff, &formats::opus, &formats::mp3};

/// The format that a file's extension stands for; nullptr for none of them.
const AudioFormat* formatOf(const QString& path);

} // namespace quav
