#include "engine/BackgroundTask.h"

#include "engine/QUAVTaskResults.h"

#include <QDebug>

#include <exception>

namespace quav {

BackgroundTask::BackgroundTask(TaskHost& queue) : QUAVTask(queue), work_(queue.mainThread()) {}

void BackgroundTask::startTask() {
    QUAVTask::startTask();
    started_ = true;
    work_.run(
        [this] {
            try {
                doStartTask();
            } catch (const std::exception& exception) {
                qWarning().noquote() << "Exception in" << title() << exception.what();
                results()->appendResults(QString::fromUtf8(exception.what()) + u'\n', *this);
                setError(true);
            }
        },
        [this] { finish(); });
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
