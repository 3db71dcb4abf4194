#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quav {

/// Cuts what a tool prints into its logical pieces: one a completed line (with its line feed), one
/// an update in place. A run of backspaces or a carriage return begins the next update. A piece is
/// handed out when the next one begins, so no piece depends on where the pipe was cut. Pieces that
/// are not UTF-8 are left out. What goes on and on without a line end is handed out at some 64 KiB,
/// between two characters, since it would fill the memory otherwise.
class ToolOutputReader {
public:
    /// The pieces that are complete with these bytes.
    QStringList feed(const QByteArray& bytes);

    /// The last piece, when no more bytes come; none when there is nothing left.
    QStringList finish();

private:
    void take(char byte, QStringList& pieces);
    void handOut(QStringList& pieces);

    QByteArray piece_;
    bool carriageReturn_ = false; ///< seen but not yet known to be half of a line end
};

/// The lines as a terminal shows them: a backspace takes back one character, a carriage return the
/// whole line. Of a line that is longer than any terminal could show, some 64 Ki characters, they
/// take back only what came last.
class TerminalText {
public:
    /// Takes the next piece; gives the lines that it completed, each with its line feed and without
    /// the blanks that only covered an older text. A very long line comes in parts.
    QString feed(const QString& piece);

    /// The line that was not completed, or nothing.
    QString finish();

private:
    QString line_;
};

} // namespace quav
