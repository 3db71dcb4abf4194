#pragma once

#include "app/UserPrompts.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quav {

/// Asks the user in dialogs.
class GuiPrompts : public QObject, public UserPrompts {
    Q_OBJECT

public:
    explicit GuiPrompts(QObject* parent = nullptr);

    /// The window over which dialogs open.
    void setParentWindow(QWidget* window) { window_ = window; }

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
    QWidget* dialogParent() const;

    QPointer<QWidget> window_;
};

} // namespace quav
