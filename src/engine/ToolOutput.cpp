#include "engine/ToolOutput.h"

#include "engine/FailureReason.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace quav::tooloutput {

namespace {

const QString progressInApe = QStringLiteral("Progress: ");

/// The last of the lines that contains a text; -1 when none does.
qsizetype lastWith(const QStringList& lines, const QString& text) {
    const auto found = std::find_if(lines.rbegin(), lines.rend(),
                                    [&](const QString& line) { return line.contains(text); });
    return std::distance(found, lines.rend()) - 1;
}

} // namespace

QString withoutBackspaces(const QString& piece) {
    const auto isBackspace = [](QChar character) { return character == u'\b'; };
    const auto first = std::find_if_not(piece.begin(), piece.end(), isBackspace);
    const auto last =
        std::find_if_not(piece.rbegin(), std::make_reverse_iterator(first), isBackspace);
    return QString(first, last.base() - first);
}

QString stripped(const QString& piece) {
    return withoutBackspaces(piece).trimmed();
}

QString flacWords(const QString& piece, const QString& fileName) {
    const QString words = stripped(piece);
    const QString prefix = fileName + u':';
    return words.startsWith(prefix) ? words.mid(prefix.size()).trimmed() : words;
}

QString fromLastApeProgress(const QString& log, const QString& title) {
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    const QStringList lines = log.split(lineEnd);
    const qsizetype last = lastWith(lines, progressInApe);
    return (last < 0 ? QString() : title + u'\n') +
           lines.mid(std::max<qsizetype>(0, last)).join(u'\n') + u'\n';
}

std::optional<double> numberBefore(const QString& text, const QString& word) {
    const qsizetype end = text.indexOf(word);
    if (end < 0) {
        return std::nullopt;
    }
    static const QRegularExpression lastNumber(QStringLiteral("([0-9]+(?:\\.[0-9]+)?)[ ]*$"));
    const auto match = lastNumber.match(text.left(end));
    return match.hasMatch() ? std::optional(match.captured(1).toDouble()) : std::nullopt;
}

double leadingNumber(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^\\s*([0-9]+(?:\\.[0-9]+)?)"));
    const auto match = number.match(text);
    return match.hasMatch() ? match.captured(1).toDouble() : 0;
}

QString sixDecimals(double number) {
    return QString::number(number, 'f', 6);
}

HashPiece hashPiece(const QString& piece) {
    // A percentage counts at the end of a line, a name in front of its length: both may also stand
    // in a file's name.
    static const QRegularExpression percentage(
        QStringLiteral("([0-9]{1,3})%[ ]*(?:OK|ERROR)?\\s*$"));
    static const QRegularExpression name(
        QStringLiteral("Hashing \\[(.*)\\] \\([0-9]+:[0-9]{2}\\.[0-9]+\\)"));
    HashPiece read;
    if (const auto match = percentage.match(piece); match.hasMatch()) {
        read.percent = match.captured(1).toDouble();
    }
    if (const auto match = name.match(piece); match.hasMatch()) {
        read.fileName = match.captured(1);
    }
    return read;
}

QString failureOf(const QString& tool, int exitStatus) {
    return wasKilled(exitStatus)
               ? failureReason({tool, exitStatus, {}, false}, {})
               : QCoreApplication::translate("ToolOutput", "%1 ended with the exit status %2")
                     .arg(tool, QString::number(exitStatus));
}

QString hashResult(const QString& output) {
    QString result;
    for (const QString& line : output.split(u'\n')) {
        if (const qsizetype at = line.indexOf(hashWarning); at >= 0) {
            result = line.mid(at);
        }
        if (const qsizetype at = line.indexOf(hashMarker); at >= 0) {
            result = line.left(at) + hashMarker;
        }
    }
    return result;
}

bool tellsOfDamage(const QString& piece) {
    static const QRegularExpression words(
        QStringLiteral(" warning: (possibly truncated and/or corrupt file: \\[|.*: is damaged(:|"
                       " near )[^\\]]*$)"));
    return words.match(piece.trimmed()).hasMatch();
}

} // namespace quav::tooloutput
