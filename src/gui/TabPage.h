#pragma once

#include "app/FileTotals.h"

#include <QString>
#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace quav {

class BaseTab;
class FileListView;

/// The view of a work tab: its files on the left, its options on the right, its buttons below. A
/// page for a tab adds the options and says what the action button and the line beside it read.
class TabPage : public QWidget {
    Q_OBJECT

protected:
    explicit TabPage(BaseTab& tab, QWidget* parent = nullptr);

    /// A group of options below those already there; its box is the layout's parent widget.
    QVBoxLayout* addOptionGroup(const QString& title);

    /// A check box of an option group.
    QCheckBox* addCheckBox(QVBoxLayout* group, const QString& text, const QString& toolTip);
    QRadioButton* addRadioButton(QVBoxLayout* group, const QString& text, const QString& toolTip);

    /// What the action button reads for so many files.
    virtual QString actionText(int files) const = 0;

    /// Where the output will go, as a short sentence.
    virtual QString destinationText() const = 0;

    /// Shows the options as they stand. Called once the page is built, and whenever they change.
    virtual void showOptions();

    /// Brings everything up to date; the last thing that the constructor of a page calls.
    void refresh();

private:
    QWidget* buildFileColumn();
    QWidget* buildOptionColumn();
    QWidget* buildButtonRow();
    void refreshFiles();
    void countFiles();
    void refreshHeader();
    void refreshButtons();

    BaseTab& tab_;
    FileTotals totals_;
    QLabel* header_;
    FileListView* list_;
    QVBoxLayout* options_ = nullptr;
    QPushButton* remove_;
    QPushButton* clear_;
    QLabel* destination_;
    QPushButton* action_;
};

} // namespace quav
