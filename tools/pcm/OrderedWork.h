#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace quav::pcm {

/// Takes pieces through three steps: `fetch(piece)` fills the next one in order and returns false
/// at the end, `work(piece)` runs side by side on up to `jobs` threads, `deliver(piece)` gets them
/// in the order they were fetched. fetch and deliver run on the calling thread. At most 2 * jobs
/// pieces exist, and each is used again, so memory does not grow. With one job no thread is
/// started. The first exception of any step ends the whole and is thrown from here.
template <typename Piece, typename Fetch, typename Work, typename Deliver>
void inOrder(std::size_t jobs, Fetch fetch, Work work, Deliver deliver) {
    if (jobs <= 1) {
        for (Piece piece; fetch(piece);) {
            work(piece);
            deliver(piece);
        }
        return;
    }
    enum class State { Free, Waiting, Running, Done };
    struct Slot {
        Piece piece;
        State state = State::Free;
        std::exception_ptr error;
    };
    std::vector<Slot> slots(2 * jobs);
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t nextToWork = 0; // counted over all pieces; the slot is this modulo their number
    bool stop = false;

    const auto worker = [&] {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [&] {
                return stop || slots[nextToWork % slots.size()].state == State::Waiting;
            });
            if (stop) {
                return;
            }
            Slot& slot = slots[nextToWork++ % slots.size()];
            slot.state = State::Running;
            lock.unlock();
            try {
                work(slot.piece);
            } catch (...) {
                slot.error = std::current_exception();
            }
            lock.lock();
            slot.state = State::Done;
            changed.notify_all();
        }
    };
    std::vector<std::jthread> threads;
    const struct Stopper {
        std::mutex& mutex;
        std::condition_variable& changed;
        bool& stop;
        std::vector<std::jthread>& threads;
        ~Stopper() {
            {
                const std::lock_guard lock(mutex);
                stop = true;
            }
            changed.notify_all();
            threads.clear();
        }
    } stopper{mutex, changed, stop, threads};
    for (std::size_t i = 0; i < jobs; ++i) {
        threads.emplace_back(worker);
    }

    const auto deliverNext = [&](std::size_t at) {
        Slot& slot = slots[at % slots.size()];
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return slot.state == State::Done; });
        }
        if (slot.error) {
            std::rethrow_exception(slot.error);
        }
        deliver(slot.piece);
        const std::lock_guard lock(mutex);
        slot.state = State::Free;
    };
    std::size_t fetched = 0;
    std::size_t delivered = 0;
    while (true) {
        if (fetched - delivered == slots.size()) {
            deliverNext(delivered++);
        }
        if (Slot& slot = slots[fetched % slots.size()]; fetch(slot.piece)) {
            const std::lock_guard lock(mutex);
            slot.state = State::Waiting;
            ++fetched;
        } else {
            break;
        }
        changed.notify_all();
    }
    while (delivered < fetched) {
        deliverNext(delivered++);
    }
}

} // namespace quav::pcm
