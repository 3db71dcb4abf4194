#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

class ReportText;

/// The three standard streams. Messages and the lines that show progress go to the standard error
/// stream, results to the standard output. Control characters never reach a terminal.
class Terminal {
public:
    Terminal();

    /// Whether somebody is there to answer a question.
    bool canAsk() const { return canAsk_; }

    /// Whether lines that were written can be written again.
    bool canRedraw() const { return canRedraw_; }

    /// A message of one or more lines.
    void say(const QString& message);

    /// Results: the text and a line break unless it ends in one.
    void print(const QString& text);
    void print(const ReportText& text);

    /// A part of a result, which goes on.
    void printPart(const QString& text);

    /// The line that the user types behind the prompt; nothing at the end of the input or when
    /// a signal came in between.
    std::optional<QString> ask(const QString& prompt);

    /// Shows these lines in place of those shown before, cut to the terminal's size.
    void show(const QStringList& lines);
    void clear();

    /// How many lines `show` has room for.
    int rows() const;

private:
    int columns() const;

    bool canAsk_;
    bool canRedraw_;
    bool outputIsTerminal_;
    qsizetype shown_ = 0;
};

} // namespace quav
