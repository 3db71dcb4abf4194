#include "tta/ShortFrame.h"

#include "pcm/Failure.h"
#include "pcm/Samples.h"
#include "tta/FrameCoder.h"

#include <algorithm>
#include <cstddef>

namespace quav::tta {

namespace {

using Bytes = std::vector<std::uint8_t>;

// A frame with the beginning of a longer one's code. Its checksum is still missing.
Bytes beginning(const Bytes& code, std::size_t size) {
    Bytes frame(code.begin(), code.begin() + static_cast<std::ptrdiff_t>(size));
    frame.resize(size + checksumSize);
    return frame;
}

Header withBlocks(Header header, std::uint32_t blocks) {
    header.blocks = blocks;
    header.sampleRate = sampleRateFor(blocks);
    return header;
}

// The least number of bytes that suffice to decode so many blocks.
std::size_t sufficientSize(const Header& header, const Bytes& code) {
    FrameDecoder decoder(header);
    Bytes samples;
    std::size_t low = 0;
    std::size_t high = code.size();
    while (low < high) {
        const std::size_t size = low + (high - low) / 2;
        const bool isEnough = decoder.decode(beginning(code, size), header.blocks, samples);
        (isEnough ? high : low) = isEnough ? size : size + 1;
    }
    return low;
}

// The samples as a decoder gives them back.
Bytes decoded(const Header& header, const pcm::PcmFormat& format,
              std::span<const std::uint8_t> samples) {
    std::vector<std::int32_t> numbers(samples.size() / format.bytesPerSample);
    Bytes bytes(samples.size());
    pcm::unpackSamples(format, samples, numbers);
    pcm::packSamples(header.wavFormat(), numbers, bytes);
    return bytes;
}

// Cuts the code of the first blocks, whose samples are `wanted`, out of the code of more.
Bytes cut(const Header& frame, const Bytes& code, const Bytes& wanted) {
    // A decoder whose frames have just this length takes too much code, too. There is a sample rate
    // with such frames for most lengths. For the others the search begins at one block less, and
    // goes on with a decoder of longer frames, which sees a frame end early where its code ends.
    const bool isFrameLength = frame.frameLength() == frame.blocks;
    std::size_t size =
        sufficientSize(isFrameLength ? frame : withBlocks(frame, frame.blocks - 1), code);
    FrameDecoder decoder(frame);
    Bytes samples;
    while (!decoder.decode(beginning(code, size), frame.blocks, samples) || samples != wanted) {
        if (++size > code.size()) {
            throw pcm::Failure(pcm::Failure::Kind::Unsupported,
                               "FFmpeg's libavcodec cannot decode what it has encoded");
        }
    }
    // The last byte may hold bits of the next block: those that make no difference become zeros.
    Bytes cutCode = beginning(code, size);
    Bytes changedSamples;
    for (std::uint8_t bit = 0x80; bit != 0; bit >>= 1) {
        Bytes changed = cutCode;
        changed[size - 1] ^= bit;
        if (!decoder.decode(changed, frame.blocks, changedSamples) || changedSamples != samples) {
            break;
        }
        cutCode[size - 1] &= static_cast<std::uint8_t>(~bit);
    }
    return cutCode;
}

} // namespace

Bytes encodeShortFrame(const Header& header, const pcm::PcmFormat& format,
                       std::span<const std::uint8_t> samples) {
    const std::size_t align = format.blockAlign();
    const auto blocks = static_cast<std::uint32_t>(samples.size() / align);
    Bytes longerSamples(samples.begin(), samples.end());
    longerSamples.resize(safeFrameLength * align);
    FrameEncoder encoder(withBlocks(header, safeFrameLength));
    const std::span<const std::uint8_t> coded = encoder.encode(format, longerSamples);

    Bytes frame = cut(withBlocks(header, blocks),
                      {coded.begin(), coded.end() - static_cast<std::ptrdiff_t>(checksumSize)},
                      decoded(header, format, samples));
    putChecksum(frame);
    return frame;
}

} // namespace quav::tta
