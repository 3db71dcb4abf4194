#include "platform/MainThread.h"

#include <QDebug>
#include <QThread>

#include <algorithm>
#include <exception>
#include <future>
#include <iterator>
#include <utility>

namespace quav {

MainThread::MainThread(QObject* parent) : QObject(parent) {}

MainThread::~MainThread() {
    // What is dropped here may own objects that forget their own closures as they go.
    std::deque<Posted> dropped;
    {
        const std::lock_guard lock(mutex_);
        dropped.swap(posted_);
    }
    dropped.insert(dropped.end(), due_.begin(), due_.end());
    due_.clear();
}

bool MainThread::isCurrent() const {
    return QThread::currentThread() == thread();
}

void MainThread::post(std::function<void()> work, const void* owner) {
    bool wake = false;
    {
        const std::lock_guard lock(mutex_);
        wake = posted_.empty();
        posted_.push_back({std::move(work), owner});
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

void MainThread::forget(const void* owner) {
    const auto isOwners = [owner](const Posted& posted) { return posted.owner == owner; };
    std::erase_if(due_, isOwners);
    const std::lock_guard lock(mutex_);
    std::erase_if(posted_, isOwners);
}

void MainThread::runPosted() {
    {
        const std::lock_guard lock(mutex_);
        std::move(posted_.begin(), posted_.end(), std::back_inserter(due_));
        posted_.clear();
    }
    // A closure may open a dialog, whose event loop brings us here again: the inner call goes on
    // where the outer one is, so the order stays.
    while (!due_.empty()) {
        const Posted next = std::move(due_.front());
        due_.pop_front();
        try {
            next.work();
        } catch (const std::exception& exception) {
            qWarning().noquote() << "Exception in posted work:" << exception.what();
        }
    }
}

} // namespace quav
