#include "gui/WarningsLine.h"

#include "engine/QUAVTaskQueue.h"
#include "gui/OutputWindows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace quav {

WarningsLine::WarningsLine(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent)
    : QWidget(parent), queue_(queue), outputWindows_(outputWindows), count_(new QLabel(this)),
      show_(new QPushButton(tr("S&how"), this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(count_);
    layout->addWidget(show_);
    show_->setFlat(true);
    show_->setToolTip(tr("Show what tools warned of although they succeeded"));
    show_->setAccessibleName(tr("Show the warnings"));
    for (QWidget* part : {static_cast<QWidget*>(count_), static_cast<QWidget*>(show_)}) {
        QSizePolicy policy = part->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        part->setSizePolicy(policy);
    }
    connect(show_, &QPushButton::clicked, this, &WarningsLine::showWarnings);
    connect(&queue_, &QUAVTaskQueue::countsChanged, this, &WarningsLine::refresh);
    refresh();
}

void WarningsLine::refresh() {
    const int count = static_cast<int>(queue_.warnings().size());
    count_->setVisible(count > 0);
    show_->setVisible(count > 0);
    count_->setText(tr("%Ln warnings", nullptr, count));
}

void WarningsLine::showWarnings() {
    outputWindows_.show(queue_.warnings().join(u'\n') + u'\n', tr("Warnings"));
}

} // namespace quav
