#pragma once

#include "audio/ape/Level.h"

#include <cstdint>
#include <memory>
#include <span>

namespace quav::ape {

/// The instructions that the filters are run with. The numbers are the same with all of them.
enum class Instructions { Portable, Avx2, Avx512 };

/// The best ones that this machine has.
Instructions bestInstructions();

/// A later stage of prediction, for one channel or for the two of a stereo stream at once: a filter
/// that weighs many past samples and moves its 16-bit weights at every sample. A call takes at most
/// chunkBlocks of them.
class AdaptiveFilter {
public:
    AdaptiveFilter() = default;
    AdaptiveFilter(const AdaptiveFilter&) = delete;
    AdaptiveFilter& operator=(const AdaptiveFilter&) = delete;
    virtual ~AdaptiveFilter() = default;

    /// Puts residuals in place of samples. False when a sum is so large that readers disagree on
    /// its rounding.
    virtual bool encode(std::span<std::int32_t> first, std::span<std::int32_t> second) = 0;

    /// Puts samples in place of residuals. False when there is another way to round a sum; `wide`
    /// takes that one, with more than 32 bits.
    virtual bool decode(std::span<std::int32_t> first, std::span<std::int32_t> second,
                        bool wide) = 0;
};

/// Filters for one or two channels, as they are at the start of a frame. With one channel the
/// second span of its calls is not looked at. The shape is one of those in the table of levels.
std::unique_ptr<AdaptiveFilter> makeFilter(FilterShape shape, unsigned channels,
                                           Instructions instructions = bestInstructions());

} // namespace quav::ape
