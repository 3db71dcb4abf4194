#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace quav::shorten {

/// Eight bytes as a number whose highest bit is the highest of the first byte.
inline std::uint64_t loadBigEndian(const std::uint8_t* from) {
    std::uint64_t word = 0;
    std::memcpy(&word, from, sizeof word);
    return std::endian::native == std::endian::big ? word : __builtin_bswap64(word);
}

inline void storeBigEndian(std::uint64_t word, std::uint8_t* to) {
    word = std::endian::native == std::endian::big ? word : __builtin_bswap64(word);
    std::memcpy(to, &word, sizeof word);
}

} // namespace quav::shorten
