#pragma once

#include "audio/ape/RangeDecoder.h"
#include "audio/ape/RangeEncoder.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace quav::ape {

/// How large the residuals of one channel are of late, and how that makes them into numbers for the
/// range coder: the quotient by a measure of the size goes through a fixed table of likelihoods, of
/// the remainder all values are equally likely.
class Residuals {
public:
    /// Bytes that one value takes at most.
    static constexpr std::size_t valueBytes = 5 * RangeEncoder::stepBytes;

    void encode(std::int32_t value, RangeEncoder& to) {
        const auto same = static_cast<std::uint32_t>(value);
        const std::uint32_t folded = value > 0 ? 2 * same - 1 : 0 - 2 * same;
        const std::uint32_t divisor = pivot();
        const std::uint32_t quotient = folded / divisor;
        const std::uint32_t remainder = folded % divisor;
        if (quotient < escape) [[likely]] {
            to.encodePart(ends[quotient], ends[quotient + 1] - ends[quotient], tableBits);
        } else {
            to.encodePart(ends[escape], 1, tableBits);
            to.encodePart(quotient >> 16, 1, 16);
            to.encodePart(quotient & 0xFFFF, 1, 16);
        }
        if (divisor <= 0xFFFF) [[likely]] {
            to.encodeUniform(remainder, divisor);
        } else {
            const unsigned lowBits = excessBits(divisor);
            to.encodeUniform(remainder >> lowBits, (divisor >> lowBits) + 1);
            to.encodePart(remainder & ((1U << lowBits) - 1), 1, lowBits);
        }
        follow(folded);
    }

    /// Whatever a damaged frame holds becomes some number.
    std::int32_t decode(RangeDecoder& from) {
        const std::uint32_t divisor = pivot();
        std::uint32_t quotient = symbolAt(from.place(tableBits));
        from.take(ends[quotient], ends[quotient + 1] - ends[quotient]);
        if (quotient == escape) [[unlikely]] {
            const std::uint32_t upper = from.uniform(1U << 16);
            quotient = upper << 16 | (from.uniform(1U << 16) & 0xFFFF);
        }
        std::uint32_t remainder = 0;
        if (divisor <= 0xFFFF) [[likely]] {
            remainder = from.uniform(divisor);
        } else {
            const unsigned lowBits = excessBits(divisor);
            remainder = from.uniform((divisor >> lowBits) + 1) << lowBits;
            remainder += from.uniform(1U << lowBits);
        }
        const std::uint32_t folded = quotient * divisor + remainder;
        follow(folded);
        const std::uint32_t half = folded / 2;
        return static_cast<std::int32_t>((folded & 1) != 0 ? half + 1 : 0 - half);
    }

private:
    static constexpr unsigned tableBits = 16;
    static constexpr std::uint32_t escape = 63;

    // Where the parts of the symbols end in 2^16; each begins where the one before ends.
    static constexpr std::array<std::uint32_t, escape + 2> ends = [] {
        constexpr std::array<std::uint32_t, 22> wide{
            0,     19578, 36160, 48417, 56323, 60899, 63265, 64435, 64971, 65232, 65351,
            65416, 65447, 65466, 65476, 65482, 65485, 65488, 65490, 65491, 65492, 65493};
        std::array<std::uint32_t, escape + 2> all{};
        for (std::uint32_t i = 0; i < all.size(); ++i) {
            all[i] = i < wide.size() ? wide[i] : all[i - 1] + 1;
        }
        return all;
    }();

    // The symbol at the first of every 256 places.
    static constexpr std::array<std::uint8_t, 256> firstSymbols = [] {
        std::array<std::uint8_t, 256> all{};
        for (std::uint32_t i = 1; i < all.size(); ++i) {
            all[i] = all[i - 1];
            while (ends[all[i] + 1U] <= i * 256) {
                ++all[i];
            }
        }
        return all;
    }();

    static std::uint32_t symbolAt(std::uint32_t place) {
        if (place >= ends[escape]) [[unlikely]] {
            return escape;
        }
        std::uint32_t symbol = firstSymbols[place / 256];
        while (place >= ends[symbol + 1]) {
            ++symbol;
        }
        return symbol;
    }

    // By how many bits a divisor is too long for one step of the coder.
    static unsigned excessBits(std::uint32_t divisor) {
        return static_cast<unsigned>(std::bit_width(divisor)) - 16;
    }

    std::uint32_t pivot() const { return sum_ < 32 ? 1 : sum_ / 32; }
    void follow(std::uint32_t folded) { sum_ += (folded + 1) / 2 - (sum_ + 16) / 32; }

    std::uint32_t sum_ = 16384;
};

} // namespace quav::ape
