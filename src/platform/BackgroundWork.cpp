#include "platform/BackgroundWork.h"

#include <utility>

namespace quav {

BackgroundWork::BackgroundWork(MainThread& mainThread) : mainThread_(mainThread) {}

BackgroundWork::~BackgroundWork() {
    owner_.reset();
    wait();
}

void BackgroundWork::wait() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void BackgroundWork::run(std::function<void()> work, std::function<void()> afterwards) {
    wait();
    const auto owner = std::make_shared<bool>();
    owner_ = owner;
    thread_ = std::thread([this, work = std::move(work), afterwards = std::move(afterwards),
                           owner = std::weak_ptr(owner)] {
        work();
        mainThread_.post([afterwards, owner] {
            if (owner.lock()) {
                afterwards();
            }
        });
    });
}

} // namespace quav
