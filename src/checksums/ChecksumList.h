#pragma once

#include "checksums/ChecksumFiles.h"

#include <QString>

#include <tl/expected.hpp>

#include <optional>
#include <vector>

/// Reading checksum files: as strictly as this program writes them, or as the world does.
namespace quav::checksumlist {

enum class Reading {
    Strict,   ///< one spelling of each kind
    Tolerant, ///< also two blanks and BSD style, upper-case digests, backslashes, other encodings
};

/// A file and the digest that it should have.
struct Entry {
    QString name; ///< relative to the list's folder
    QString digest;
};

/// A line that is neither empty nor a comment.
struct Line {
    QString text;                ///< without blanks at its ends
    std::optional<Entry> entry;  ///< none: the line is not of this kind
    std::optional<Entry> strict; ///< what the strict reading makes of it; may be `entry` itself
};

struct List {
    std::vector<Line> lines;
    qsizetype allLines = 0; ///< with comments and empty ones
};

/// The whole file, or a sentence for the user that names it: it cannot be read, or it is so large
/// that it cannot be a list.
tl::expected<QByteArray, QString> contentsOf(const QString& path);

bool isUtf8(const QByteArray& bytes);

/// The text of a list. Strictly it is UTF-8, and what is not is as good as empty; otherwise a
/// byte-order mark counts, and what is no UTF-8 is Latin 1.
QString decoded(const QByteArray& bytes, Reading reading);

List read(ChecksumKind kind, const QString& text, Reading reading);

/// Whether an entry of this name is read back as it was written: one that a line break ends, or
/// that begins as a comment does, is not, and no list can name such a file.
bool isReadBack(ChecksumKind kind, const QString& name);

/// A sentence for the user about a file that has such an entry.
QString notReadBack(const QString& file);

/// The kind that a list has by its file name: the extensions MD5, ST5, FFP and FFP.TXT in whatever
/// capitals; none for others.
std::optional<ChecksumKind> kindByName(const QString& path);

/// The kind whose entries the text has, for lists under other names; none when it has no entry.
std::optional<ChecksumKind> kindByContent(const QString& text);

/// The kind that a file has as a list: by its name, and read tolerantly, by the beginning of its
/// content, which may be another kind's or under a name that is not a list's; none for other files.
std::optional<ChecksumKind> kindOf(const QString& path, Reading reading);

} // namespace quav::checksumlist
