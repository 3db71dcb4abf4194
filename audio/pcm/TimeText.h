#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

namespace quav::pcm {

/// When a block is heard: minutes, seconds and milliseconds, as 1:02.003.
inline std::string timeText(std::uint64_t block, std::uint32_t sampleRate) {
    const std::uint64_t milliseconds = block * 1000 / sampleRate;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%u:%02u.%03u",
                  static_cast<unsigned>(milliseconds / 60000),
                  static_cast<unsigned>(milliseconds / 1000 % 60),
                  static_cast<unsigned>(milliseconds % 1000));
    return text.data();
}

} // namespace quav::pcm
