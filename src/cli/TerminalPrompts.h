#pragma once

#include "app/UserPrompts.h"
#include "cli/OutputFolder.h"

#include <optional>

namespace quav {

class Terminal;

/// Answers the program's questions from the options, and where these say nothing from the terminal.
/// Where nobody sits at one, a question counts as answered with its default button.
class TerminalPrompts : public UserPrompts {
    Q_DECLARE_TR_FUNCTIONS(TerminalPrompts)

public:
    /// `answer` is the answer to every question, if there is one.
    TerminalPrompts(Terminal& terminal, std::optional<bool> answer);

    /// The folder that is chosen whenever one is to be chosen.
    void setOutputFolder(const OutputFolder& folder) { outputFolder_ = folder; }

    /// The folder that was chosen, by option or at the terminal.
    std::optional<OutputFolder>& outputFolder() { return outputFolder_; }

    /// The path that is chosen whenever a file is to be saved.
    void setSavePath(const QString& path) { savePath_ = path; }
    const std::optional<QString>& savePath() const { return savePath_; }

    /// Whether a path was to be chosen and there was none, and nobody to ask.
    bool wantsSavePath() const { return wantsSavePath_; }

    /// Whether any question was answered with no.
    bool declined() const { return declined_; }

    /// Whether anything was told that cannot be ignored.
    bool alerted() const { return alerted_; }

    void alert(const QString& title, const QString& message) override;
    void alertAfter(std::chrono::milliseconds delay, const QString& title) override;
    bool confirm(const Question& question) override;
    QStringList chooseFiles(const QString& title, const QString& confirmButton) override;
    std::optional<QString> chooseFolder(const QString& title) override;
    std::optional<QString> chooseSavePath(const QString& title, const QString& directory,
                                          const QString& name) override;
    std::optional<QString> askForLine(const QString& title, const QString& message,
                                      const QString& initial) override;

private:
    bool ask(const QString& text, bool standard);
    bool confirmByOption(const QString& text, const Question& question);
    std::optional<QString> askForLine(const QString& title);
    void tellAnswer(const QString& text);

    Terminal& terminal_;
    std::optional<bool> answer_;
    std::optional<OutputFolder> outputFolder_;
    std::optional<QString> savePath_;
    bool wantsSavePath_ = false;
    bool declined_ = false;
    bool alerted_ = false;
};

} // namespace quav
