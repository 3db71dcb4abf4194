#pragma once

#include "app/UserPrompts.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

class Settings;
struct Verdict;

/// The three kinds of checksum files.
enum class ChecksumKind {
    Md5, ///< MD5 of whole files, one line each: digest, " *", name
    St5, ///< MD5 of the audio alone, as shntool prints it: digest, "  [shntool]  ", name
    Ffp, ///< FLAC fingerprints, the audio's MD5 as STREAMINFO has it: name, ":", digest
};

/// What all three have in common when they are written: UTF-8 text that begins with a comment.
namespace checksumfiles {

/// The comment that a file begins with, and the empty line below it; the date is given with the
/// zone's distance from UTC, "2013-05-04 17:21:09 +0000". ST5 entries bring a line break each, so
/// there the empty line is not yet complete.
QString header(ChecksumKind kind, const QDateTime& date);

/// The title of the kind as users know it: "MD5", "ST5", "FFP".
QString title(ChecksumKind kind);

/// "md5sum.md5", "checksum.st5", "fingerprint.ffp.txt", the last by the setting `ffpExtension`.
QString fixedName(ChecksumKind kind, const Settings& settings);

/// The path of a checksum file in a folder: under the fixed name, or under the folder's own name
/// where the setting `checksumFileUsesOutputDirName` says so.
QString pathIn(const QString& folder, ChecksumKind kind, const Settings& settings);

/// Replaces the file as a whole. Throws std::runtime_error, with a sentence that names it.
void write(const QString& path, const QString& text);

/// The same for a list that lacks an entry, which is no equal of one that may have all: an earlier
/// file stays, under a name of its own beside the new one ("x.md5.old", "x.md5.old.2" and so on).
/// Gives a sentence that names it; nothing when there was none.
QString writeIncomplete(const QString& path, const QString& text);

/// True when there is a file that this program has not written, so that replacing it would lose
/// what somebody else has made.
bool isForeign(const QString& path);

/// What is to be asked before a foreign file is replaced; nothing when there is none.
std::optional<Question> questionBeforeReplacing(const QString& path);

/// YES when every path's folder is that of the first one.
bool areAllSameDirectory(const QStringList& paths);

/// The deepest folder that all paths lie in or below.
QString commonFolder(const QStringList& paths);

/// Why a file could not be read, from a number of the system's list.
QString reasonOf(int errorNumber);

/// The verdict on a file that could not be read, with the system's reason.
Verdict unreadable(const QString& list, const QString& file, int errorNumber);

/// The same with the words of a tool that could not read it.
Verdict unreadable(const QString& list, const QString& file, const QString& words);

} // namespace checksumfiles

} // namespace quav
