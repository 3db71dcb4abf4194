#pragma once

#include <QString>
#include <QWidget>

class QPlainTextEdit;

namespace quav {

class UserPrompts;

/// A text to read, in a window of its own: what tools reported.
class OutputWindow : public QWidget {
    Q_OBJECT

public:
    explicit OutputWindow(UserPrompts& prompts, QWidget* parent = nullptr);

    void setTextValue(const QString& text, const QString& title);
    QString text() const;

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void save();

    UserPrompts& prompts_;
    QPlainTextEdit* view_;
};

} // namespace quav
