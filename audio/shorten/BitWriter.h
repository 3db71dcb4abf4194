#pragma once

#include "audio/pcm/ByteSink.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quav::shorten {

/// Writes codes, the highest bit of every byte first.
class BitWriter {
public:
    explicit BitWriter(pcm::ByteSink& to) : to_(to) {}

    /// Writes a number of `count` bits, 1 to 32.
    void put(std::uint32_t number, unsigned count) {
        if (count < free_) {
            free_ -= count;
            window_ = window_ << count | number;
            return;
        }
        const unsigned rest = count - free_;
        store(window_ << free_ | number >> rest);
        window_ = number & ((std::uint64_t{1} << rest) - 1);
        free_ = 64 - rest;
    }

    /// Writes a number as a code with so many low bits, at most 31.
    void putCode(std::uint32_t number, unsigned lowBits) {
        std::uint32_t zeros = number >> lowBits;
        while (zeros + lowBits > 31) {
            const std::uint32_t some = std::min<std::uint32_t>(zeros, 32);
            put(0, some);
            zeros -= some;
        }
        const std::uint32_t one = std::uint32_t{1} << lowBits;
        put(one | (number & (one - 1)), zeros + 1 + lowBits);
    }

    /// Ends with a one bit and zero bits to a whole number of 32-bit words, and passes it all on.
    void finish();

private:
    void store(std::uint64_t word);

    pcm::ByteSink& to_;
    std::uint64_t window_ = 0; // the last 64 - free_ bits, fewer than 64
    unsigned free_ = 64;
    std::size_t used_ = 0;
    std::array<std::uint8_t, 1 << 16> buffer_{};
};

} // namespace quav::shorten
