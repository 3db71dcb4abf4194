#include "platform/MainThread.h"

#include <QThread>

#include <future>
#include <utility>

namespace quav {

MainThread::MainThread(QObject* parent) : QObject(parent) {}

bool MainThread::isCurrent() const {
    return QThread::currentThread() == thread();
}

void MainThread::post(std::function<void()> work) {
    bool wake = false;
    {
        const std::lock_guard lock(mutex_);
        wake = posted_.empty();
        posted_.push_back(std::move(work));
    }
    if (wake) {
        // By name, so that the event is made and unmade inside Qt: see `mutex_`.
        QMetaObject::invokeMethod(this, "runPosted", Qt::QueuedConnection);
    }
}

void MainThread::runAndWait(const std::function<void()>& work) {
    if (isCurrent()) {
        work();
        return;
    }
    std::promise<void> done;
    post([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void MainThread::runPosted() {
    std::vector<std::function<void()>> batch;
    {
        const std::lock_guard lock(mutex_);
        batch.swap(posted_);
    }
    for (const auto& work : batch) {
        work();
    }
}

} // namespace quav
