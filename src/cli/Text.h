#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

/// Text made fit for a terminal and for a shell.
namespace quav::text {

/// Control characters as escapes, so that a file name can neither break a line nor steer the
/// terminal.
QString printable(const QString& text);

/// The same for a text of several lines, which stay lines.
QString printableLines(const QString& text);

/// The word in such quotes as a POSIX shell needs to read it back unchanged.
QString shellQuoted(const QString& word);

QString shellCommand(const QString& program, const QStringList& arguments);

/// How many columns of a terminal the text takes.
int columnsOf(const QString& text);

/// The beginning of the text, as much as fits into so many columns.
QString cut(const QString& text, int columns);

} // namespace quav::text
