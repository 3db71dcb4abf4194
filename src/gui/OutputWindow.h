#pragma once

#include "engine/ReportText.h"
#include "engine/Verdict.h"

#include <QString>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace quav {

class UserPrompts;

/// A text to read, in a window of its own: what tools reported.
class OutputWindow : public QWidget {
    Q_OBJECT

public:
    explicit OutputWindow(UserPrompts& prompts, QWidget* parent = nullptr);

    /// Of a text of many megabytes its beginning and its end are shown; all of it is saved.
    void setTextValue(const ReportText& text, const QString& title);
    /// What is shown.
    QString text() const;

    /// What the text says of files, as data: counted in a line below it, with a button that shows
    /// only the failures.
    void setVerdicts(const Verdicts& verdicts);

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void save();
    void showFailures(bool only);
    QString shownText() const;

    UserPrompts& prompts_;
    QPlainTextEdit* view_;
    QLabel* counts_;
    QPushButton* onlyFailures_;
    ReportText text_;
    QString failures_;
};

} // namespace quav
