#pragma once

#include "audio/shorten/BitWriter.h"
#include "audio/shorten/Mean.h"
#include "audio/shorten/Stream.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quav::shorten {

/// Encodes the blocks of a channel, each in the way that takes the fewest bits.
class ChannelEncoder {
public:
    static constexpr std::size_t blockSize = 256;
    static constexpr unsigned meanBlocks = 4;

    /// `middle` is where the mean begins, as the type of the samples tells.
    explicit ChannelEncoder(std::int32_t middle) : mean_(2, meanBlocks, middle) {}

    /// Where the next block's samples are to be put, of 17 bits at most.
    std::span<std::int32_t, blockSize> block() { return std::span(samples_).last<blockSize>(); }

    /// Encodes the first `size` samples of block().
    void encode(std::size_t size, BitWriter& to);

private:
    std::array<std::int32_t, differenceHistory + blockSize>
        samples_{}; // the block before goes first
    Mean mean_;
};

} // namespace quav::shorten
