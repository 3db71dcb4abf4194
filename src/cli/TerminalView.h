#pragma once

#include "cli/RunEvents.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <memory>

namespace quav {

class QUAVTask;
class QUAVTaskQueue;
class Terminal;

/// Shows the queue at work: the running tasks on a terminal, and what has become of the others.
class TerminalView : public QObject {
    Q_OBJECT

public:
    /// Whether the running tasks are shown.
    enum class Progress { Shown, Hidden };

    TerminalView(QUAVTaskQueue& queue, Terminal& terminal, RunEvents& events, Progress progress);

    /// Something has ended, in the queue or without it.
    void finished(const TaskReport& report);

    /// To be called when everything has come to its end.
    void finish();

    const BatchSummary& summary() const { return summary_; }

private:
    void stalled(const std::shared_ptr<QUAVTask>& task, const QString& tool,
                 std::chrono::milliseconds quiet);
    void redrawSoon();
    void redraw();
    QStringList runningLines(int most) const;
    QString totalLine() const;

    QUAVTaskQueue& queue_;
    Terminal& terminal_;
    RunEvents& events_;
    BatchSummary summary_;
    QElapsedTimer elapsed_;
    QTimer redrawTimer_;
};

} // namespace quav
