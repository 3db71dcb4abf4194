#pragma once

#include <QPushButton>

namespace quav {

class OutputWindows;
class QUAVTaskQueue;

/// Shows what failed in the last batch, also where no report has opened by itself and when the rows
/// have gone; not there while nothing has failed.
class FailuresButton : public QPushButton {
    Q_OBJECT

public:
    FailuresButton(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent = nullptr);

private:
    void refresh();
    void showFailures();

    QUAVTaskQueue& queue_;
    OutputWindows& outputWindows_;
};

} // namespace quav
