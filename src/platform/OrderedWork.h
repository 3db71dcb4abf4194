#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quav {

/// Pieces of work that run side by side and whose results are taken in their order.
template <typename Result>
class OrderedWork {
public:
    /// Calls `work(0)` to `work(count - 1)` on so many threads, and `take` with each result on the
    /// calling thread, in order, as early as that order allows. Ends early, after the work that
    /// has begun, when `take` says false. What `work` throws comes out here.
    static void run(std::size_t count, int threads, const std::function<Result(std::size_t)>& work,
                    const std::function<bool(std::size_t, Result)>& take) {
        OrderedWork ordered(count, threads, work);
        for (std::size_t i = 0; i < count; ++i) {
            if (!take(i, ordered.next())) {
                return;
            }
        }
    }

private:
    // So far the work may run ahead of a piece that takes long: memory stays flat.
    static constexpr std::size_t aheadPerThread = 8;

    struct Slot {
        std::optional<Result> result;
        std::exception_ptr failure;
        bool isDone() const { return result.has_value() || failure; }
    };

    OrderedWork(std::size_t count, int threads, const std::function<Result(std::size_t)>& work)
        : count_(count), work_(work) {
        const std::size_t helpers = std::min(count, static_cast<std::size_t>(std::max(1, threads)));
        ahead_ = helpers * aheadPerThread;
        try {
            for (std::size_t i = 0; i < helpers; ++i) {
                helpers_.emplace_back([this] { help(); });
            }
        } catch (const std::system_error&) {
            // The system gives no more threads; those that it gave do the work.
            if (helpers_.empty()) {
                throw;
            }
        }
    }

    ~OrderedWork() {
        {
            const std::lock_guard lock(mutex_);
            count_ = 0;
        }
        changed_.notify_all();
        for (std::thread& helper : helpers_) {
            helper.join();
        }
    }

    void help() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return begun_ >= count_ || begun_ < taken_ + ahead_; });
            if (begun_ >= count_) {
                return;
            }
            const std::size_t index = begun_++;
            Slot& slot = slots_.emplace_back();
            lock.unlock();
            std::optional<Result> result;
            std::exception_ptr failure;
            try {
                result = work_(index);
            } catch (...) {
                failure = std::current_exception();
            }
            lock.lock();
            slot = {std::move(result), failure};
            changed_.notify_all();
        }
    }

    Result next() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !slots_.empty() && slots_.front().isDone(); });
        Slot slot = std::move(slots_.front());
        slots_.pop_front();
        ++taken_;
        changed_.notify_all();
        if (slot.failure) {
            std::rethrow_exception(slot.failure);
        }
        return std::move(*slot.result);
    }

    std::size_t count_;
    const std::function<Result(std::size_t)>& work_;
    std::size_t ahead_ = 0;
    std::size_t begun_ = 0;
    std::size_t taken_ = 0;
    std::deque<Slot> slots_; ///< from `taken_` on; a reference stays good while others come and go
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::thread> helpers_;
};

} // namespace quav
