#include "audio/ape/FrameEncoder.h"

#include "audio/ape/FilterChain.h"
#include "audio/ape/Predictor.h"
#include "audio/ape/Residuals.h"
#include "audio/pcm/Samples.h"

#include <algorithm>
#include <array>
#include <zlib.h>

namespace quav::ape {

namespace {

using Span = std::span<std::int32_t>;

void appendBigEndian(std::vector<std::uint8_t>& to, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        to.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

// What comes before the filters, for one channel or for the first of two that are the same.
class MonoStage {
public:
    static constexpr unsigned channels = 1;

    static void separate(std::span<const std::int32_t> interleaved, Span first, Span) {
        const std::size_t step = interleaved.size() / first.size();
        for (std::size_t i = 0; i < first.size(); ++i) {
            first[i] = interleaved[step * i];
        }
    }

    bool encode(Span first, Span) {
        for (std::int32_t& value : first) {
            predictor_.observe(0);
            value = predictor_.encode(value, predictor_.predicted<std::int32_t>());
        }
        return true;
    }

private:
    Predictor<false> predictor_;
};

// The same for stereo; `Checked` looks for sums that are different with 64 bits.
template <bool Checked>
class StereoStage {
public:
    static constexpr unsigned channels = 2;

    // What is coded is not left and right, but their difference and their middle.
    static void separate(std::span<const std::int32_t> interleaved, Span difference, Span middle) {
        for (std::size_t i = 0; i < middle.size(); ++i) {
            const std::int32_t left = interleaved[2 * i];
            difference[i] = interleaved[2 * i + 1] - left;
            middle[i] = left + difference[i] / 2;
        }
    }

    bool encode(Span first, Span second) {
        bool fits = true;
        Predictor<true> difference = difference_;
        Predictor<true> middle = middle_;
        std::int32_t lastMiddle = lastMiddle_;
        for (std::size_t i = 0; i < first.size(); ++i) {
            const std::int32_t value = first[i];
            first[i] = step(difference, value, lastMiddle, fits);
            lastMiddle = second[i];
            second[i] = step(middle, lastMiddle, value, fits);
        }
        difference_ = difference;
        middle_ = middle;
        lastMiddle_ = lastMiddle;
        return fits;
    }

private:
    static std::int32_t step(Predictor<true>& predictor, std::int32_t value, std::int32_t other,
                             bool& fits) {
        predictor.observe(other);
        const auto prediction = predictor.predicted<std::int32_t>();
        if constexpr (Checked) {
            fits &= prediction == predictor.predicted<std::int64_t>();
        }
        return predictor.encode(value, prediction);
    }

    Predictor<true> difference_;
    Predictor<true> middle_;
    std::int32_t lastMiddle_ = 0;
};

} // namespace

std::uint32_t FrameEncoder::findSpecials(std::span<const std::uint8_t> pcm) const {
    const bool stereo = format_.pcm.channels == 2;
    const std::uint8_t quiet = silentByte(format_.pcm);
    if (std::all_of(pcm.begin(), pcm.end(), [&](std::uint8_t byte) { return byte == quiet; })) {
        return stereo ? special::silent | special::sameChannels : 1;
    }
    if (!stereo) {
        return 0;
    }
    const std::size_t width = format_.pcm.bytesPerSample;
    for (; !pcm.empty(); pcm = pcm.subspan(2 * width)) {
        if (!std::equal(pcm.begin(), pcm.begin() + static_cast<std::ptrdiff_t>(width),
                        pcm.begin() + static_cast<std::ptrdiff_t>(width))) {
            return 0;
        }
    }
    return special::sameChannels;
}

bool FrameEncoder::encode(std::span<const std::uint8_t> pcm,
                          std::vector<std::uint8_t>& frame) const {
    const std::uint32_t specials = findSpecials(pcm);
    const auto crc = static_cast<std::uint32_t>(::crc32_z(0, pcm.data(), pcm.size()));
    frame.clear();
    appendBigEndian(frame, crc >> 1 | (specials != 0 ? 1U << 31 : 0));
    if (specials != 0) {
        appendBigEndian(frame, specials);
    }
    RangeEncoder coder(frame, frame.size());
    bool fits = true;
    if (specials == special::sameChannels || (specials == 0 && format_.pcm.channels == 1)) {
        fits = encodeSamples<MonoStage>(pcm, coder);
    } else if (specials == 0 && format_.level->hasWideReaders) {
        fits = encodeSamples<StereoStage<true>>(pcm, coder);
    } else if (specials == 0) {
        fits = encodeSamples<StereoStage<false>>(pcm, coder);
    }
    frame.resize(coder.finish());
    return fits;
}

template <typename Stage>
bool FrameEncoder::encodeSamples(std::span<const std::uint8_t> pcm, RangeEncoder& coder) const {
    Stage stage;
    FilterChain filters(*format_.level, Stage::channels);
    std::array<Residuals, 2> residuals;
    std::array<std::int32_t, 2 * chunkBlocks> interleaved{};
    std::array<std::array<std::int32_t, chunkBlocks>, 2> chunk{};
    const std::size_t align = format_.pcm.blockAlign();
    bool fits = true;
    while (!pcm.empty() && fits) {
        const std::size_t blocks = std::min(chunkBlocks, pcm.size() / align);
        const Span samples = Span(interleaved).first(blocks * format_.pcm.channels);
        pcm::unpackSamples(format_.pcm, pcm.first(blocks * align), samples);
        pcm = pcm.subspan(blocks * align);
        const Span first = Span(chunk[0]).first(blocks);
        const Span second = Span(chunk[1]).first(blocks);
        Stage::separate(samples, first, second);
        fits = stage.encode(first, second) && filters.encode(first, second);
        coder.reserve(Stage::channels * blocks * Residuals::valueBytes);
        for (std::size_t i = 0; i < blocks; ++i) {
            residuals[0].encode(first[i], coder);
            if constexpr (Stage::channels == 2) {
                residuals[1].encode(second[i], coder);
            }
        }
        if (advance_) {
            advance_(blocks);
        }
    }
    return fits;
}

} // namespace quav::ape
