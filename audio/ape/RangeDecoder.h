#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quav::ape {

/// The range coder of the Monkey's Audio stream, decoding side. Whatever a damaged frame holds, it
/// goes on with some numbers; overran() tells when it needed more bytes than a sound frame does.
class RangeDecoder {
public:
    /// Bytes that must be readable behind those of the frame; their values do not matter.
    static constexpr std::size_t padding = 8;

    // The first byte is only there to take a carry.
    explicit RangeDecoder(std::span<const std::uint8_t> frame)
        : bytes_(frame), low_(static_cast<std::uint32_t>(load() >> 57)) {}

    /// The place of the coded part in 2^bits; at least 2^bits in a damaged frame.
    std::uint32_t place(unsigned bits) {
        normalise();
        unit_ = range_ >> bits;
        return low_ / unit_;
    }

    /// Goes on behind place(): it belongs to the part [low, low + width).
    void take(std::uint32_t low, std::uint32_t width) {
        low_ -= unit_ * low;
        range_ = unit_ * width;
    }

    /// One of `count` numbers that are equally likely; `count` is 1 to 65536.
    std::uint32_t uniform(std::uint32_t count) {
        // A division by multiplication: the factor does not depend on the step before, so that it
        // is ready early. It is too large by less than 2^-31 of itself, which no range shows.
        const unsigned scale = 31 + static_cast<unsigned>(std::bit_width(count));
        const auto power = static_cast<double>(std::uint64_t{1} << scale);
        const std::uint64_t factor = static_cast<std::uint64_t>(power / count) + 1;
        normalise();
        range_ = static_cast<std::uint32_t>(range_ * factor >> scale);
        const std::uint32_t number = low_ / range_;
        low_ -= range_ * number;
        return number;
    }

    bool overran() const { return at_ > bytes_.size() + 4; }

private:
    // The next eight bytes, the first one uppermost.
    std::uint64_t load() const {
        const std::uint8_t* const from = bytes_.data() + std::min(at_, bytes_.size());
        std::uint64_t word = 0;
        for (unsigned i = 0; i < 8; ++i) {
            word = word << 8 | from[i];
        }
        return word;
    }

    // Takes in whole bytes until the range is larger than 2^23. The state holds 31 bits, one less
    // than four bytes, so that it ends inside a byte always.
    void normalise() {
        const auto count = static_cast<unsigned>(std::countl_zero(2 * range_ - 1)) / 8;
        const std::uint64_t more = load() << 7 >> 32;
        low_ = static_cast<std::uint32_t>((std::uint64_t{low_} << 32 | more) << (8 * count) >> 32);
        range_ <<= 8 * count;
        at_ += count;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 1;
    std::uint32_t low_ = 0;
    std::uint32_t range_ = 1U << 7;
    std::uint32_t unit_ = 1;
};

} // namespace quav::ape
