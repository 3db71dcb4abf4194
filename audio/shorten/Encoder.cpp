#include "audio/shorten/Encoder.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Samples.h"
#include "audio/shorten/ChannelEncoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <vector>

namespace quav::shorten {

namespace {

// Players find their way into longer pieces no more.
constexpr std::size_t verbatimPiece = 4096;

SampleType typeFor(const pcm::PcmFormat& format, const std::string& name) {
    const std::optional<SampleType> type = sampleTypeOf(format);
    if (!type) {
        throw pcm::Failure(pcm::Failure::Kind::Unsupported,
                           name + ": has samples of " + std::to_string(format.containerBits()) +
                               " bits, and Shorten holds only 8 and 16: convert them first, or "
                               "choose another format");
    }
    if (format.channels > maximalChannels) {
        throw pcm::Failure(pcm::Failure::Kind::Unsupported,
                           name + ": has " + std::to_string(format.channels) +
                               " channels, and Shorten holds at most 8: choose another format");
    }
    return *type;
}

void putFunction(BitWriter& to, Function function) {
    to.putCode(static_cast<std::uint32_t>(function), bits::function);
}

void putLong(BitWriter& to, std::size_t number) {
    const auto value = static_cast<std::uint32_t>(number);
    const auto size = static_cast<unsigned>(std::bit_width(value));
    to.putCode(size, bits::longSize);
    to.putCode(value, size);
}

void putVerbatim(BitWriter& to, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), verbatimPiece));
        putFunction(to, Function::Verbatim);
        to.putCode(static_cast<std::uint32_t>(piece.size()), bits::verbatimSize);
        for (const std::uint8_t byte : piece) {
            to.putCode(byte, bits::verbatimByte);
        }
        bytes = bytes.subspan(piece.size());
    }
}

void putSamples(BitWriter& to, pcm::PcmReader& reader, const SampleType& type) {
    constexpr std::size_t blocksAtOnce = 32;
    const pcm::PcmFormat& format = reader.format();
    std::vector<ChannelEncoder> channels(format.channels, ChannelEncoder(type.middle()));
    std::vector<std::uint8_t> bytes(blocksAtOnce * ChannelEncoder::blockSize * format.blockAlign());
    std::vector<std::int32_t> samples(bytes.size() / format.bytesPerSample);
    while (const std::size_t count = reader.readSamples(bytes)) {
        pcm::unpackSamples(format, std::span(bytes).first(count), samples);
        const std::int32_t* sample = samples.data();
        for (std::size_t left = count / format.blockAlign(); left > 0;) {
            const std::size_t size = std::min(left, ChannelEncoder::blockSize);
            if (size < ChannelEncoder::blockSize) {
                putFunction(to, Function::BlockSize);
                putLong(to, size);
            }
            for (std::size_t c = 0; c < channels.size(); ++c) {
                const auto block = channels[c].block();
                for (std::size_t i = 0; i < size; ++i) {
                    block[i] = sample[i * channels.size() + c] + type.middle();
                }
                channels[c].encode(size, to);
            }
            sample += size * channels.size();
            left -= size;
        }
    }
}

} // namespace

void encode(pcm::InputFile& input, pcm::ByteSink& output) {
    pcm::PcmReader reader(input);
    const SampleType type = typeFor(reader.format(), input.name());
    reader.refuseToLeaveOut();
    constexpr std::array<std::uint8_t, 5> magicAndVersion{'a', 'j', 'k', 'g', 2};
    output.write(magicAndVersion);
    BitWriter bits(output);
    putLong(bits, type.number);
    putLong(bits, reader.format().channels);
    putLong(bits, ChannelEncoder::blockSize);
    putLong(bits, 0); // no predictor
    putLong(bits, ChannelEncoder::meanBlocks);
    putLong(bits, 0); // nothing to be skipped
    putVerbatim(bits, reader.header());
    putSamples(bits, reader, type);
    std::array<std::uint8_t, verbatimPiece> piece{};
    while (const std::size_t count = reader.readTrailer(piece)) {
        putVerbatim(bits, std::span(piece).first(count));
    }
    reader.refuseToLeaveOut();
    putFunction(bits, Function::Quit);
    bits.finish();
}

} // namespace quav::shorten
