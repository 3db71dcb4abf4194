#include "audio/shorten/ChannelEncoder.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace quav::shorten {

namespace {

constexpr unsigned largestK = 20;

/// What is left of a block's samples, folded; zeros after the end of a short block. All loops run
/// over the whole array, so that they become vector code.
using Residuals = std::array<std::uint32_t, ChannelEncoder::blockSize>;

/// `sample` shows the block's first sample, after the ones before it.
template <unsigned Order>
void difference(const std::int32_t* sample, std::int32_t offset, Residuals& to) {
    for (std::size_t i = 0; i < to.size(); ++i, ++sample) {
        std::int32_t rest = sample[0];
        if constexpr (Order == 0) {
            rest -= offset;
        } else if constexpr (Order == 1) {
            rest -= sample[-1];
        } else if constexpr (Order == 2) {
            rest -= 2 * sample[-1] - sample[-2];
        } else {
            rest -= 3 * (sample[-1] - sample[-2]) + sample[-3];
        }
        to[i] = static_cast<std::uint32_t>(rest) << 1 ^ static_cast<std::uint32_t>(rest >> 31);
    }
}

std::uint32_t sumOfShifted(const Residuals& residuals, unsigned shift) {
    std::uint32_t sum = 0;
    for (const std::uint32_t residual : residuals) {
        sum += residual >> shift;
    }
    return sum;
}

struct Choice {
    std::uint32_t bits = 0; // for the samples alone
    unsigned k = 0;
    Residuals residuals{};
};

/// Finds the smallest k of those that take the fewest bits. As k grows, the growth of the bits
/// never shrinks: the next k takes `size` bits more and saves (r >> (k + 1)) - (r >> (k + 2)) for
/// every residual r, which is half of r >> (k + 1), rounded up, and never grows. So there is one
/// valley, and the way down from anywhere leads to its floor.
void chooseK(Choice& choice, std::size_t size) {
    const auto count = static_cast<std::uint32_t>(size);
    const auto bits = [&](unsigned k) {
        return sumOfShifted(choice.residuals, k + 1) + count * (k + 2);
    };
    const std::uint32_t mean = sumOfShifted(choice.residuals, 0) / count;
    choice.k = std::min(std::max(static_cast<unsigned>(std::bit_width(mean)), 2U) - 2, largestK);
    choice.bits = bits(choice.k);
    while (choice.k > 0) {
        const std::uint32_t lower = bits(choice.k - 1);
        if (lower > choice.bits) {
            break;
        }
        choice.bits = lower;
        --choice.k;
    }
    while (choice.k < largestK) {
        const std::uint32_t higher = bits(choice.k + 1);
        if (higher >= choice.bits) {
            break;
        }
        choice.bits = higher;
        ++choice.k;
    }
}

} // namespace

void ChannelEncoder::encode(std::size_t size, BitWriter& to) {
    const std::span<const std::int32_t> samples = block().first(size);
    if (std::all_of(samples.begin(), samples.end(), [](std::int32_t x) { return x == 0; })) {
        to.putCode(static_cast<std::uint32_t>(Function::Zero), bits::function);
    } else {
        constexpr std::array differences{difference<0>, difference<1>, difference<2>,
                                         difference<3>};
        std::array<Choice, differences.size()> choices;
        for (std::size_t order = 0; order < choices.size(); ++order) {
            Choice& choice = choices[order];
            differences[order](samples.data(), mean_.offset(0), choice.residuals);
            std::fill(choice.residuals.begin() + static_cast<std::ptrdiff_t>(size),
                      choice.residuals.end(), 0);
            chooseK(choice, size);
        }
        const auto* const best =
            std::min_element(choices.begin(), choices.end(),
                             [](const Choice& a, const Choice& b) { return a.bits < b.bits; });
        to.putCode(static_cast<std::uint32_t>(best - choices.begin()), bits::function);
        to.putCode(best->k, bits::rice);
        for (const std::uint32_t residual : std::span(best->residuals).first(size)) {
            to.putCode(residual, best->k + 1);
        }
    }
    mean_.add(std::accumulate(samples.begin(), samples.end(), std::int64_t{0}), size, 0);
    std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(size), differenceHistory,
                samples_.begin());
}

} // namespace quav::shorten
