#include "engine/BackgroundTask.h"

#include "engine/ToolPieces.h"
#include "engine/ToolsFolder.h"

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace quav {

namespace {

constexpr double whole = 100;

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
    ToolPieces pieces;
    const auto hand = [&take](const QStringList& complete) {
        for (const QString& piece : complete) {
            take(piece);
        }
    };
    const auto status =
        runToEnd({tools.tool(tool), arguments, tools.environment(), folder}, children_,
                 [&](const QByteArray& bytes) { hand(pieces.feed(bytes)); });
    if (!status) {
        throw std::runtime_error(
            (tools.has(tool) ? status.error() : tools.whatIsMissing(tool)).toStdString());
    }
    hand(pieces.finish());
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
