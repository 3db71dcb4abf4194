#include "platform/BackgroundWork.h"

#include <utility>

namespace quav {

BackgroundWork::BackgroundWork(MainThread& mainThread) : mainThread_(mainThread) {}

BackgroundWork::~BackgroundWork() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BackgroundWork::run(std::function<void()> work, std::function<void()> afterwards) {
    if (thread_.joinable()) {
        thread_.join();
    }
    // `afterwards` is moved on and not copied: it may own the task that owns us, and the last such
    // owner must not go on the worker thread.
    thread_ =
        std::thread([this, work = std::move(work), afterwards = std::move(afterwards)]() mutable {
            work();
            mainThread_.post(std::move(afterwards));
        });
}

} // namespace quav
