#include "platform/BackgroundWork.h"

#include <utility>

namespace quav {

BackgroundWork::BackgroundWork(MainThread& mainThread) : mainThread_(mainThread) {}

BackgroundWork::~BackgroundWork() {
    wait();
    mainThread_.forget(this);
}

void BackgroundWork::wait() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BackgroundWork::run(std::function<void()> work, std::function<void()> afterwards) {
    wait();
    thread_ = std::thread([this, work = std::move(work), afterwards = std::move(afterwards)] {
        work();
        mainThread_.post(afterwards, this);
    });
}

} // namespace quav
