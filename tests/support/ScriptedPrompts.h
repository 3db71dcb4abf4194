#pragma once

#include "app/UserPrompts.h"

#include <QStringList>

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

namespace quav::test {

/// Answers from a script and keeps what was asked and told. A question without an answer in the
/// script gets its default button.
class ScriptedPrompts : public UserPrompts {
public:
    std::deque<bool> answers;                   ///< what `confirm` returns next
    std::deque<std::optional<QString>> folders; ///< what `chooseFolder` returns next
    QStringList files;                          ///< what `chooseFiles` returns
    std::optional<QString> line;                ///< what `askForLine` returns
    std::optional<QString> savePath;            ///< what `chooseSavePath` returns

    std::function<void()> beforeAnswer; ///< what happens while a question is open

    QStringList saveDialogs; ///< title, folder and name of each
    QStringList alerts;      ///< titles
    QStringList alertMessages;
    QStringList delayedAlerts;
    std::chrono::milliseconds lastDelay{0};
    std::deque<Question> questions;

    void alert(const QString& title, const QString& message) override {
        alerts << title;
        alertMessages << message;
    }

    void alertAfter(std::chrono::milliseconds delay, const QString& title) override {
        lastDelay = delay;
        delayedAlerts << title;
    }

    bool confirm(const Question& question) override {
        questions.push_back(question);
        if (beforeAnswer) {
            beforeAnswer();
        }
        return next(answers).value_or(question.defaultAffirms);
    }

    QStringList chooseFiles(const QString& /*title*/, const QString& /*confirmButton*/) override {
        return files;
    }

    std::optional<QString> chooseFolder(const QString& /*title*/) override {
        return next(folders).value_or(std::nullopt);
    }

    std::optional<QString> chooseSavePath(const QString& title, const QString& directory,
                                          const QString& name) override {
        saveDialogs << QStringLiteral("%1 | %2 | %3").arg(title, directory, name);
        return savePath;
    }

    std::optional<QString> askForLine(const QString& /*title*/, const QString& /*message*/,
                                      const QString& /*initial*/) override {
        return line;
    }

private:
    template <typename T>
    static std::optional<T> next(std::deque<T>& script) {
        if (script.empty()) {
            return std::nullopt;
        }
        T first = script.front();
        script.pop_front();
        return first;
    }
};

} // namespace quav::test
