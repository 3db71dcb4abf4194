#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace quav {

class OutputWindows;
class QUAVTaskQueue;

/// Counts the warnings of tasks that succeeded, with a button that shows them; empty while there
/// are none.
class WarningsLine : public QWidget {
    Q_OBJECT

public:
    WarningsLine(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent = nullptr);

private:
    void refresh();
    void showWarnings();

    QUAVTaskQueue& queue_;
    OutputWindows& outputWindows_;
    QLabel* count_;
    QPushButton* show_;
};

} // namespace quav
