#pragma once

#include "audio/ape/Wrapping.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quav::ape {

/// The latest values of a signal, the newest and then the differences between one and the next,
/// each with a weight that moves by one step a sample.
template <std::size_t Count>
class WeightedHistory {
public:
    explicit WeightedHistory(std::array<std::int32_t, Count> weights) : weights_(weights) {}

    void push(std::int32_t value) {
        for (std::size_t i = Count - 1; i > 1; --i) {
            values_[i] = values_[i - 1];
            signs_[i] = signs_[i - 1];
        }
        values_[1] = wrapSubtract(value, values_[0]);
        signs_[1] = signOf(values_[1]);
        values_[0] = value;
        signs_[0] = signOf(value);
    }

    /// The weighted sum, modulo 2^32 or 2^64.
    template <typename Sum>
    Sum sum() const {
        using Modular = std::make_unsigned_t<Sum>;
        Modular all = 0;
        for (std::size_t i = 0; i < Count; ++i) {
            all += static_cast<Modular>(values_[i]) * static_cast<Modular>(weights_[i]);
        }
        return static_cast<Sum>(all);
    }

    /// Moves the weights to where they would have made an error of this sign smaller.
    void adapt(std::int32_t sign) {
        for (std::size_t i = 0; i < Count; ++i) {
            weights_[i] += sign * signs_[i];
        }
    }

private:
    std::array<std::int32_t, Count> values_{};
    std::array<std::int32_t, Count> signs_{};
    std::array<std::int32_t, Count> weights_;
};

/// 31/32 of a value: what the first-order filter in front of the prediction takes away.
inline std::int32_t leaked(std::int32_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) * 31) >> 5;
}

/// The first stage of prediction of one channel: from its own past and, in stereo, from the other
/// channel. For every sample one call of observe(), predicted() and encode() or decode() each.
template <bool Stereo>
class Predictor {
public:
    /// `other` is the latest value of the other channel.
    void observe(std::int32_t other) {
        own_.push(last_);
        if constexpr (Stereo) {
            other_.push(wrapSubtract(other, leaked(lastOther_)));
            lastOther_ = other;
        }
    }

    /// The prediction with sums of 32 or 64 bits. Streams are defined by those of 32, yet some
    /// encoders of stereo streams at level 5000 had more.
    template <typename Sum>
    std::int32_t predicted() const {
        using Modular = std::make_unsigned_t<Sum>;
        auto sum = static_cast<Modular>(own_.template sum<Sum>());
        if constexpr (Stereo) {
            sum += static_cast<Modular>(other_.template sum<Sum>() >> 1);
        }
        return static_cast<std::int32_t>(static_cast<Sum>(sum) >> 10);
    }

    /// The residual of a value.
    std::int32_t encode(std::int32_t value, std::int32_t prediction) {
        last_ = wrapSubtract(value, leaked(lastValue_));
        lastValue_ = value;
        const std::int32_t residual = wrapSubtract(last_, prediction);
        adapt(signOf(residual));
        return residual;
    }

    /// The value of a residual.
    std::int32_t decode(std::int32_t residual, std::int32_t prediction) {
        adapt(signOf(residual));
        last_ = wrapAdd(residual, prediction);
        lastValue_ = wrapAdd(last_, leaked(lastValue_));
        return lastValue_;
    }

private:
    void adapt(std::int32_t sign) {
        own_.adapt(sign);
        if constexpr (Stereo) {
            other_.adapt(sign);
        }
    }

    WeightedHistory<4> own_{{360, 317, -109, 98}};
    WeightedHistory<5> other_{{}};
    std::int32_t last_ = 0;      // after the first-order filter
    std::int32_t lastValue_ = 0; // before it
    std::int32_t lastOther_ = 0;
};

} // namespace quav::ape
