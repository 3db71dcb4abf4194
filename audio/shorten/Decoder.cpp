#include "audio/shorten/Decoder.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>

namespace quav::shorten {

namespace {

constexpr std::size_t maximalVerbatim = std::size_t{16} << 20;
constexpr std::uint32_t maximalBlockSize = 65535;
constexpr std::uint32_t maximalOrder = 1024;
constexpr std::uint32_t maximalMeanBlocks = 32768;
constexpr unsigned maximalShift = 31;
constexpr std::uint32_t maximalK = 30;
constexpr unsigned coefficientFraction = 5;

unsigned readVersion(pcm::InputFile& input) {
    while (const std::uint64_t tag = pcm::id3v2Length(input.peek(pcm::id3v2Header))) {
        input.skip(tag);
    }
    const std::span<const std::uint8_t> start = input.peek(5);
    if (start.size() < 5 || !pcm::startsWith(start, "ajkg")) {
        throw pcm::Failure(pcm::Failure::Kind::Input, input.name() + ": is no Shorten file");
    }
    const unsigned version = start[4];
    if (version < 1 || version > 3) {
        throw pcm::Failure(pcm::Failure::Kind::Unsupported,
                           input.name() + ": is of Shorten's stream version " +
                               std::to_string(version) + "; only 1 to 3 can be read");
    }
    input.skip(5);
    return version;
}

/// Lays the samples of a channel into the blocks of all, those that are too large as the largest.
template <unsigned Width, bool BigEndian>
void pack(std::span<const std::int32_t> samples, std::int32_t smallest, std::size_t stride,
          std::uint8_t* to) {
    constexpr std::int32_t range = (1 << 8 * Width) - 1;
    for (const std::int32_t sample : samples) {
        const std::int32_t value = std::clamp(sample, smallest, smallest + range);
        if constexpr (Width == 1) {
            to[0] = static_cast<std::uint8_t>(value);
        } else {
            to[BigEndian ? 1 : 0] = static_cast<std::uint8_t>(value);
            to[BigEndian ? 0 : 1] = static_cast<std::uint8_t>(value >> 8);
        }
        to += stride;
    }
}

} // namespace

Decoder::Decoder(pcm::InputFile& input)
    : input_(input), version_(readVersion(input)), bits_(input) {
    readSettings();
    while ((next_ = readFunction()) == Function::Verbatim) {
        readVerbatim(header_);
    }
}

void Decoder::damaged(const std::string& what) const {
    throw pcm::Failure(pcm::Failure::Kind::Input, input_.name() + ": is damaged: " + what);
}

std::uint32_t Decoder::longNumber() {
    const std::uint32_t size = bits_.code(bits::longSize);
    if (size > 31) {
        damaged("a number is too large");
    }
    return bits_.code(size);
}

void Decoder::readSettings() {
    const std::uint32_t number = longNumber();
    const std::optional<SampleType> type = sampleTypeOf(number);
    if (!type) {
        throw pcm::Failure(pcm::Failure::Kind::Unsupported,
                           input_.name() + ": holds samples of type " + std::to_string(number) +
                               " (μ-law, A-law or unknown); only linear ones can be read");
    }
    type_ = *type;
    const std::uint32_t channels = longNumber();
    if (channels < 1 || channels > maximalChannels) {
        damaged("it has " + std::to_string(channels) + " channels");
    }
    blockSize_ = longNumber();
    if (blockSize_ < 1 || blockSize_ > maximalBlockSize) {
        damaged("its block size is " + std::to_string(blockSize_));
    }
    const std::uint32_t order = longNumber();
    const std::uint32_t meanBlocks = longNumber();
    if (order > maximalOrder || meanBlocks > maximalMeanBlocks) {
        damaged("its settings make no sense");
    }
    for (std::uint32_t left = longNumber(); left > 0; --left) {
        bits_.code(bits::skipped);
    }
    history_ = std::max<std::size_t>(order, differenceHistory);
    coefficients_.reserve(history_);
    channels_.assign(channels, {std::vector<std::int32_t>(history_ + blockSize_),
                                Mean(version_, meanBlocks, type_.middle())});
    packed_.resize(blockSize_ * channels * type_.bytesPerSample);
}

Function Decoder::readFunction() {
    const std::uint32_t number = bits_.code(bits::function);
    if (number > static_cast<std::uint32_t>(Function::Verbatim)) {
        damaged("there is no function " + std::to_string(number));
    }
    return static_cast<Function>(number);
}

void Decoder::readVerbatim(std::vector<std::uint8_t>& to) {
    const std::uint32_t count = bits_.code(bits::verbatimSize);
    if (count > maximalVerbatim - to.size()) {
        damaged("there are more than 16 MiB before or after its samples");
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        to.push_back(static_cast<std::uint8_t>(bits_.code(bits::verbatimByte)));
    }
}

void Decoder::changeBlockSize() {
    const std::uint32_t size = longNumber();
    if (turn_ != 0 || size < 1 || size > blockSize_) {
        damaged("its block size changes where it cannot");
    }
    blockSize_ = size;
}

void Decoder::changeShift() {
    shift_ = bits_.code(bits::shift);
    if (shift_ > maximalShift) {
        damaged("its samples are shifted too far");
    }
}

void Decoder::decode(pcm::ByteSink& output) {
    for (Function function = next_; function != Function::Quit; function = readFunction()) {
        switch (function) {
        case Function::BlockSize:
            changeBlockSize();
            break;
        case Function::BitShift:
            changeShift();
            break;
        case Function::Verbatim: {
            std::vector<std::uint8_t> bytes;
            readVerbatim(bytes);
            output.write(bytes);
            break;
        }
        default:
            decodeBlock(function);
            if (++turn_ == channels_.size()) {
                writeBlocks(output);
                turn_ = 0;
            }
        }
    }
    if (turn_ != 0) {
        damaged("it ends between the channels");
    }
}

void Decoder::decodeBlock(Function function) {
    Channel& channel = channels_[turn_];
    const auto block = std::span(channel.samples).subspan(history_, blockSize_);
    const std::int32_t offset = channel.mean.offset(shift_);
    switch (function) {
    case Function::Difference0:
        decodeDifferences<0>(block, offset);
        break;
    case Function::Difference1:
        decodeDifferences<1>(block, offset);
        break;
    case Function::Difference2:
        decodeDifferences<2>(block, offset);
        break;
    case Function::Difference3:
        decodeDifferences<3>(block, offset);
        break;
    case Function::Predictor:
        decodePredicted(block, offset);
        break;
    default:
        std::fill(block.begin(), block.end(), 0);
    }
    channel.mean.add(std::accumulate(block.begin(), block.end(), std::int64_t{0}), blockSize_,
                     shift_);
    std::copy_n(channel.samples.begin() + static_cast<std::ptrdiff_t>(blockSize_), history_,
                channel.samples.begin());
    if (shift_ > 0) {
        for (std::int32_t& sample : block) {
            sample = static_cast<std::int32_t>(static_cast<std::uint32_t>(sample) << shift_);
        }
    }
}

unsigned Decoder::readK() {
    const std::uint32_t k = bits_.code(bits::rice);
    if (k > maximalK) {
        damaged("its numbers are too large");
    }
    return k;
}

// In numbers without a sign, which may run over.
template <unsigned Order>
void Decoder::decodeDifferences(std::span<std::int32_t> block, std::int32_t offset) {
    const unsigned lowBits = readK() + 1;
    auto one = static_cast<std::uint32_t>(block.data()[-1]);
    auto two = static_cast<std::uint32_t>(block.data()[-2]);
    auto three = static_cast<std::uint32_t>(block.data()[-3]);
    for (std::int32_t& sample : block) {
        std::uint32_t value = bits_.signedCode(lowBits);
        if constexpr (Order == 0) {
            value += static_cast<std::uint32_t>(offset);
        } else if constexpr (Order == 1) {
            value += one;
        } else if constexpr (Order == 2) {
            value += 2 * one - two;
        } else {
            value += 3 * (one - two) + three;
        }
        sample = static_cast<std::int32_t>(value);
        three = two;
        two = one;
        one = value;
    }
}

void Decoder::decodePredicted(std::span<std::int32_t> block, std::int32_t offset) {
    const unsigned lowBits = readK() + 1;
    const std::size_t order = bits_.code(bits::order);
    if (order > history_) {
        damaged("its predictor looks back too far");
    }
    coefficients_.resize(order);
    for (std::uint32_t& coefficient : coefficients_) {
        coefficient = bits_.signedCode(bits::coefficient);
    }
    const auto unsignedOffset = static_cast<std::uint32_t>(offset);
    std::int32_t* const samples = block.data();
    // No encoder is known to write what follows, so FFmpeg decides: an order of 0 begins with the
    // offset, and a block shorter than the order leaves samples before it without theirs for good.
    const std::uint32_t rounding = version_ >= 2 ? 1U << coefficientFraction : 0;
    const std::uint32_t start = order == 0 ? unsignedOffset : rounding;
    for (std::int32_t& sample : std::span(samples - order, order)) {
        sample = static_cast<std::int32_t>(static_cast<std::uint32_t>(sample) - unsignedOffset);
    }
    for (std::size_t i = 0; i < block.size(); ++i) {
        std::uint32_t sum = start;
        const std::int32_t* past = samples + i;
        for (const std::uint32_t coefficient : coefficients_) {
            sum += coefficient * static_cast<std::uint32_t>(*--past);
        }
        const auto predicted = static_cast<std::int32_t>(sum) >> coefficientFraction;
        block[i] = static_cast<std::int32_t>(bits_.signedCode(lowBits) +
                                             static_cast<std::uint32_t>(predicted));
    }
    for (std::int32_t& sample : block) {
        sample = static_cast<std::int32_t>(static_cast<std::uint32_t>(sample) + unsignedOffset);
    }
}

void Decoder::writeBlocks(pcm::ByteSink& output) {
    const unsigned width = type_.bytesPerSample;
    const std::size_t stride = channels_.size() * width;
    const std::int32_t smallest = type_.isUnsigned ? 0 : -(1 << (8 * width - 1));
    const auto packing = width == 1        ? pack<1, false>
                         : type_.bigEndian ? pack<2, true>
                                           : pack<2, false>;
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        packing(std::span(channels_[c].samples).subspan(history_, blockSize_), smallest, stride,
                &packed_[c * width]);
    }
    output.write(std::span(packed_).first(blockSize_ * stride));
}

} // namespace quav::shorten
