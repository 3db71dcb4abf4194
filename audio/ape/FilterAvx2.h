#pragma once

#include "audio/ape/FilterChannel.h"

#include <immintrin.h>

/// The filters with the instructions of AVX2: sixteen taps at a time.
namespace quav::ape::avx2 {

[[gnu::target("avx2"), gnu::always_inline]] inline __m256i load(const std::int16_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

[[gnu::target("avx2"), gnu::always_inline]] inline void store(std::int16_t* to, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
}

[[gnu::target("avx2"), gnu::always_inline]] inline __m256i spread(std::int32_t value) {
    return _mm256_broadcastw_epi16(_mm_cvtsi32_si128(value));
}

[[gnu::target("avx2"), gnu::always_inline]] inline std::int32_t total(__m256i sums) {
    const __m128i four =
        _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
    const __m128i two = _mm_add_epi32(four, _mm_unpackhi_epi64(four, four));
    return _mm_cvtsi128_si32(_mm_add_epi32(two, _mm_shuffle_epi32(two, 1)));
}

/// Moves the entries one place towards the front and puts a new one behind them.
[[gnu::target("avx2"), gnu::always_inline]] inline __m256i pushed(__m256i entries,
                                                                  std::int32_t value) {
    const __m256i last =
        _mm256_permute2x128_si256(entries, _mm256_castsi128_si256(_mm_cvtsi32_si128(value)), 0x21);
    return _mm256_alignr_epi8(last, entries, 2);
}

template <std::size_t Taps, unsigned Channels>
[[gnu::target("avx2")]] bool encode(FilterChannels<Taps, Channels>& channels,
                                    const FilterSamples<Channels>& samples, unsigned shift) {
    const __m256i young = load(youth.data());
    bool alike = true;
    for (std::size_t at = 0; at < samples[0].size(); ++at) {
        for (unsigned c = 0; c < Channels; ++c) {
            FilterChannel<Taps>& channel = channels[c];
            std::int16_t* const weights = channel.weights.data();
            const std::int16_t* const history = channel.history.data() + at + 1;
            const std::int16_t* const adaptation = channel.adaptation.data() + at;
            const __m256i sign = spread(channel.sign);
            __m256i sums = _mm256_setzero_si256();
            // The weights move for the last residual and are used for this one in one pass.
#pragma GCC unroll 16
            for (std::size_t i = 0; i < Taps; i += 16) {
                __m256i change = load(adaptation + i);
                if (i == Taps - youngCount) {
                    change = _mm256_mullo_epi16(change, young);
                }
                const __m256i moved =
                    _mm256_add_epi16(load(weights + i), _mm256_sign_epi16(change, sign));
                store(weights + i, moved);
                sums = _mm256_add_epi32(sums, _mm256_madd_epi16(moved, load(history + i)));
            }
            const std::int32_t sum = total(sums);
            alike &= roundsAlike(sum, shift);
            const std::int32_t residual = wrapSubtract(samples[c][at], scaled(sum, shift, false));
            samples[c][at] = residual;
            channel.sign = static_cast<std::int16_t>(signOf(residual));
        }
    }
    return alike;
}

/// What the decoder keeps in registers: its newest entries, which memory would be slow to give back
/// so soon after they were written.
struct Newest {
    __m256i weights;
    __m256i history;
    __m256i adaptation;
    std::int32_t sample; // the last one, clamped; not in `history` yet
};

template <std::size_t Taps, unsigned Channels>
[[gnu::target("avx2")]] bool decode(FilterChannels<Taps, Channels>& channels,
                                    const FilterSamples<Channels>& samples, unsigned shift,
                                    bool wide) {
    constexpr std::size_t grown = Taps - youngCount;
    constexpr std::size_t kept = FilterChannel<Taps>::kept;
    const __m256i young = load(youth.data());
    bool alike = true;
    std::array<Newest, Channels> newest{};
    for (unsigned c = 0; c < Channels; ++c) {
        newest[c] = {load(&channels[c].weights[grown]), load(&channels[c].history[grown]),
                     load(&channels[c].adaptation[grown + 1]), channels[c].history[kept - 1]};
    }
    for (std::size_t at = 0; at < samples[0].size(); ++at) {
#pragma GCC unroll 2
        for (unsigned c = 0; c < Channels; ++c) {
            FilterChannel<Taps>& channel = channels[c];
            Newest& last = newest[c];
            std::int16_t* const weights = channel.weights.data();
            const std::int16_t* const history = channel.history.data() + at + 1;
            const std::int16_t* const adaptation = channel.adaptation.data() + at + 1;
            const std::int32_t residual = samples[c][at];
            const __m256i sign = spread(signOf(residual));
            // All but the last sample, whose product goes the shorter way of the plain registers.
            last.history = pushed(last.history, 0);
            __m256i sums = _mm256_madd_epi16(last.weights, last.history);
            const std::int32_t lastProduct =
                static_cast<std::int16_t>(_mm256_extract_epi16(last.weights, 15)) * last.sample;
            last.history = _mm256_insert_epi16(last.history, static_cast<short>(last.sample), 15);
            last.weights = _mm256_add_epi16(
                last.weights, _mm256_sign_epi16(_mm256_mullo_epi16(last.adaptation, young), sign));
#pragma GCC unroll 16
            for (std::size_t i = 0; i < grown; i += 16) {
                const __m256i old = load(weights + i);
                sums = _mm256_add_epi32(sums, _mm256_madd_epi16(old, load(history + i)));
                const __m256i change = _mm256_sign_epi16(load(adaptation + i), sign);
                store(weights + i, _mm256_add_epi16(old, change));
            }
            const std::int32_t sum = wrapAdd(total(sums), lastProduct);
            alike &= roundsAlike(sum, shift);
            const std::int32_t sample = wrapAdd(residual, scaled(sum, shift, wide));
            samples[c][at] = sample;
            channel.append(sample, at);
            last.sample = channel.history[kept + at];
            last.adaptation = pushed(last.adaptation, channel.adaptation[kept + at]);
        }
    }
    for (unsigned c = 0; c < Channels; ++c) {
        store(&channels[c].weights[grown], newest[c].weights);
    }
    return alike;
}

} // namespace quav::ape::avx2
