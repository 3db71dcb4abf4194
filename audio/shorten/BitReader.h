#pragma once

#include "audio/pcm/Bytes.h"
#include "audio/pcm/InputFile.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quav::shorten {

/// Reads codes, the highest bit of every byte first. Throws Failure with Kind::Input at the end of
/// the input, and for numbers beyond 32 bits.
class BitReader {
public:
    /// Begins at the next byte of the input.
    explicit BitReader(pcm::InputFile& input) : input_(input) {}

    /// Reads a code with so many low bits, at most 31.
    std::uint32_t code(unsigned lowBits) {
        if (bytes_.size() - used_ >= sizeof window_) {
            // Bits that stay where they are come again with the next word, as the same ones.
            window_ |= pcm::bigEndian64(&bytes_[used_]) >> filled_;
            const unsigned whole = (63 - filled_) / 8;
            used_ += whole;
            filled_ += whole * 8;
            const auto zeros = static_cast<unsigned>(std::countl_zero(window_));
            // A number beyond 32 bits is refused there.
            if (const unsigned length = zeros + 1 + lowBits;
                length <= filled_ && zeros <= 0xFFFFFFFFU >> lowBits) {
                const std::uint64_t oneAndLowBits = window_ << zeros >> (63 - lowBits);
                window_ <<= length;
                filled_ -= length;
                return static_cast<std::uint32_t>(oneAndLowBits) + ((zeros - 1) << lowBits);
            }
        }
        return longCode(lowBits);
    }

    /// Reads a signed number whose k is one less than `lowBits`, as two's complement.
    std::uint32_t signedCode(unsigned lowBits) {
        const std::uint32_t folded = code(lowBits);
        return folded >> 1 ^ (0 - (folded & 1));
    }

private:
    std::uint32_t longCode(unsigned lowBits);
    std::uint32_t bit();
    [[noreturn]] void damaged(const char* what) const;

    pcm::InputFile& input_;
    std::span<const std::uint8_t> bytes_; // what the input shows
    std::size_t used_ = 0;
    std::uint64_t window_ = 0; // the next bits, from the top
    unsigned filled_ = 0;      // fewer than 64; below them are zeros or the bits that follow
};

} // namespace quav::shorten
