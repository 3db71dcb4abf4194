#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace quav::pcm {

/// Threads that work on pieces side by side and give them back in the order they came. Every piece
/// is used again, so memory does not grow. See inOrder().
template <typename Piece, typename Work>
class OrderedWork {
public:
    OrderedWork(std::size_t jobs, std::size_t pieces, const Work& work)
        : work_(work), slots_(pieces) {
        threads_.reserve(jobs);
        try {
            while (threads_.size() < jobs) {
                threads_.emplace_back([this] { run(); });
            }
        } catch (const std::system_error&) {
            // The system gives no more threads; those that run can do all the work.
            if (threads_.empty()) {
                throw;
            }
        }
    }
    ~OrderedWork() { stop(); }
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;

    bool isEmpty() const { return handedIn_ == handedOut_; }
    bool isFull() const { return handedIn_ - handedOut_ == slots_.size(); }

    /// The piece to fill for the next handIn(); not when isFull().
    Piece& next() { return slots_[handedIn_ % slots_.size()].piece; }

    void handIn() {
        set(slots_[handedIn_++ % slots_.size()], State::Waiting);
        changed_.notify_all();
    }

    /// Waits for the oldest piece and calls `deliver` with it; not when isEmpty().
    template <typename Deliver>
    void handOut(Deliver& deliver) {
        Slot& slot = slots_[handedOut_++ % slots_.size()];
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return slot.state == State::Done; });
        }
        if (slot.error) {
            std::rethrow_exception(slot.error);
        }
        deliver(slot.piece);
        set(slot, State::Free);
    }

private:
    enum class State { Free, Waiting, Running, Done };
    struct Slot {
        Piece piece;
        State state = State::Free;
        std::exception_ptr error;
    };

    void set(Slot& slot, State state) {
        const std::lock_guard lock(mutex_);
        slot.state = state;
    }

    void run() {
        std::unique_lock lock(mutex_);
        while (true) {
            const auto slot = [this]() -> Slot& { return slots_[taken_ % slots_.size()]; };
            changed_.wait(lock, [&] { return stops_ || slot().state == State::Waiting; });
            if (stops_) {
                return;
            }
            Slot& mine = slot();
            ++taken_;
            mine.state = State::Running;
            lock.unlock();
            try {
                work_(mine.piece);
            } catch (...) {
                mine.error = std::current_exception();
            }
            lock.lock();
            mine.state = State::Done;
            changed_.notify_all();
        }
    }

    void stop() {
        {
            const std::lock_guard lock(mutex_);
            stops_ = true;
        }
        changed_.notify_all();
        threads_.clear(); // joins them
    }

    const Work& work_;
    std::vector<Slot> slots_;
    std::mutex mutex_;
    std::condition_variable changed_;
    // Numbers of pieces since the beginning; modulo the number of slots, they tell the slot.
    std::size_t handedIn_ = 0;
    std::size_t taken_ = 0;
    std::size_t handedOut_ = 0;
    bool stops_ = false;
    std::vector<std::jthread> threads_;
};

/// Takes pieces through three steps: `fetch(piece)` fills the next one in order and returns false
/// at the end, `work(piece)` runs side by side on up to `jobs` threads, `deliver(piece)` gets them
/// in the order they were fetched. fetch and deliver run on the calling thread. So many pieces
/// exist for each job: the more, the further the others may run ahead of one that takes long. With
/// one job no thread is started. The first exception of any step ends the whole and is thrown from
/// here.
template <typename Piece, typename Fetch, typename Work, typename Deliver>
void inOrder(std::size_t jobs, Fetch fetch, Work work, Deliver deliver,
             std::size_t piecesPerJob = 2) {
    if (jobs <= 1) {
        for (Piece piece; fetch(piece);) {
            work(piece);
            deliver(piece);
        }
        return;
    }
    OrderedWork<Piece, Work> threads(jobs, piecesPerJob * jobs, work);
    while (fetch(threads.next())) {
        threads.handIn();
        if (threads.isFull()) {
            threads.handOut(deliver);
        }
    }
    while (!threads.isEmpty()) {
        threads.handOut(deliver);
    }
}

} // namespace quav::pcm
