#include "cli/TerminalView.h"

#include "cli/Terminal.h"
#include "engine/QUAVTaskQueue.h"
#include "platform/ClockText.h"
#include "platform/ListText.h"

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
            [this](const std::shared_ptr<QUAVTask>& task) { finished(*task->finalReport()); });
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
    events_.stalled(
        {nameOf(*task), task->source(), tool, quiet, queue_.stallWatch().patience().end});
}

void TerminalView::finished(const TaskReport& report) {
    summary_.add(report);
    events_.finished(report);
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
    const int waiting = queue_.taskCount() - running;
    QStringList parts{tr("%Ln running", nullptr, running), tr("%Ln waiting", nullptr, waiting),
                      tr("%Ln done", nullptr, summary_.done())};
    if (summary_.failed() > 0) {
        parts << tr("%Ln failed", nullptr, summary_.failed());
    }
    if (const auto left = queue_.timeLeft()) {
        parts << tr("%1 left").arg(clockText(*left));
    }
    return QStringLiteral("%1  %2").arg(percentage(queue_.share() * whole), listed(parts));
}

void TerminalView::finish() {
    redrawTimer_.stop();
    terminal_.clear();
    events_.summary(summary_, std::chrono::milliseconds(elapsed_.elapsed()));
}

} // namespace quav
