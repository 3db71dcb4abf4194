#include "audio/pcm/WavHeader.h"

#include <array>
#include <string_view>
#include <utility>

namespace quav::pcm {

namespace {

constexpr std::uint64_t largestRiff = 0xFFFFFFFF;

class LittleEndianBytes {
public:
    void id(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void number(std::uint64_t value, unsigned width) {
        for (unsigned i = 0; i < width; ++i) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    std::vector<std::uint8_t> bytes_;
};

// The speakers that so many channels usually belong to, as FLAC and WAV both assign them.
std::uint32_t usualMask(unsigned channels) {
    constexpr std::array<std::uint32_t, 9> masks{0, 0x4, 0x3, 0x7, 0x33, 0x37, 0x3F, 0x70F, 0x63F};
    return channels < masks.size() ? masks[channels] : 0;
}

} // namespace

std::size_t wavPadding(const PcmFormat& format, std::uint64_t blocks) {
    return static_cast<std::size_t>(blocks * format.blockAlign() % 2);
}

std::vector<std::uint8_t> wavHeader(const PcmFormat& format, std::uint64_t blocks, WavKind kind) {
    return wavHeaderOfBytes(format, blocks * format.blockAlign(), kind);
}

std::vector<std::uint8_t> wavHeaderOfBytes(const PcmFormat& format, std::uint64_t dataBytes,
                                           WavKind kind) {
    const bool isExtensible = format.channels > 2 && kind == WavKind::Usual;
    const std::uint64_t formatBytes = isExtensible ? 40 : 16;
    std::uint64_t riffBytes = 4 + 8 + formatBytes + 8 + dataBytes + dataBytes % 2;
    const bool isLong = riffBytes > largestRiff;
    if (isLong) {
        riffBytes += 8 + 28;
    }

    LittleEndianBytes header;
    header.id(isLong ? "RF64" : "RIFF");
    header.number(isLong ? largestRiff : riffBytes, 4);
    header.id("WAVE");
    if (isLong) {
        header.id("ds64");
        header.number(28, 4);
        header.number(riffBytes, 8);
        header.number(dataBytes, 8);
        header.number(dataBytes / format.blockAlign(), 8);
        header.number(0, 4); // no further table of long chunks
    }
    header.id("fmt ");
    header.number(formatBytes, 4);
    header.number(isExtensible ? 0xFFFE : 1, 2);
    header.number(format.channels, 2);
    header.number(format.sampleRate, 4);
    header.number(format.sampleRate * format.blockAlign(), 4);
    header.number(format.blockAlign(), 2);
    header.number(format.containerBits(), 2);
    if (isExtensible) {
        header.number(22, 2);
        header.number(format.bitsPerSample, 2);
        header.number(format.channelMask != 0 ? format.channelMask : usualMask(format.channels), 4);
        header.id({"\x01\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 16});
    }
    header.id("data");
    header.number(isLong ? largestRiff : dataBytes, 4);
    return header.take();
}

} // namespace quav::pcm
