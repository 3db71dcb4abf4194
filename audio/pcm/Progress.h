#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace quav::pcm {

/// Tells how far the work is, at whole per cents, some ten times a second at most, and 100 % once
/// at the end. Every update is one write to standard error, so that no reader gets half of one;
/// what happens to standard error is nobody's error.
class Progress {
public:
    struct Moment {
        unsigned percent = 0; ///< 0 to 100
        double fraction = 0;  ///< 0 to 1
        double elapsed = 0;   ///< seconds since the work began
    };
    /// Makes the text of an update.
    using Text = std::function<std::string(const Moment&)>;

    /// Silent.
    Progress() = default;
    /// `total` in any unit that advanceTo() uses.
    Progress(std::uint64_t total, Text text);

    void advanceTo(std::uint64_t done);
    /// Writes the last update, 100 %.
    void finish();

private:
    void tell(double fraction);

    std::uint64_t total_ = 0;
    Text text_;
    int lastPercent_ = -1;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point lastTold_;
};

/// Writes a text to standard error in one piece.
void tellUser(const std::string& text);

} // namespace quav::pcm
