#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace quav::ape {

/// Turns round the bytes of every group of four, as a stream stores its frames. The size is a
/// multiple of four.
inline void reverseWords(std::span<std::uint8_t> bytes) {
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        std::swap(bytes[i], bytes[i + 3]);
        std::swap(bytes[i + 1], bytes[i + 2]);
    }
}

} // namespace quav::ape
