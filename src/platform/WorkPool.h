#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace quav {

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

} // namespace quav
