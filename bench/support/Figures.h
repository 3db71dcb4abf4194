#pragma once

#include <chrono>
#include <cstdio>
#include <functional>

namespace quav::bench {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

inline double millisecondsOf(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return Milliseconds(Clock::now() - start).count();
}

/// One line: what was measured, ours, the reference, the ratio of the two, and the bar. Gives
/// whether the bar was met.
inline bool report(const char* what, double ours, double reference, const char* referenceName,
                   double bar) {
    const bool met = ours <= bar;
    std::printf("%-44s ours %9.2f ms   %s %9.2f ms   ratio %7.2f   bar %7.1f ms   %s\n", what, ours,
                referenceName, reference, ours / reference, bar, met ? "met" : "MISSED");
    std::fflush(stdout);
    return met;
}

} // namespace quav::bench
