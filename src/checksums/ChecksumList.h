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
    Tolerant, ///< all that are in use, other encodings, and several kinds in one text
};

/// A file and the digest that it should have.
struct Entry {
    QString name; ///< relative to the list's folder
    QString digest;
};

struct KindAndEntry {
    ChecksumKind kind = ChecksumKind::Md5;
    Entry entry;
};

/// A line that is neither empty nor a comment.
struct Line {
    QString text;                ///< without blanks at its ends
    std::optional<Entry> entry;  ///< none: the line is not of this kind
    std::optional<Entry> strict; ///< what the strict reading makes of it; may be `entry` itself
    QString path;                ///< where the file lies; empty until somebody has looked it up
};

struct List {
    std::vector<Line> lines;
    qsizetype allLines = 0;   ///< with comments and empty ones
    qsizetype passedOver = 0; ///< lines of prose, in a text that is no list by its name
};

/// Which kinds of entries a text has.
struct Kinds {
    ChecksumKind plain = ChecksumKind::Md5; ///< of entries whose spelling does not say
    bool isNamed = false;                   ///< a list by its extension: headings change nothing
    std::vector<ChecksumKind> all;          ///< in the order of their first entries
};

/// The whole file, or a sentence for the user that names it: it cannot be read, or it is so large
/// that it cannot be a list.
tl::expected<QByteArray, QString> contentsOf(const QString& path);

bool isUtf8(const QByteArray& bytes);

/// The text of a list. Strictly it is UTF-8, and what is not is as good as empty; otherwise a
/// byte-order mark counts, and what is no UTF-8 is Windows-1252.
QString decoded(const QByteArray& bytes, Reading reading);

/// The lines of one kind. Where a text has several, those in which the tolerant reading finds no
/// entry of any of them go to the first one; it takes a line with "#" in front for a comment only
/// when there is no entry in it.
List read(ChecksumKind kind, const QString& text, Reading reading, const Kinds& kinds);

/// What the tolerant reading would find in a line of a list that has this kind by its name.
std::optional<KindAndEntry> otherReading(ChecksumKind kind, const QString& line);

/// Whether an entry of this name is read back as it was written: one that a line break ends, or
/// that begins as a comment does, is not, and no list can name such a file.
bool isReadBack(ChecksumKind kind, const QString& name);

/// A sentence for the user about a file that has such an entry.
QString notReadBack(const QString& file);

/// The kind that a list has by its file name: the extensions MD5, ST5, FFP and FFP.TXT in whatever
/// capitals; none for others.
std::optional<ChecksumKind> kindByName(const QString& path);

/// What the tolerant reading finds in a text that is the beginning of the file, or all of it.
Kinds kindsIn(const QString& text, const QString& path);

/// The kinds that a file has as a list: strictly the one by its name. Read tolerantly, those of its
/// entries, as far as its beginning shows them, also where its name is "md5sum.txt" or "MD5SUMS";
/// the one by its name when it has no entries. None for other files.
Kinds kindsOf(const QString& path, Reading reading);

/// The first of them.
std::optional<ChecksumKind> kindOf(const QString& path, Reading reading);

} // namespace quav::checksumlist
