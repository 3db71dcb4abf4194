#pragma once

#include "platform/MainThread.h"

#include <functional>
#include <thread>

namespace quav {

/// One piece of work on a thread of its own, and what is to follow it on the main thread. The
/// owner outlives the work: the destructor waits for it.
class BackgroundWork {
public:
    explicit BackgroundWork(MainThread& mainThread);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    /// Starts `work`; when it has returned, `afterwards` runs on the main thread. At most one piece
    /// of work at a time. Neither may throw.
    void run(std::function<void()> work, std::function<void()> afterwards);

private:
    MainThread& mainThread_;
    std::thread thread_;
};

} // namespace quav
