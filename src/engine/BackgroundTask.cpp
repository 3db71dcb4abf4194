#include "engine/BackgroundTask.h"

#include "engine/ToolPieces.h"
#include "engine/ToolsFolder.h"

#include <csignal>
#include <stdexcept>

namespace quav {

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

void BackgroundTask::showProgress(const QString& status, double percent) {
    setTopTextFieldString(status);
    setProgressIndicatorValue(percent);
    push(StatusLine | Bar);
}

void BackgroundTask::raiseProgress(double percent) {
    if (percent >= progressIndicatorValue() + 1) {
        setProgressIndicatorValue(percent);
        push(Bar);
    }
}

void BackgroundTask::finish() {
    runHook([this] { beforeEnd(); });
    QUAVTask::stopTask();
    reportCompletion();
}

} // namespace quav
