#pragma once

#include "audio/pcm/Bytes.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quav::tta {

/// Appends codes to a frame, the lowest bit of every byte first.
class BitWriter {
public:
    /// Writes from the beginning of `bytes`, which grow as needed.
    explicit BitWriter(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}

    /// Writes the lowest `count` bits, 0 to 32; those above are zeros.
    void put(std::uint32_t bits, unsigned count) {
        window_ |= std::uint64_t{bits} << filled_;
        filled_ += count;
        if (filled_ >= 32) {
            store();
            window_ >>= 32;
            filled_ -= 32;
        }
    }

    /// So many ones, then a zero.
    void putUnary(std::uint32_t ones) {
        for (; ones >= 32; ones -= 32) {
            put(~std::uint32_t{0}, 32);
        }
        put((std::uint32_t{1} << ones) - 1, ones + 1);
    }

    /// Fills the last byte with zeros and cuts the bytes where the code ends.
    void finish() {
        store();
        bytes_.resize(used_ - 4 + (filled_ + 7) / 8);
    }

private:
    void store() {
        if (used_ + 4 > bytes_.size()) {
            bytes_.resize(2 * bytes_.size() + 4096);
        }
        for (unsigned i = 0; i < 4; ++i) {
            bytes_[used_++] = static_cast<std::uint8_t>(window_ >> (8 * i));
        }
    }

    std::vector<std::uint8_t>& bytes_;
    std::size_t used_ = 0;
    std::uint64_t window_ = 0; // the bits that wait, fewer than 32
    unsigned filled_ = 0;
};

/// Reads what BitWriter wrote.
class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    /// Takes `count` bits, 0 to 32.
    std::uint32_t take(unsigned count) {
        fill();
        if (count > filled_) [[unlikely]] {
            overran_ = true;
            return 0;
        }
        const std::uint64_t mask = (std::uint64_t{1} << count) - 1;
        const auto bits = static_cast<std::uint32_t>(window_ & mask);
        drop(count);
        return bits;
    }

    /// Counts the ones up to a zero and takes them all.
    std::uint64_t takeUnary() {
        std::uint64_t ones = 0;
        for (fill(); filled_ > 0; fill()) {
            if (const auto run = static_cast<unsigned>(std::countr_one(window_)); run < filled_) {
                drop(run + 1);
                return ones + run;
            }
            ones += filled_;
            drop(filled_);
        }
        overran_ = true;
        return 0;
    }

    /// Whether more was taken than there is.
    bool overran() const { return overran_; }

private:
    // Makes 56 bits at least stand ready, fewer only at the end.
    void fill() {
        if (bytes_.size() - used_ >= sizeof window_) [[likely]] {
            // Bits beyond those that count come again with the next word, as the same ones.
            window_ |= pcm::littleEndian64(&bytes_[used_]) << filled_;
            const unsigned whole = (63 - filled_) / 8;
            used_ += whole;
            filled_ += whole * 8;
            return;
        }
        for (; filled_ < 56 && used_ < bytes_.size(); filled_ += 8) {
            window_ |= std::uint64_t{bytes_[used_++]} << filled_;
        }
    }

    void drop(unsigned count) {
        window_ >>= count;
        filled_ -= count;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t used_ = 0;
    std::uint64_t window_ = 0; // the next bits, from the bottom
    unsigned filled_ = 0;      // fewer than 64
    bool overran_ = false;
};

} // namespace quav::tta
