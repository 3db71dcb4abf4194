#include "engine/BatchProgress.h"

#include <algorithm>

namespace quav {

namespace {

// Before this much has passed and been done, the estimate would jump about.
constexpr std::chrono::seconds leastTime{1};
constexpr double leastShare = 0.01;

} // namespace

void BatchProgress::start(Clock::time_point now) {
    *this = BatchProgress();
    start_ = now;
}

double BatchProgress::share(double running) const {
    return total_ > 0 ? std::clamp((finished_ + running) / total_, 0.0, 1.0) : 0;
}

std::optional<std::chrono::seconds> BatchProgress::timeLeft(double running,
                                                            Clock::time_point now) const {
    const double done = share(running);
    const auto passed = now - start_;
    if (done < leastShare || passed < leastTime) {
        return std::nullopt;
    }
    const auto left = std::chrono::duration<double>(passed) * ((1 - done) / done);
    return std::chrono::ceil<std::chrono::seconds>(left);
}

} // namespace quav
