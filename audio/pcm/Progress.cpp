#include "audio/pcm/Progress.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace quav::pcm {

namespace {

constexpr auto pause = std::chrono::milliseconds(100);

} // namespace

Progress::Progress(std::uint64_t total, Text text) : total_(total), text_(std::move(text)) {}

void Progress::advanceTo(std::uint64_t done) {
    if (!text_ || total_ == 0) {
        return;
    }
    // 100 % belongs to finish(): the last bytes may still fail.
    const double fraction =
        std::min(static_cast<double>(done) / static_cast<double>(total_), 0.999);
    const int percent = static_cast<int>(fraction * 100);
    const auto now = std::chrono::steady_clock::now();
    if (percent > lastPercent_ && now - lastTold_ >= pause) {
        lastPercent_ = percent;
        lastTold_ = now;
        tell(fraction);
    }
}

void Progress::finish() {
    if (text_) {
        tell(1);
    }
}

void Progress::tell(double fraction) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    tellUser(text_({static_cast<unsigned>(fraction * 100), fraction, elapsed.count()}));
}

void tellUser(const std::string& text) {
    if (::write(STDERR_FILENO, text.data(), text.size()) < 0) {
        return; // Nobody reads it, and there is nobody else to tell.
    }
}

} // namespace quav::pcm
