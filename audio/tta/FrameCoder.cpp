#include "audio/tta/FrameCoder.h"

#include "audio/pcm/Samples.h"
#include "audio/tta/BitStream.h"
#include "audio/tta/Stream.h"

#include <array>

namespace quav::tta {

namespace {

// Whatever a damaged frame holds, arithmetic is that of 32 bits that run over.
constexpr std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t wrapSubtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// What one channel's samples are likely to be.
class Predictor {
public:
    explicit Predictor(unsigned bytesPerSample)
        : leak_(bytesPerSample == 1 ? 4 : 5), shift_(bytesPerSample == 2 ? 9 : 10) {}

    std::int32_t encode(std::int32_t value) {
        const std::int32_t difference = wrapSubtract(value, fromLast());
        last_ = value;
        const std::int32_t residual = wrapSubtract(difference, predict());
        follow(difference, residual);
        return residual;
    }

    std::int32_t decode(std::int32_t residual) {
        const std::int32_t difference = wrapAdd(residual, predict());
        follow(difference, residual);
        last_ = wrapAdd(difference, fromLast());
        return last_;
    }

private:
    static constexpr std::size_t taps = 8;
    using Taps = std::array<std::int32_t, taps>;

    // The sample before, a sixteenth or a thirty-second less.
    std::int32_t fromLast() const {
        const std::int64_t last = last_;
        return static_cast<std::int32_t>(((last << leak_) - last) >> leak_);
    }

    std::int32_t predict() {
        const std::int32_t sign = (error_ > 0) - (error_ < 0);
        auto sum = std::uint32_t{1} << (shift_ - 1);
        for (std::size_t i = 0; i < taps; ++i) {
            weights_[i] = wrapAdd(weights_[i], sign * steps_[i]);
            sum +=
                static_cast<std::uint32_t>(history_[i]) * static_cast<std::uint32_t>(weights_[i]);
        }
        return static_cast<std::int32_t>(sum) >> shift_;
    }

    // The upper half of the history holds the latest value and its differences of first to third
    // order, the lower half the earlier ones of third order; newer ones adapt in larger steps.
    void follow(std::int32_t value, std::int32_t residual) {
        error_ = residual;
        for (std::size_t i = 0; i < 4; ++i) {
            steps_[i] = steps_[i + 1];
            history_[i] = history_[i + 1];
        }
        steps_[4] = signOf(4);
        steps_[5] = 2 * signOf(5);
        steps_[6] = 2 * signOf(6);
        steps_[7] = 4 * signOf(7);
        history_[4] = wrapSubtract(0, history_[5]);
        history_[5] = wrapSubtract(0, history_[6]);
        history_[6] = wrapSubtract(value, history_[7]);
        history_[7] = value;
        history_[5] = wrapAdd(history_[5], history_[6]);
        history_[4] = wrapAdd(history_[4], history_[5]);
    }

    // -1 or 1, which 0 is, too.
    std::int32_t signOf(std::size_t tap) const { return history_[tap] >> 31 | 1; }

    unsigned leak_;
    unsigned shift_;
    std::int32_t last_ = 0;
    std::int32_t error_ = 0;
    Taps weights_{};
    Taps steps_{};
    Taps history_{};
};

/// How many low bits a number is coded with; follows the mean of the numbers.
class Depth {
public:
    unsigned bits() const { return bits_; }
    std::uint32_t range() const { return power(bits_); }

    void follow(std::uint32_t number) {
        sum_ += number - (sum_ >> 4);
        if (bits_ > 0 && sum_ < power(bits_ + 4)) {
            --bits_;
        } else if (bits_ < 31 && sum_ > power(bits_ + 5)) {
            ++bits_;
        }
    }

private:
    static std::uint32_t power(unsigned exponent) {
        return std::uint32_t{1} << (exponent < 31 ? exponent : 31);
    }

    unsigned bits_ = 10;
    std::uint32_t sum_ = 1 << 14;
};

/// One channel's numbers as bits: the small ones with the first depth behind a zero, the others
/// less the first depth's range, with the second one, behind a run of ones.
class RiceCode {
public:
    void encode(std::int32_t value, BitWriter& to) {
        std::uint32_t number = value > 0 ? 2 * static_cast<std::uint32_t>(value) - 1
                                         : 0 - 2 * static_cast<std::uint32_t>(value);
        const std::uint32_t range = low_.range();
        unsigned bits = low_.bits();
        low_.follow(number);
        std::uint32_t ones = 0;
        if (number >= range) {
            number -= range;
            bits = high_.bits();
            high_.follow(number);
            ones = 1 + (number >> bits);
        }
        to.putUnary(ones);
        to.put(number & ((std::uint32_t{1} << bits) - 1), bits);
    }

    /// False when the number is too large for any samples.
    bool decode(BitReader& from, std::int32_t& value) {
        std::uint64_t ones = from.takeUnary();
        std::uint32_t number = 0;
        if (ones == 0) {
            number = from.take(low_.bits());
        } else {
            --ones;
            if (ones > 0xFFFFFFFF >> high_.bits()) {
                return false;
            }
            number = static_cast<std::uint32_t>(ones << high_.bits()) + from.take(high_.bits());
            high_.follow(number);
            number += low_.range();
        }
        low_.follow(number);
        const std::uint32_t half = number / 2;
        value = static_cast<std::int32_t>(number % 2 != 0 ? half + 1 : 0 - half);
        return true;
    }

private:
    Depth low_;
    Depth high_;
};

// Every channel as its difference to the next, the last one less half of the difference before it.
void separate(std::span<std::int32_t> block) {
    const std::size_t last = block.size() - 1;
    for (std::size_t c = 0; c < last; ++c) {
        block[c] = block[c + 1] - block[c];
    }
    block[last] -= block[last - 1] / 2;
}

void join(std::span<std::int32_t> block) {
    const std::size_t last = block.size() - 1;
    block[last] = wrapAdd(block[last], block[last - 1] / 2);
    for (std::size_t c = last; c > 0; --c) {
        block[c - 1] = wrapSubtract(block[c], block[c - 1]);
    }
}

template <typename Change>
void eachBlock(std::span<std::int32_t> numbers, std::size_t channels, Change change) {
    if (channels > 1) {
        for (std::size_t at = 0; at < numbers.size(); at += channels) {
            change(numbers.subspan(at, channels));
        }
    }
}

// Runs through the channels one after the other, so that a channel's state stays in registers.
template <typename Code>
void eachChannel(std::span<std::int32_t> numbers, const pcm::PcmFormat& format, Code code) {
    for (std::size_t c = 0; c < format.channels; ++c) {
        Predictor predictor(format.bytesPerSample);
        for (std::size_t at = c; at < numbers.size(); at += format.channels) {
            numbers[at] = code(predictor, numbers[at]);
        }
    }
}

} // namespace

void FrameCoder::encode(std::span<const std::uint8_t> samples, std::vector<std::uint8_t>& coded) {
    numbers_.resize(samples.size() / format_.bytesPerSample);
    pcm::unpackSamples(format_, samples, numbers_);
    eachBlock(numbers_, format_.channels, separate);
    eachChannel(numbers_, format_,
                [](Predictor& predictor, std::int32_t value) { return predictor.encode(value); });

    BitWriter bits(coded);
    std::vector<RiceCode> codes(format_.channels);
    for (std::size_t at = 0; at < numbers_.size();) {
        for (RiceCode& code : codes) {
            code.encode(numbers_[at++], bits);
        }
    }
    bits.finish();
    coded.resize(coded.size() + checksumSize);
    putChecksum(coded);
}

bool FrameCoder::decode(std::span<const std::uint8_t> coded, std::uint32_t blocks,
                        std::vector<std::uint8_t>& samples) {
    numbers_.resize(std::size_t{blocks} * format_.channels);
    BitReader bits(coded.first(coded.size() - checksumSize));
    std::vector<RiceCode> codes(format_.channels);
    for (std::size_t at = 0; at < numbers_.size();) {
        for (RiceCode& code : codes) {
            if (!code.decode(bits, numbers_[at++]) || bits.overran()) {
                return false;
            }
        }
    }
    eachChannel(numbers_, format_, [](Predictor& predictor, std::int32_t residual) {
        return predictor.decode(residual);
    });
    eachBlock(numbers_, format_.channels, join);
    samples.resize(blocks * format_.blockAlign());
    pcm::packSamples(format_, numbers_, samples);
    return true;
}

} // namespace quav::tta
