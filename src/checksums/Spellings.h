#pragma once

#include "checksums/ChecksumFiles.h"

#include <QString>
#include <QStringView>

#include <optional>

/// How the programs of the world spell the entries of checksum files.
namespace quav::spellings {

/// An entry in one of the spellings.
struct Spelled {
    std::optional<ChecksumKind> kind; ///< none: lists of every kind are spelled so
    QString name;                     ///< with slashes between folders
    QString digest;                   ///< 32 digits, in small letters
};

/// What a line without blanks at its ends says; none when no spelling has a name and a digest in
/// it.
std::optional<Spelled> read(const QString& line);

/// The kind that a heading, a comment or a file's name speaks of, the first one if of several:
/// "# MD5 of the second disc", "ffp.txt".
std::optional<ChecksumKind> kindNamedIn(const QString& words);

/// Whether a text is what all three kinds have for a digest: 32 hexadecimal digits.
bool isDigest(QStringView text);

/// Whether a line has so many hexadecimal digits in a row that somebody meant a digest by them.
bool hasPartOfDigest(QStringView line);

} // namespace quav::spellings
