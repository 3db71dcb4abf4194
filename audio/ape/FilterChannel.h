#pragma once

#include "audio/ape/FrameFormat.h"
#include "audio/ape/Wrapping.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace quav::ape {

/// The adaptation entries of this many newest samples change as they grow older; what is stored of
/// all entries is what they come to in the end.
inline constexpr std::size_t youngCount = 16;

/// How many times as much the young ones count, oldest first: an entry is halved when it is one,
/// two and eight samples old.
alignas(32) inline constexpr std::array<std::int16_t, youngCount> youth{1, 1, 1, 1, 1, 1, 1, 1,
                                                                        2, 2, 2, 2, 2, 2, 4, 8};

/// What a filter remembers of one channel, and all of its work but the sum over its taps.
template <std::size_t Taps>
struct FilterChannel {
    // The encoder moves its weights one step late, so it needs one entry more.
    static constexpr std::size_t kept = Taps + 1;

    alignas(64) std::array<std::int16_t, Taps> weights{};
    std::array<std::int16_t, kept + chunkBlocks> history{};
    std::array<std::int16_t, kept + chunkBlocks> adaptation{};
    std::int32_t average = 0;
    std::int16_t sign = 0; // of the encoder's last residual

    /// Takes the sample that comes `at` steps after the start of the call.
    [[gnu::always_inline]] void append(std::int32_t sample, std::size_t at) {
        history[kept + at] = static_cast<std::int16_t>(std::clamp(sample, -32768, 32767));
        adaptation[kept + at] = adaptationOf(sample);
    }

    /// The last eighth of a new adaptation entry: larger for samples that stand out.
    [[gnu::always_inline]] std::int16_t adaptationOf(std::int32_t sample) {
        const std::int64_t size = std::abs(std::int64_t{sample});
        const std::int64_t usual = average;
        const int grade = 1 << ((size > usual + usual / 3 ? 1 : 0) + (size > 3 * usual ? 1 : 0));
        average = static_cast<std::int32_t>(usual + (size - usual) / 16);
        return static_cast<std::int16_t>(grade * signOf(sample));
    }

    /// Makes room for the next call.
    void finish(std::size_t count) {
        const auto from = static_cast<std::ptrdiff_t>(count);
        std::copy_n(history.begin() + from, kept, history.begin());
        std::copy_n(adaptation.begin() + from, kept, adaptation.begin());
    }
};

/// The rounded prediction of a sum; with the rounding in 32 bits it may wrap.
[[gnu::always_inline]] inline std::int32_t scaled(std::int32_t sum, unsigned shift, bool wide) {
    const std::int32_t half = 1 << (shift - 1);
    return wide ? static_cast<std::int32_t>((std::int64_t{sum} + half) >> shift)
                : wrapAdd(sum, half) >> shift;
}

/// Whether all readers round a sum to the same prediction.
[[gnu::always_inline]] inline bool roundsAlike(std::int32_t sum, unsigned shift) {
    return sum <= std::numeric_limits<std::int32_t>::max() - (1 << (shift - 1));
}

/// One channel, or two that take turns sample by sample: while one waits for its sum, the other has
/// work to do.
template <std::size_t Taps, unsigned Channels>
using FilterChannels = std::array<FilterChannel<Taps>, Channels>;

template <unsigned Channels>
using FilterSamples = std::array<std::span<std::int32_t>, Channels>;

/// What the instructions of a machine are used for. `encode` finds the samples appended already.
/// Both are false when readers disagree on the rounding of a sum.
template <std::size_t Taps, unsigned Channels>
struct FilterKernel {
    bool (*encode)(FilterChannels<Taps, Channels>& channels, const FilterSamples<Channels>& samples,
                   unsigned shift);
    bool (*decode)(FilterChannels<Taps, Channels>& channels, const FilterSamples<Channels>& samples,
                   unsigned shift, bool wide);
};

} // namespace quav::ape
