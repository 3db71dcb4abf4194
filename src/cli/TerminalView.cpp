#include "cli/TerminalView.h"

#include "cli/Terminal.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "platform/ClockText.h"

#include <cmath>

namespace quav {

namespace {

constexpr std::chrono::milliseconds redrawInterval{100};

QString percentage(double percent) {
    return QStringLiteral("%1%").arg(std::floor(percent), 3, 'f', 0);
}

} // namespace

TerminalView::TerminalView(QUAVTaskQueue& queue, Terminal& terminal, RunEvents& events,
                           Progress progress)
    : queue_(queue), terminal_(terminal), events_(events) {
    elapsed_.start();
    connect(&queue, &QUAVTaskQueue::taskFinished, this,
            [this](const std::shared_ptr<QUAVTask>& task) {
                finished(endOf(*task), task->results()->verdictsOf(*task));
            });
    connect(&queue.stallWatch(), &StallWatch::stalled, this, &TerminalView::stalled);
    connect(&queue, &QUAVTaskQueue::outputWindowRequested, this,
            [this](const ReportText& text, const QString& title) { events_.report(title, text); });
    redrawTimer_.setSingleShot(true);
    redrawTimer_.setInterval(redrawInterval);
    if (progress == Progress::Shown) {
        connect(&redrawTimer_, &QTimer::timeout, this, &TerminalView::redraw);
        connect(&queue, &QUAVTaskQueue::countsChanged, this, &TerminalView::redrawSoon);
        connect(&queue.rows(), &TaskRowsModel::dataChanged, this, &TerminalView::redrawSoon);
    }
}

void TerminalView::stalled(const std::shared_ptr<QUAVTask>& task, const QString& tool,
                           std::chrono::milliseconds quiet) {
    const TaskEnd names = endOf(*task);
    events_.stalled({names.title, names.source, tool, quiet, queue_.stallWatch().patience().end});
}

void TerminalView::finished(const TaskEnd& end, const Verdicts& verdicts) {
    switch (end.status) {
    case TaskEnd::Status::Done:
        ++summary_.done;
        break;
    case TaskEnd::Status::Failed:
        ++summary_.failed;
        break;
    case TaskEnd::Status::Cancelled:
        ++summary_.cancelled;
        break;
    }
    summary_.warnings += static_cast<int>(end.warnings.size());
    summary_.counts.add(verdicts);
    events_.finished(end);
    events_.found(verdicts);
}

void TerminalView::redrawSoon() {
    if (!redrawTimer_.isActive()) {
        redrawTimer_.start();
    }
}

void TerminalView::redraw() {
    if (queue_.taskCount() > 0) {
        terminal_.show(runningLines(terminal_.rows() - 1) << totalLine());
    }
}

QStringList TerminalView::runningLines(int most) const {
    QStringList lines;
    const TaskRowsModel& rows = queue_.rows();
    for (int row = 0; row < rows.rowCount() && lines.size() < most; ++row) {
        const auto task = rows.taskAt(row);
        if (task->isActive()) {
            lines << QStringLiteral("%1  %2  %3")
                         .arg(percentage(task->row().barValue), task->title(),
                              task->row().statusLine);
        }
    }
    return lines;
}

QString TerminalView::totalLine() const {
    constexpr double whole = 100;
    const int running = queue_.runningCount();
    QString line = tr("%1  %2 running, %3 waiting, %4 done")
                       .arg(percentage(queue_.share() * whole))
                       .arg(running)
                       .arg(queue_.taskCount() - running)
                       .arg(summary_.done);
    if (summary_.failed > 0) {
        line += tr(", %1 failed").arg(summary_.failed);
    }
    if (const auto left = queue_.timeLeft()) {
        line += tr(", %1 left").arg(clockText(*left));
    }
    return line;
}

void TerminalView::finish() {
    redrawTimer_.stop();
    terminal_.clear();
    summary_.time = std::chrono::milliseconds(elapsed_.elapsed());
    events_.summary(summary_);
}

} // namespace quav
