#include "gui/WorkLine.h"

#include "app/TabWork.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>

#include <chrono>

namespace quav {

namespace {

// What is over sooner would only flicker.
constexpr std::chrono::milliseconds patience{250};

constexpr std::chrono::milliseconds tickInterval{50};

constexpr int barHeight = 6;
constexpr int fullBar = 1000;

} // namespace

WorkLine::WorkLine(TabWork& work, QWidget* parent)
    : QWidget(parent), work_(work), text_(new QLabel(this)), bar_(new QProgressBar(this)) {
    auto* cancel = new QToolButton(this);
    cancel->setAutoRaise(true);
    cancel->setText(tr("Cancel"));
    cancel->setIcon(style()->standardIcon(QStyle::SP_DialogCancelButton));
    cancel->setToolTip(tr("Cancel"));
    bar_->setTextVisible(false);
    bar_->setFixedHeight(barHeight);
    bar_->setAccessibleName(tr("Progress"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(text_);
    layout->addWidget(bar_, 1);
    layout->addWidget(cancel);
    hide();

    appear_.setSingleShot(true);
    appear_.setInterval(patience);
    tick_.setInterval(tickInterval);
    connect(cancel, &QToolButton::clicked, &work_, &TabWork::cancel);
    connect(&work_, &TabWork::changed, this, &WorkLine::follow);
    connect(&appear_, &QTimer::timeout, this, [this] {
        refresh();
        show();
    });
    connect(&tick_, &QTimer::timeout, this, &WorkLine::refresh);
}

void WorkLine::follow() {
    if (!work_.isBusy()) {
        appear_.stop();
        tick_.stop();
        hide();
    } else if (!tick_.isActive()) {
        appear_.start();
        tick_.start();
    }
}

void WorkLine::refresh() {
    const qint64 done = work_.done();
    const qint64 total = work_.total();
    if (total > 0) {
        bar_->setRange(0, fullBar);
        bar_->setValue(static_cast<int>(done * fullBar / total));
        text_->setText(tr("%1: %L2 of %L3").arg(work_.title()).arg(done).arg(total));
    } else {
        bar_->setRange(0, 0);
        text_->setText(done > 0 ? tr("%1: %L2").arg(work_.title()).arg(done) : work_.title());
    }
}

} // namespace quav
