#include "engine/BackgroundTask.h"

#include "engine/StallWatch.h"
#include "engine/ToolOutputReader.h"
#include "engine/ToolsFolder.h"

#include <algorithm>
#include <csignal>
#include <optional>
#include <stdexcept>
#include <utility>

namespace quav {

namespace {

constexpr double whole = 100;

/// Keeps one tool where its task can end it, and where somebody sees whether it does anything.
class WatchedTool : public ChildKeeper {
public:
    WatchedTool(RunningChildren& children, StallWatch& watch, QString name,
                std::weak_ptr<QUAVTask> task)
        : children_(children), watch_(watch), name_(std::move(name)), task_(std::move(task)) {}

    void entered(pid_t child) override {
        child_ = child;
        children_.entered(child);
        watch_.began(child, name_, task_);
    }
    void left(pid_t child) override {
        stalledFor_ = watch_.ended(child);
        children_.left(child);
    }
    void printed() { watch_.printed(child_); }

    /// How long it had done nothing, if it was ended for that.
    std::optional<StallWatch::Time> stalledFor() const { return stalledFor_; }

private:
    RunningChildren& children_;
    StallWatch& watch_;
    QString name_;
    std::weak_ptr<QUAVTask> task_;
    pid_t child_ = 0;
    std::optional<StallWatch::Time> stalledFor_;
};

} // namespace

BackgroundTask::BackgroundTask(TaskHost& queue) : QUAVTask(queue), work_(queue.mainThread()) {}

void BackgroundTask::startTask() {
    QUAVTask::startTask();
    started_ = true;
    work_.run([this] { runHook([this] { doStartTask(); }); }, [this] { finish(); });
}

void BackgroundTask::stopTask() {
    // Running work notices the cancel by itself; its end calls `finish`.
    if (!started_) {
        finish();
    }
}

void BackgroundTask::terminateTool() {
    children_.signal(SIGTERM);
}

void BackgroundTask::killTool() {
    children_.signal(SIGKILL);
}

void BackgroundTask::abandon() {
    abandoned_ = true;
    children_.signal(SIGKILL);
    work_.wait();
}

void BackgroundTask::beforeEnd() {}

int BackgroundTask::runTool(const QString& tool, const QStringList& arguments,
                            const QString& folder,
                            const std::function<void(const QString&)>& take) {
    const ToolsFolder& tools = queue().toolsFolder();
    ToolOutputReader pieces;
    const auto hand = [&take](const QStringList& complete) {
        for (const QString& piece : complete) {
            take(piece);
        }
    };
    WatchedTool watched(children_, queue().stallWatch(), tool, weak_from_this());
    const auto status = runToEnd({tools.tool(tool), arguments, tools.environment(), folder},
                                 watched, [&](const QByteArray& bytes) {
                                     watched.printed();
                                     hand(pieces.feed(bytes));
                                 });
    if (!status) {
        throw std::runtime_error(
            (tools.has(tool) ? status.error() : tools.whatIsMissing(tool)).toStdString());
    }
    hand(pieces.finish());
    if (watched.stalledFor()) {
        setError(true);
        setFailureFacts({tool, *status, watched.stalledFor(), false});
    }
    return *status;
}

void BackgroundTask::showCount(const QString& status, qsizetype done, qsizetype count) {
    const double percent = static_cast<double>(done) * whole / static_cast<double>(count);
    // Several files may be read at once: the bar has then seen more of them than are complete.
    showProgress(status, std::max(percent, progressIndicatorValue()));
}

void BackgroundTask::raiseProgress(double share) {
    const double percent = share * whole;
    if (percent >= progressIndicatorValue() + 1) {
        setProgressIndicatorValue(percent);
        push(Bar);
    }
}

void BackgroundTask::finish() {
    runHook([this] { beforeEnd(); });
    QUAVTask::stopTask();
    reportCompletion();
    work_.wait(); // its thread has nothing left to do, and would keep its stack
}

} // namespace quav
