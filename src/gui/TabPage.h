#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;

namespace quav {

class BaseTab;
class FileListView;

/// The view of a work tab: its files on the left, its options on the right, its buttons below. A
/// page for a tab adds the options and says what the action button and the line beside it read.
class TabPage : public QWidget {
    Q_OBJECT

Q_SIGNALS:
    /// A sentence for the window's line.
    void told(const QString& sentence);
    /// Sentences that the user should read at leisure, one a line.
    void warned(const QString& text);

protected:
    explicit TabPage(BaseTab& tab, QWidget* parent = nullptr);

    /// What the action button reads for so many files.
    virtual QString actionText(int files) const = 0;

    /// Where the output will go, as a short sentence.
    virtual QString destinationText() const = 0;

    /// Brings everything up to date; the last thing that the constructor of a page calls.
    void refresh();

private:
    QWidget* buildFileColumn();
    QWidget* buildOptionColumn();
    QWidget* buildButtonRow();
    void refreshFiles();
    void refreshHeader();
    void refreshButtons();

    BaseTab& tab_;
    QLabel* header_;
    FileListView* list_;
    QPushButton* remove_;
    QPushButton* clear_;
    QLabel* destination_;
    QPushButton* action_;
};

} // namespace quav
