#pragma once

#include "platform/MainThread.h"

#include <functional>
#include <thread>

namespace quav {

/// One piece of work on a thread of its own, and what is to follow it on the main thread. It
/// belongs to the object that the work is about: the destructor waits for the work, and what was to
/// follow is then dropped.
class BackgroundWork {
public:
    explicit BackgroundWork(MainThread& mainThread);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    /// Starts `work`; when it has returned, `afterwards` runs on the main thread. At most one piece
    /// of work at a time. Neither may throw.
    void run(std::function<void()> work, std::function<void()> afterwards);

    /// Returns when no work runs any more.
    void wait();

private:
    MainThread& mainThread_;
    std::thread thread_;
};

} // namespace quav
