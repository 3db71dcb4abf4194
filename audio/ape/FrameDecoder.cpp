#include "audio/ape/FrameDecoder.h"

#include "audio/ape/FilterChain.h"
#include "audio/ape/Predictor.h"
#include "audio/ape/RangeDecoder.h"
#include "audio/ape/Residuals.h"
#include "audio/ape/Wrapping.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/Samples.h"

#include <algorithm>
#include <array>
#include <zlib.h>

namespace quav::ape {

namespace {

using Span = std::span<std::int32_t>;

static_assert(FrameDecoder::padding >= RangeDecoder::padding);

// Checksums are stored without their last bit, to have one for other purposes.
constexpr std::uint32_t flagBit = 1U << 31;

std::uint32_t storedChecksum(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint32_t>(::crc32_z(0, bytes.data(), bytes.size())) >> 1;
}

// The same for a run of equal bytes, without going through it: a run is as many runs of powers of
// two as its length has bits.
std::uint32_t storedChecksumOfRun(std::uint8_t byte, std::size_t count) {
    uLong all = 0;
    uLong power = ::crc32_z(0, &byte, 1);
    for (std::size_t length = 1; count > 0; length *= 2, count /= 2) {
        if (count % 2 != 0) {
            all = ::crc32_combine(all, power, static_cast<z_off_t>(length));
        }
        power = ::crc32_combine(power, power, static_cast<z_off_t>(length));
    }
    return static_cast<std::uint32_t>(all) >> 1;
}

// What comes after the filters, for one channel or for two that are the same.
class MonoStage {
public:
    static constexpr unsigned channels = 1;

    bool decode(Span first, Span) {
        for (std::int32_t& value : first) {
            predictor_.observe(0);
            value = predictor_.decode(value, predictor_.predicted<std::int32_t>());
        }
        return true;
    }

    static void join(Span first, Span, Span interleaved) {
        const std::size_t copies = interleaved.size() / first.size();
        for (std::size_t i = 0; i < interleaved.size(); ++i) {
            interleaved[i] = first[i / copies];
        }
    }

private:
    Predictor<false> predictor_;
};

// The same for stereo. `Checked` looks for sums that are different with 64 bits.
template <typename Sum, bool Checked>
class StereoStage {
public:
    static constexpr unsigned channels = 2;

    bool decode(Span first, Span second) {
        bool alike = true;
        Predictor<true> difference = difference_;
        Predictor<true> middle = middle_;
        std::int32_t lastMiddle = lastMiddle_;
        for (std::size_t i = 0; i < first.size(); ++i) {
            first[i] = step(difference, first[i], lastMiddle, alike);
            lastMiddle = second[i] = step(middle, second[i], first[i], alike);
        }
        difference_ = difference;
        middle_ = middle;
        lastMiddle_ = lastMiddle;
        return alike;
    }

    static void join(Span difference, Span middle, Span interleaved) {
        for (std::size_t i = 0; i < middle.size(); ++i) {
            const std::int32_t left = wrapSubtract(middle[i], difference[i] / 2);
            interleaved[2 * i] = left;
            interleaved[2 * i + 1] = wrapAdd(left, difference[i]);
        }
    }

private:
    static std::int32_t step(Predictor<true>& predictor, std::int32_t residual, std::int32_t other,
                             bool& alike) {
        predictor.observe(other);
        const std::int32_t prediction = predictor.predicted<Sum>();
        if constexpr (Checked) {
            alike &= prediction == predictor.predicted<std::int64_t>();
        }
        return predictor.decode(residual, prediction);
    }

    Predictor<true> difference_;
    Predictor<true> middle_;
    std::int32_t lastMiddle_ = 0;
};

} // namespace

bool FrameDecoder::decode(std::span<const std::uint8_t> frame, std::uint32_t blocks,
                          DecodedFrame& to) const {
    if (frame.size() < 8) {
        return false;
    }
    const bool stereo = format_.pcm.channels == 2;
    const auto checksum = static_cast<std::uint32_t>(pcm::bigEndian(frame.first(4)));
    frame = frame.subspan(4);
    std::uint32_t specials = 0;
    if ((checksum & flagBit) != 0) {
        specials = static_cast<std::uint32_t>(pcm::bigEndian(frame.first(4)));
        frame = frame.subspan(4);
    }
    to.size = blocks * format_.pcm.blockAlign();
    to.silent = stereo ? (specials & special::silent) == special::silent
                       : (specials & special::silent) != 0;
    if (to.silent) {
        return storedChecksumOfRun(silentByte(format_.pcm), to.size) == (checksum & ~flagBit);
    }
    // A value takes more than one bit, so this bounds what a lie about the length can cost.
    if (blocks > frame.size() * 8) {
        return false;
    }
    if (to.bytes.size() < to.size) {
        to.bytes.resize(to.size);
    }
    const std::span<std::uint8_t> bytes = std::span(to.bytes).first(to.size);
    const auto isRight = [&] { return storedChecksum(bytes) == (checksum & ~flagBit); };
    const bool mono = !stereo || (specials & special::sameChannels) != 0;
    const bool hasWideReaders = format_.level->hasWideReaders;
    const Outcome outcome =
        mono             ? decodeSamples<MonoStage>(frame, false, bytes)
        : hasWideReaders ? decodeSamples<StereoStage<std::int32_t, true>>(frame, false, bytes)
                         : decodeSamples<StereoStage<std::int32_t, false>>(frame, false, bytes);
    if (outcome.complete && isRight()) {
        return true;
    }
    if (outcome.alike) {
        return false;
    }
    // The encoder may have been one of those with more bits.
    const Outcome other = mono ? decodeSamples<MonoStage>(frame, true, bytes)
                          : hasWideReaders
                              ? decodeSamples<StereoStage<std::int64_t, false>>(frame, true, bytes)
                              : decodeSamples<StereoStage<std::int32_t, false>>(frame, true, bytes);
    return other.complete && isRight();
}

template <typename Stage>
FrameDecoder::Outcome FrameDecoder::decodeSamples(std::span<const std::uint8_t> coded, bool wide,
                                                  std::span<std::uint8_t> to) const {
    Stage stage;
    RangeDecoder coder(coded);
    FilterChain filters(*format_.level, Stage::channels);
    std::array<Residuals, 2> residuals;
    std::array<std::int32_t, 2 * chunkBlocks> interleaved{};
    std::array<std::array<std::int32_t, chunkBlocks>, 2> chunk{};
    const std::size_t align = format_.pcm.blockAlign();
    bool alike = true;
    while (!to.empty() && !coder.overran()) {
        const std::size_t count = std::min(chunkBlocks, to.size() / align);
        const Span first = Span(chunk[0]).first(count);
        const Span second = Span(chunk[1]).first(count);
        for (std::size_t i = 0; i < count; ++i) {
            first[i] = residuals[0].decode(coder);
            if constexpr (Stage::channels == 2) {
                second[i] = residuals[1].decode(coder);
            }
        }
        alike = filters.decode(first, second, wide) && alike;
        alike = stage.decode(first, second) && alike;
        const Span samples = Span(interleaved).first(count * format_.pcm.channels);
        Stage::join(first, second, samples);
        pcm::packSamples(format_.pcm, samples, to.first(count * align));
        to = to.subspan(count * align);
        if (advance_) {
            advance_(count);
        }
    }
    return {.complete = !coder.overran(), .alike = alike};
}

} // namespace quav::ape
