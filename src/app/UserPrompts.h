#pragma once

#include "platform/Interface.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace quav {

/// A question with two buttons.
struct Question {
    QString title;
    QString message;
    QString defaultButton;
    QString alternateButton;
    bool defaultAffirms = true; ///< whether the default button is the one that says yes
    /// The option of the command line that answers this question beforehand; one that answers all
    /// questions does not. Empty: it does.
    QString ownOption = QString();
};

/// Everything that the program asks of its user or tells him. Windows answer with dialogs, the
/// command line from its options, tests from a script. Main thread only.
class UserPrompts : public Interface {
public:
    virtual void alert(const QString& title, const QString& message) = 0;

    /// An alert that waits until what just happened has had time to be seen.
    virtual void alertAfter(std::chrono::milliseconds delay, const QString& title) = 0;

    /// True when the user chose the button that says yes.
    virtual bool confirm(const Question& question) = 0;

    /// Several files; none when the user cancelled.
    virtual QStringList chooseFiles(const QString& title, const QString& confirmButton) = 0;

    virtual std::optional<QString> chooseFolder(const QString& title) = 0;

    /// Where to save a file, with a folder to begin in and a name to begin with, either of which
    /// may be empty; none when the user cancelled.
    virtual std::optional<QString> chooseSavePath(const QString& title, const QString& directory,
                                                  const QString& name) = 0;

    /// One line of text; none when the user cancelled, even after typing.
    virtual std::optional<QString> askForLine(const QString& title, const QString& message,
                                              const QString& initial) = 0;
};

} // namespace quav
