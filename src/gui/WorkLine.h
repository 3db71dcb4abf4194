#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

namespace quav {

class TabWork;

/// A thin line that shows what runs in the background and how far it is, with a button that cancels
/// it. It is there only while something runs, and not for what is over at once.
class WorkLine : public QWidget {
    Q_OBJECT

public:
    explicit WorkLine(TabWork& work, QWidget* parent = nullptr);

private:
    void follow();
    void refresh();

    TabWork& work_;
    QLabel* text_;
    QProgressBar* bar_;
    QTimer appear_;
    QTimer tick_;
};

} // namespace quav
