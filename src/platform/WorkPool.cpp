#include "platform/WorkPool.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace quav {

unsigned WorkPool::defaultThreads() {
    return std::max(2U, std::thread::hardware_concurrency());
}

WorkPool::WorkPool(unsigned mostThreads) : mostThreads_(std::max(1U, mostThreads)) {
    threads_.reserve(mostThreads_);
    threads_.emplace_back(&WorkPool::serve, this);
}

WorkPool::~WorkPool() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    given_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

std::future<void> WorkPool::run(std::function<void()> work) {
    std::packaged_task<void()> task(std::move(work));
    std::future<void> done = task.get_future();
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(task));
        if (waiting_.size() > idle_ && threads_.size() < mostThreads_) {
            try {
                threads_.emplace_back(&WorkPool::serve, this);
            } catch (const std::system_error&) {
                // The system has no more to give: those that there are do it all.
            }
        }
    }
    given_.notify_one();
    return done;
}

void WorkPool::serve() {
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        given_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
        --idle_;
        if (waiting_.empty()) {
            return;
        }
        std::packaged_task<void()> task = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        task();
        task = {}; // and what it holds, before anything else
        lock.lock();
    }
}

} // namespace quav
