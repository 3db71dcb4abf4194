#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quav::ape {

/// The range coder of the Monkey's Audio stream, encoding side. Writes the bytes of one frame; a
/// carry runs back over the bytes that are written already.
class RangeEncoder {
public:
    /// Bytes that one step writes at most, and that must be free behind the written ones.
    static constexpr std::size_t stepBytes = 4;

    /// Starts behind `start` bytes that `to` already holds.
    RangeEncoder(std::vector<std::uint8_t>& to, std::size_t start) : bytes_(to), size_(start) {
        reserve(1 + stepBytes);
        bytes_[size_++] = 0;
    }

    /// Makes room for so many bytes; the steps themselves do not look.
    void reserve(std::size_t count) {
        if (bytes_.size() - size_ < count) {
            bytes_.resize(2 * bytes_.size() + count);
        }
    }

    /// Codes the part [low, low + width) of 2^bits.
    void encodePart(std::uint32_t low, std::uint32_t width, unsigned bits) {
        normalise();
        const std::uint32_t unit = range_ >> bits;
        low_ += unit * low;
        range_ = unit * width;
    }

    /// Codes one of `count` numbers that are equally likely.
    void encodeUniform(std::uint32_t number, std::uint32_t count) {
        normalise();
        range_ /= count;
        low_ += range_ * number;
    }

    /// Ends the frame; returns the number of bytes that are written in all.
    std::size_t finish() {
        reserve(2 * stepBytes);
        normalise();
        // A number of the range that ends with zero bytes.
        low_ = ((low_ >> shift) + 1) << shift;
        store();
        size_ += stepBytes;
        return size_;
    }

private:
    static constexpr unsigned shift = 23;
    static constexpr std::uint32_t top = std::uint32_t{1} << 31;

    // Writes out whole bytes until the range is larger than 2^23.
    void normalise() {
        const auto count = static_cast<unsigned>(std::countl_zero(2 * range_ - 1)) / 8;
        store();
        size_ += count;
        low_ = low_ << (8 * count) & (top - 1);
        range_ <<= 8 * count;
    }

    // Puts the upper bytes of `low_` behind the written ones, without counting them.
    void store() {
        if (low_ >= top) {
            carry();
        }
        const std::uint32_t upper = low_ << 1;
        std::uint8_t* const to = bytes_.data() + size_;
        to[0] = static_cast<std::uint8_t>(upper >> 24);
        to[1] = static_cast<std::uint8_t>(upper >> 16);
        to[2] = static_cast<std::uint8_t>(upper >> 8);
        to[3] = static_cast<std::uint8_t>(upper);
    }

    void carry() {
        std::size_t at = size_ - 1;
        while (++bytes_[at] == 0) {
            --at;
        }
        low_ -= top;
    }

    std::vector<std::uint8_t>& bytes_;
    std::size_t size_;
    std::uint32_t low_ = 0;
    std::uint32_t range_ = top;
};

} // namespace quav::ape
