#include "audio/ape/AdaptiveFilter.h"

#include "audio/ape/FilterChannel.h"
#if defined(__x86_64__)
#include "audio/ape/FilterAvx2.h"
#endif

#include <stdexcept>

namespace quav::ape {

namespace {

namespace portable {

// Sums up the samples by their weights, and moves the weights along `adaptation` in the direction
// of `sign`: before when `Early`, else after. A function of its own with arguments that do not
// overlap, so that the compiler makes its loops into vectors.
template <std::size_t Taps, bool Early>
[[gnu::noinline]] std::int32_t
sumAndAdapt(std::int16_t* __restrict weights, const std::int16_t* __restrict samples,
            const std::int16_t* __restrict adaptation, std::int16_t sign) {
    std::uint32_t sum = 0;
    const auto step = [&](std::size_t i, int change) {
        const std::int16_t old = weights[i];
        const auto moved = static_cast<std::int16_t>(old + change);
        weights[i] = moved;
        sum += static_cast<std::uint32_t>((Early ? moved : old) * samples[i]);
    };
    constexpr std::size_t grown = Taps - youngCount;
    for (std::size_t i = 0; i < grown; ++i) {
        step(i, static_cast<std::int16_t>(sign * adaptation[i]));
    }
    for (std::size_t i = 0; i < youngCount; ++i) {
        const auto entry = static_cast<std::int16_t>(adaptation[grown + i] * youth[i]);
        step(grown + i, static_cast<std::int16_t>(sign * entry));
    }
    return static_cast<std::int32_t>(sum);
}

template <std::size_t Taps, unsigned Channels>
bool encode(FilterChannels<Taps, Channels>& channels, const FilterSamples<Channels>& samples,
            unsigned shift) {
    bool alike = true;
    for (std::size_t at = 0; at < samples[0].size(); ++at) {
        for (unsigned c = 0; c < Channels; ++c) {
            FilterChannel<Taps>& channel = channels[c];
            const std::int32_t sum =
                sumAndAdapt<Taps, true>(channel.weights.data(), &channel.history[at + 1],
                                        &channel.adaptation[at], channel.sign);
            alike &= roundsAlike(sum, shift);
            const std::int32_t residual = wrapSubtract(samples[c][at], scaled(sum, shift, false));
            samples[c][at] = residual;
            channel.sign = static_cast<std::int16_t>(signOf(residual));
        }
    }
    return alike;
}

template <std::size_t Taps, unsigned Channels>
bool decode(FilterChannels<Taps, Channels>& channels, const FilterSamples<Channels>& samples,
            unsigned shift, bool wide) {
    bool alike = true;
    for (std::size_t at = 0; at < samples[0].size(); ++at) {
        for (unsigned c = 0; c < Channels; ++c) {
            FilterChannel<Taps>& channel = channels[c];
            const std::int32_t residual = samples[c][at];
            const std::int32_t sum = sumAndAdapt<Taps, false>(
                channel.weights.data(), &channel.history[at + 1], &channel.adaptation[at + 1],
                static_cast<std::int16_t>(signOf(residual)));
            alike &= roundsAlike(sum, shift);
            samples[c][at] = wrapAdd(residual, scaled(sum, shift, wide));
            channel.append(samples[c][at], at);
        }
    }
    return alike;
}

} // namespace portable

template <std::size_t Taps, unsigned Channels>
FilterKernel<Taps, Channels> kernelFor(Instructions instructions) {
#if defined(__x86_64__)
    if (instructions == Instructions::Avx2) {
        return {avx2::encode<Taps, Channels>, avx2::decode<Taps, Channels>};
    }
#endif
    static_cast<void>(instructions);
    return {portable::encode<Taps, Channels>, portable::decode<Taps, Channels>};
}

template <std::size_t Taps, unsigned Channels>
class Filter final : public AdaptiveFilter {
public:
    Filter(unsigned shift, Instructions instructions)
        : shift_(shift), kernel_(kernelFor<Taps, Channels>(instructions)) {}

    bool encode(std::span<std::int32_t> first, std::span<std::int32_t> second) override {
        const FilterSamples<Channels> samples = group(first, second);
        for (unsigned c = 0; c < Channels; ++c) {
            for (std::size_t at = 0; at < samples[c].size(); ++at) {
                channels_[c].append(samples[c][at], at);
            }
        }
        const bool alike = kernel_.encode(channels_, samples, shift_);
        finish(first.size());
        return alike;
    }

    bool decode(std::span<std::int32_t> first, std::span<std::int32_t> second, bool wide) override {
        const bool alike = kernel_.decode(channels_, group(first, second), shift_, wide);
        finish(first.size());
        return alike;
    }

private:
    static FilterSamples<Channels> group(std::span<std::int32_t> first,
                                         std::span<std::int32_t> second) {
        FilterSamples<Channels> samples{first};
        if constexpr (Channels == 2) {
            samples[1] = second;
        }
        return samples;
    }

    void finish(std::size_t count) {
        for (FilterChannel<Taps>& channel : channels_) {
            channel.finish(count);
        }
    }

    FilterChannels<Taps, Channels> channels_;
    unsigned shift_;
    FilterKernel<Taps, Channels> kernel_;
};

template <unsigned Channels>
std::unique_ptr<AdaptiveFilter> make(FilterShape shape, Instructions instructions) {
    switch (shape.taps) {
    case 16:
        return std::make_unique<Filter<16, Channels>>(shape.shift, instructions);
    case 32:
        return std::make_unique<Filter<32, Channels>>(shape.shift, instructions);
    case 64:
        return std::make_unique<Filter<64, Channels>>(shape.shift, instructions);
    case 256:
        return std::make_unique<Filter<256, Channels>>(shape.shift, instructions);
    case 1280:
        return std::make_unique<Filter<1280, Channels>>(shape.shift, instructions);
    default:
        throw std::invalid_argument("no filter has so many taps");
    }
}

} // namespace

Instructions bestInstructions() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) {
        return Instructions::Avx2;
    }
#endif
    return Instructions::Portable;
}

std::unique_ptr<AdaptiveFilter> makeFilter(FilterShape shape, unsigned channels,
                                           Instructions instructions) {
    return channels == 1 ? make<1>(shape, instructions) : make<2>(shape, instructions);
}

} // namespace quav::ape
