#pragma once

#include <QDialog>
#include <QString>

#include <optional>

class QLabel;
class QLineEdit;

namespace quav {

/// A small modal dialog that asks for one line of text.
class QUAVStringGetterPanel : public QDialog {
    Q_OBJECT

public:
    explicit QUAVStringGetterPanel(QWidget* parent = nullptr);

    /// Sets what is given, runs the dialog and gives the text, or nothing when the user cancelled.
    std::optional<QString> runPanelWithTitle(const std::optional<QString>& title,
                                             const std::optional<QString>& message,
                                             const std::optional<QString>& initialString);

private:
    QLabel* message_;
    QLineEdit* field_;
};

} // namespace quav
