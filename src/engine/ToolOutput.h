#pragma once

#include <QString>

#include <optional>

/// What the checking tools print, read piece by piece. Nothing here knows a task.
namespace quav::tooloutput {

/// The piece without backspaces and, behind them, blanks and line ends at its ends.
QString stripped(const QString& piece);

/// The piece without backspaces at its ends.
QString withoutBackspaces(const QString& piece);

/// What `flac -t` says in a piece. The tool writes the file's name in front of its words at times,
/// by itself or together with them; the words are what counts.
QString flacWords(const QString& piece, const QString& fileName);

/// The part of what `mac -v` says that is worth keeping: from the last line that tells of progress
/// on, all of it when none does. Progress lines are overwritten in place; the title stands above
/// them, and a line break behind each line.
QString fromLastApeProgress(const QString& log, const QString& title);

/// The number in front of a word; none without the word, or when no number stands there.
std::optional<double> numberBefore(const QString& text, const QString& word);

/// The number that a text begins with; 0 when it begins with none.
double leadingNumber(const QString& text);

/// "12.5" as the tasks show it: "12.500000".
QString sixDecimals(double number);

/// One piece of `shntool hash`.
struct HashPiece {
    std::optional<double> percent; ///< the one at the end of the line, never one of a name
    QString fileName;              ///< when it tells which file is being hashed
};
HashPiece hashPiece(const QString& piece);

/// What a whole output of `shntool hash` for one file comes to: the digest and the marker behind
/// it, or the warning, from " warning: " on; whichever came last. Empty when neither came.
QString hashResult(const QString& output);

/// Whether a piece of `shntool hash` says that a file is damaged, and not that it is none of its
/// kinds or cannot be opened.
bool tellsOfDamage(const QString& piece);

/// What stands in front of its complaints.
/// How a line begins in which shntool complains, and not one about how far it is.
inline const QString hashComplaint = QStringLiteral("shntool [hash]: ");
inline const QString hashWarning = QStringLiteral(" warning: ");

/// A sentence about a tool that ended with a status other than 0, as `ChildProcess::ended` has it.
QString failureOf(const QString& tool, int exitStatus);

/// The marker between digest and name.
inline const QString hashMarker = QStringLiteral("  [shntool]  ");

} // namespace quav::tooloutput
