#pragma once

#include <chrono>
#include <optional>

namespace quav {

/// How far all the work is that was queued since the queue was last empty, in the weights of its
/// tasks.
class BatchProgress {
public:
    using Clock = std::chrono::steady_clock;

    void start(Clock::time_point now);
    void add(double weight) { total_ += weight; }
    void finish(double weight) { finished_ += weight; }

    /// The share that is done, 0 to 1; `running` is the weight done within the running tasks.
    double share(double running) const;

    /// The time left at the pace so far; nothing before there is a pace to speak of.
    std::optional<std::chrono::seconds> timeLeft(double running, Clock::time_point now) const;

private:
    double total_ = 0;
    double finished_ = 0;
    Clock::time_point start_;
};

} // namespace quav
