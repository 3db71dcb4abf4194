#include "shntool/Console.h"

#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"
#include "shntool/TextFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <unistd.h>

namespace quav::shntool {

namespace {

constexpr auto pause = std::chrono::milliseconds(100);

} // namespace

void Console::result(const std::string& lines) {
    printText(pcm::printable(lines, STDOUT_FILENO, true) + '\n');
}

std::string Console::name(const std::string& name) {
    return pcm::printable(name, STDOUT_FILENO);
}

void Console::note(const std::string& line) {
    if (!settings_.quiet) {
        pcm::tellUser(pcm::printable(line, STDERR_FILENO) + '\n');
    }
}

void Console::line(const std::string& kind, const std::string& text) {
    if (meter_ != nullptr) {
        meter_->fail();
    }
    pcm::tellUser("shntool [" + settings_.mode + "]: " + kind + ": " +
                  pcm::printable(text, STDERR_FILENO) + '\n');
}

void Console::warn(const std::string& text) {
    if (settings_.warnings && !settings_.quiet) {
        line("warning", text);
    } else if (meter_ != nullptr) {
        meter_->fail();
    }
}

void Console::error(const ModeError& error) {
    if (*error.what() == '\0') {
        return; // It has been told.
    }
    line("error", error.what());
    if (error.kind() == ModeError::Kind::Usage) {
        const std::string start = "shntool [" + settings_.mode + "]: ";
        pcm::tellUser(start + '\n');
        pcm::tellUser(start + "type 'shntool " + settings_.mode + " -h' for help\n");
    }
}

void Console::debug(const std::string& text) {
    if (settings_.debug) {
        line("debug1", text);
    }
}

Meter::Meter(Console& console, const std::string& title, std::uint64_t total)
    : console_(console), total_(total) {
    console_.meter_ = this;
    if (!console_.settings_.quiet) {
        pcm::tellUser(pcm::printable(title, STDERR_FILENO) + " : " + step(0));
    }
}

// What follows the step that is shown, so that a terminal shows the new one in its place.
std::string Meter::step(unsigned percent) {
    const bool isFirst = percent == 0;
    switch (console_.settings_.progress) {
    case ProgressKind::Percent: {
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "%3u%% ", percent);
        return (isFirst ? "" : "\b\b\b\b\b") + std::string(text.data());
    }
    case ProgressKind::Dots:
        return std::string(percent / 10 - shown_ / 10, '.') + (percent == 100 ? " " : "");
    case ProgressKind::Spinner: {
        constexpr std::array marks{"| ", "/ ", "- ", "\\ "};
        return (isFirst ? "" : "\b\b") + std::string(marks.at(percent % marks.size()));
    }
    case ProgressKind::Face: {
        constexpr std::array marks{"8-O ", ":-( ", ":-/ ", ":-| ", ":-) ", ":-D "};
        return (isFirst ? "" : "\b\b\b\b") + std::string(marks.at(percent / 20));
    }
    case ProgressKind::None:
        break;
    }
    return {};
}

void Meter::advance(std::uint64_t by) {
    at_ += by;
    if (!isOpen_ || console_.settings_.quiet || total_ == 0) {
        return;
    }
    // 100 % belongs to done(): the last bytes may still fail.
    const auto percent = static_cast<unsigned>(
        std::min(static_cast<double>(at_) / static_cast<double>(total_), 0.999) * 100);
    const auto now = std::chrono::steady_clock::now();
    if (percent > shown_ && now - lastShown_ >= pause) {
        pcm::tellUser(step(percent));
        shown_ = percent;
        lastShown_ = now;
    }
}

void Meter::end(const std::string& text) {
    isOpen_ = false;
    console_.meter_ = nullptr;
    if (!console_.settings_.quiet) {
        pcm::tellUser(text);
    }
}

void Meter::done() {
    if (isOpen_) {
        end(step(100) + "OK\n");
    }
}

void Meter::fail() {
    if (isOpen_) {
        end("ERROR\n");
    }
}

} // namespace quav::shntool
