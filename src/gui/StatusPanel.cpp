#include "gui/StatusPanel.h"

#include "engine/QUAVTaskQueue.h"
#include "gui/OutputWindows.h"
#include "gui/TaskRowDelegate.h"
#include "gui/WarningsLine.h"
#include "platform/ClockText.h"

#include <QAction>
#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace quav {

namespace {

constexpr std::chrono::milliseconds refreshInterval{500};
constexpr int panelWidth = 460;
constexpr int panelHeight = 360;

} // namespace

// A window of its own and not one that hangs on the main window: it stays when that one is hidden
// to end the program, and its title tells how far things are in the task bar.
StatusPanel::StatusPanel(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent)
    : QWidget(parent, Qt::Window), queue_(queue), outputWindows_(outputWindows),
      list_(new QListView(this)), clearErrors_(new QPushButton(tr("Clear &errors"), this)),
      cancelAll_(new QPushButton(tr("&Cancel all"), this)) {
    buildList();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_, 1);
    layout->addWidget(buildFoot());
    resize(panelWidth, panelHeight);

    frontTimer_.setSingleShot(true);
    frontTimer_.setInterval(0);
    connect(&frontTimer_, &QTimer::timeout, this, &StatusPanel::bringToFront);
    refreshTimer_.setSingleShot(true);
    connect(&refreshTimer_, &QTimer::timeout, this, &StatusPanel::refresh);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this,
            &QWidget::close);
    listen();
    refresh();
}

void StatusPanel::buildList() {
    auto* delegate = new TaskRowDelegate(list_);
    list_->setModel(&queue_.rows());
    list_->setItemDelegate(delegate);
    list_->setUniformItemSizes(true);
    list_->setResizeMode(QListView::Adjust);
    list_->setVerticalScrollMode(QListView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setEditTriggers(QListView::NoEditTriggers);
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    list_->setMouseTracking(true);
    list_->setAccessibleName(tr("Tasks"));
    connect(delegate, &TaskRowDelegate::stopClicked, this, &StatusPanel::stopRow);
    connect(list_, &QListView::doubleClicked, this, &StatusPanel::showWhatTheToolSaid);
    connect(list_, &QListView::customContextMenuRequested, this, &StatusPanel::showContextMenu);
    addListAction({QKeySequence::Delete, QKeySequence(Qt::CTRL | Qt::Key_Period)},
                  &StatusPanel::stopCurrentRow);
    addListAction({Qt::Key_Return, Qt::Key_Enter}, &StatusPanel::showWhatTheToolSaid);
}

void StatusPanel::addListAction(const QList<QKeySequence>& keys, void (StatusPanel::*slot)()) {
    auto* action = new QAction(list_);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    list_->addAction(action);
    connect(action, &QAction::triggered, this, slot);
}

QWidget* StatusPanel::buildFoot() {
    auto* foot = new QWidget(this);
    auto* layout = new QHBoxLayout(foot);
    layout->setContentsMargins({});
    clearErrors_->setToolTip(tr("Remove the rows of tasks that failed"));
    cancelAll_->setToolTip(tr("Cancel what waits, and what runs as soon as its tool has ended"));
    layout->addWidget(clearErrors_);
    layout->addStretch();
    layout->addWidget(new WarningsLine(queue_, outputWindows_, foot));
    layout->addStretch();
    layout->addWidget(cancelAll_);
    connect(clearErrors_, &QPushButton::clicked, &queue_, &QUAVTaskQueue::removeAllErrors);
    connect(cancelAll_, &QPushButton::clicked, &queue_, &QUAVTaskQueue::cancelAllTasks);
    return foot;
}

void StatusPanel::listen() {
    connect(&queue_, &QUAVTaskQueue::panelShown, this, &StatusPanel::panelShown);
    connect(&queue_, &QUAVTaskQueue::panelClosed, this, &QWidget::hide);
    connect(&queue_, &QUAVTaskQueue::countsChanged, this, &StatusPanel::scheduleRefresh);
    connect(&queue_.rows(), &TaskRowsModel::modelReset, this, &StatusPanel::scheduleRefresh);
    connect(&queue_, &QUAVTaskQueue::scrolledToRow, list_,
            [this](int row) { list_->scrollTo(queue_.rows().index(row)); });
}

void StatusPanel::panelShown() {
    // Thousands of tasks may be added in one go; the window comes to the front once.
    if (!frontTimer_.isActive() && (!isVisible() || !isActiveWindow())) {
        frontTimer_.start();
    }
}

void StatusPanel::bringToFront() {
    show();
    raise();
    activateWindow();
}

void StatusPanel::scheduleRefresh() {
    // At most twice a second while there is work, but the end is shown at once.
    if (!refreshTimer_.isActive() || queue_.taskCount() == 0) {
        refreshTimer_.start(std::chrono::milliseconds(0));
    }
}

void StatusPanel::refresh() {
    const bool working = queue_.taskCount() > 0;
    setWindowTitle(titleText());
    clearErrors_->setEnabled(failedRows() > 0);
    cancelAll_->setEnabled(working);
    if (working) {
        refreshTimer_.start(refreshInterval);
    }
}

QString StatusPanel::titleText() const {
    const int tasks = queue_.taskCount();
    if (tasks == 0) {
        const int failed = failedRows();
        return failed == 0 ? tr("Status") : tr("Status: %Ln failed", nullptr, failed);
    }
    const int running = queue_.runningCount();
    const QString counts = tr("Status: %L1 running, %L2 waiting").arg(running).arg(tasks - running);
    const auto left = queue_.timeLeft();
    return left ? tr("%1 · %2 left").arg(counts, clockText(*left)) : counts;
}

int StatusPanel::failedRows() const {
    const TaskRowsModel& rows = queue_.rows();
    int failed = 0;
    for (int row = 0; row < rows.rowCount(); ++row) {
        failed += rows.taskAt(row)->error() ? 1 : 0;
    }
    return failed;
}

void StatusPanel::stopRow(int row) {
    const auto task = queue_.rows().taskAt(row);
    if (task && task->row().stalled) {
        task->endStalledTool();
    } else if (task) {
        task->cancelTask();
    }
}

void StatusPanel::stopCurrentRow() {
    stopRow(list_->currentIndex().row());
}

void StatusPanel::showWhatTheToolSaid() {
    const auto task = queue_.rows().taskAt(list_->currentIndex().row());
    if (!task || !task->error() || !task->finalReport()) {
        return;
    }
    const TaskReport& report = *task->finalReport();
    outputWindows_.show(report.failureText(), report.name);
}

void StatusPanel::showContextMenu(const QPoint& where) {
    const auto task = queue_.rows().taskAt(list_->indexAt(where).row());
    contextMenu_.clear();
    if (task && task->error()) {
        contextMenu_.addAction(tr("&Show what the tool said"), this,
                               &StatusPanel::showWhatTheToolSaid);
    }
    if (task && task->row().stalled) {
        contextMenu_.addAction(tr("&End the tool"), this, [task] { task->endStalledTool(); });
    }
    if (task && !task->isDone() && !task->cancelled()) {
        contextMenu_.addAction(tr("&Cancel"), this, [task] { task->cancelTask(); });
    }
    contextMenu_.addAction(tr("Clear &errors"), &queue_, &QUAVTaskQueue::removeAllErrors)
        ->setEnabled(failedRows() > 0);
    contextMenu_.popup(list_->viewport()->mapToGlobal(where));
}

} // namespace quav
