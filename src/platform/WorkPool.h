#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace quav {

class MainThread;

/// Pieces of work on a few threads, begun in the order in which they were given. The destructor
/// returns when all of them have been done.
class WorkPool {
public:
    /// As many threads as there are cores, and two at least, so that one piece that waits for a
    /// slow disk does not keep back all others.
    static unsigned defaultThreads();

    /// Never more than so many threads at once, one at least; that one is started here. Throws
    /// std::system_error when it cannot be.
    explicit WorkPool(unsigned mostThreads = defaultThreads());
    ~WorkPool();
    WorkPool(const WorkPool&) = delete;
    WorkPool& operator=(const WorkPool&) = delete;

    /// Gives work, which may not throw, and what tells when it has been done. Any thread.
    std::future<void> run(std::function<void()> work);

private:
    void serve();

    const unsigned mostThreads_;
    std::mutex mutex_; ///< for all that follows
    std::condition_variable given_;
    std::deque<std::packaged_task<void()>> waiting_;
    std::vector<std::thread> threads_;
    unsigned idle_ = 0;
    bool ends_ = false;
};

/// One piece of work in a pool, and what is to follow it on the main thread. It belongs to the
/// object that the work is about: the destructor waits for the work, and what was to follow is then
/// dropped. The pool need not outlive it, once the work has been done.
class PooledWork {
public:
    PooledWork(WorkPool& pool, MainThread& mainThread);
    ~PooledWork();
    PooledWork(const PooledWork&) = delete;
    PooledWork& operator=(const PooledWork&) = delete;

    /// Has `work` done; when it has returned, `afterwards` runs on the main thread. At most one
    /// piece of work at a time. Neither may throw.
    void run(std::function<void()> work, std::function<void()> afterwards);

    /// Returns when no work waits or runs any more.
    void wait();

private:
    WorkPool& pool_;
    MainThread& mainThread_;
    std::future<void> done_;
};

} // namespace quav
