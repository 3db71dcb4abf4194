#include "platform/BackgroundWork.h"

#include "platform/WorkPool.h"

#include <utility>

namespace quav {

BackgroundWork::BackgroundWork(MainThread& mainThread) : mainThread_(mainThread) {}

BackgroundWork::BackgroundWork(MainThread& mainThread, WorkPool& pool)
    : mainThread_(mainThread), pool_(&pool) {}

BackgroundWork::~BackgroundWork() {
    wait();
    mainThread_.forget(this);
}

void BackgroundWork::wait() {
    if (thread_.joinable()) {
        thread_.join();
    }
    if (done_.valid()) {
        done_.wait();
    }
}

void BackgroundWork::run(std::function<void()> work, std::function<void()> afterwards) {
    wait();
    auto both = [this, work = std::move(work), afterwards = std::move(afterwards)] {
        work();
        mainThread_.post(afterwards, this);
    };
    if (pool_) {
        done_ = pool_->run(std::move(both));
    } else {
        thread_ = std::thread(std::move(both));
    }
}

} // namespace quav
