#include "cli/TerminalPrompts.h"

#include "cli/Terminal.h"
#include "platform/PathNames.h"

#include <QFileInfo>

namespace quav {

namespace {

QString withMessage(const QString& title, const QString& message) {
    return message.isEmpty() ? title : title + u'\n' + message;
}

} // namespace

TerminalPrompts::TerminalPrompts(Terminal& terminal, std::optional<bool> answer)
    : terminal_(terminal), answer_(answer) {}

void TerminalPrompts::alert(const QString& title, const QString& message) {
    alerted_ = true;
    terminal_.say(withMessage(title, message));
}

void TerminalPrompts::alertAfter(std::chrono::milliseconds /*delay*/, const QString& title) {
    terminal_.say(title);
}

bool TerminalPrompts::confirm(const Question& question) {
    const QString text = withMessage(question.title, question.message);
    if (!question.ownOption.isEmpty()) {
        return confirmByOption(text, question);
    }
    const bool asked = !answer_ && terminal_.canAsk();
    const bool yes =
        asked ? ask(text, question.defaultAffirms) : answer_.value_or(question.defaultAffirms);
    if (!yes) {
        declined_ = true;
        if (!asked) {
            tellAnswer(text);
        }
    }
    return yes;
}

bool TerminalPrompts::confirmByOption(const QString& text, const Question& question) {
    if (!answer_ && terminal_.canAsk()) {
        return ask(text, question.defaultAffirms);
    }
    terminal_.say(text + u'\n' +
                  tr("The answer was no; the option %1 answers with yes.").arg(question.ownOption));
    return false;
}

void TerminalPrompts::tellAnswer(const QString& text) {
    terminal_.say(text + u'\n' +
                  (answer_ ? tr("The answer was no.")
                           : tr("The answer was no; the option --yes answers with yes.")));
}

bool TerminalPrompts::ask(const QString& text, bool standard) {
    const QString choice = standard ? QStringLiteral(" [Y/n]") : QStringLiteral(" [y/N]");
    while (const auto line = terminal_.ask(text + choice)) {
        const QString answer = line->trimmed().toLower();
        if (answer.isEmpty()) {
            return standard;
        }
        if (answer == tr("y") || answer == tr("yes")) {
            return true;
        }
        if (answer == tr("n") || answer == tr("no")) {
            return false;
        }
    }
    return false;
}

QStringList TerminalPrompts::chooseFiles(const QString& /*title*/,
                                         const QString& /*confirmButton*/) {
    return {};
}

std::optional<QString> TerminalPrompts::chooseFolder(const QString& title) {
    while (!outputFolder_) {
        const auto line = askForLine(title);
        if (!line) {
            return std::nullopt;
        }
        auto folder = OutputFolder::at(*line);
        const auto created = folder ? folder->create() : tl::make_unexpected(folder.error());
        if (created) {
            outputFolder_ = *folder;
        } else {
            terminal_.say(created.error());
        }
    }
    return outputFolder_->path();
}

std::optional<QString> TerminalPrompts::chooseSavePath(const QString& title,
                                                       const QString& directory,
                                                       const QString& name) {
    if (savePath_) {
        return savePath_;
    }
    wantsSavePath_ = !terminal_.canAsk();
    const QString usual = joinPath(directory, name);
    while (terminal_.canAsk()) {
        const auto line = terminal_.ask(QStringLiteral("%1 [%2]:").arg(title, usual));
        if (!line) {
            break;
        }
        const QString path = line->isEmpty() ? usual : fullPath(*line);
        if (isFolder(path) || !isFolder(folderOf(path))) {
            terminal_.say(tr("No file can be written there."));
        } else if (!QFileInfo::exists(path) ||
                   confirm({tr("This file exists and will be overwritten.  Are you sure you want "
                               "to continue?"),
                            path, tr("No"), tr("Yes"), false})) {
            return path;
        }
    }
    return std::nullopt;
}

std::optional<QString> TerminalPrompts::askForLine(const QString& title, const QString& message,
                                                   const QString& initial) {
    if (!terminal_.canAsk()) {
        return initial;
    }
    return askForLine(withMessage(title, message));
}

std::optional<QString> TerminalPrompts::askForLine(const QString& title) {
    if (!terminal_.canAsk()) {
        return std::nullopt;
    }
    const auto line = terminal_.ask(title + u':');
    return line && !line->isEmpty() ? line : std::nullopt;
}

} // namespace quav
