#pragma once

#include <cstdint>

namespace quav::ape {

// Sums and differences modulo 2^32: what a stream's numbers are defined by, where C++ defines
// nothing.

inline std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

inline std::int32_t wrapSubtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// -1, 0 or 1.
inline std::int32_t signOf(std::int32_t value) {
    return (value > 0 ? 1 : 0) - (value < 0 ? 1 : 0);
}

} // namespace quav::ape
