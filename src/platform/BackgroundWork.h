#pragma once

#include "platform/MainThread.h"

#include <functional>
#include <future>
#include <thread>

namespace quav {

class WorkPool;

/// One piece of work on a thread of its own or in a pool, and what is to follow it on the main
/// thread. It belongs to the object that the work is about: the destructor waits for the work, and
/// what was to follow is then dropped.
class BackgroundWork {
public:
    explicit BackgroundWork(MainThread& mainThread);
    /// In a pool, which need not outlive it once the work has been done.
    BackgroundWork(MainThread& mainThread, WorkPool& pool);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    /// Starts `work`, in a pool when its turn has come; when it has returned, `afterwards` runs on
    /// the main thread. At most one piece of work at a time. Neither may throw.
    void run(std::function<void()> work, std::function<void()> afterwards);

    /// Returns when no work waits or runs any more.
    void wait();

private:
    MainThread& mainThread_;
    WorkPool* pool_ = nullptr;
    std::thread thread_;     ///< without a pool
    std::future<void> done_; ///< with one
};

} // namespace quav
