#include "engine/BackgroundTask.h"

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

void BackgroundTask::abandon() {
    work_.wait();
}

void BackgroundTask::finish() {
    QUAVTask::stopTask();
    reportCompletion();
}

} // namespace quav
