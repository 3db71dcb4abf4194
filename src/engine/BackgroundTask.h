#pragma once

#include "engine/QUAVTask.h"
#include "platform/BackgroundWork.h"
#include "platform/ChildProcess.h"

#include <QStringList>

#include <atomic>
#include <functional>

namespace quav {

/// A task whose work runs on a thread of its own: `doStartTask` there, and when it has returned,
/// the end of the task on the main thread. The work looks at `stopRequested` from time to time and
/// returns early when it says so.
class BackgroundTask : public QUAVTask {
public:
    explicit BackgroundTask(TaskHost& queue);

    void startTask() override;
    void stopTask() override;
    /// Tools that the work runs.
    void terminateTool() override;
    void killTool() override;
    void abandon() override;

protected:
    /// The work. What it throws makes the task fail, with the text in its report.
    virtual void doStartTask() = 0;

    /// The last moment at which the report may be changed, on the main thread: also for a task that
    /// was cancelled before it started.
    virtual void beforeEnd();

    /// True when nobody wants the rest of the work any more. Any thread.
    bool stopRequested() const { return cancelled() || abandoned_; }

    /// Runs a tool of the tools folder to its end on the calling thread and hands over its output
    /// piece by piece. Gives its exit status; throws std::runtime_error when it could not be
    /// started. `folder` is where it runs; empty: wherever we are.
    int runTool(const QString& tool, const QStringList& arguments, const QString& folder,
                const std::function<void(const QString& piece)>& take);

    /// Shows the status line, and the bar at so many of a count; never back.
    void showCount(const QString& status, qsizetype done, qsizetype count);

    /// Moves the bar on to a share from 0 to 1, in steps of one percent and never back.
    void raiseProgress(double share);

private:
    void finish();

    bool started_ = false;
    std::atomic<bool> abandoned_ = false;
    RunningChildren children_;
    BackgroundWork work_;
};

} // namespace quav
