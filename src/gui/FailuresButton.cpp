#include "gui/FailuresButton.h"

#include "engine/QUAVTaskQueue.h"
#include "gui/OutputWindows.h"

namespace quav {

FailuresButton::FailuresButton(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent)
    : QPushButton(tr("Show fail&ures"), parent), queue_(queue), outputWindows_(outputWindows) {
    setFlat(true);
    setToolTip(tr("Show what failed in the last batch, and why"));
    connect(this, &QPushButton::clicked, this, &FailuresButton::showFailures);
    connect(&queue_, &QUAVTaskQueue::countsChanged, this, &FailuresButton::refresh);
    refresh();
}

void FailuresButton::refresh() {
    setVisible(!queue_.failures().empty());
}

void FailuresButton::showFailures() {
    outputWindows_.show(failuresText(queue_.failures()), tr("Failures"));
}

} // namespace quav
