#include "audio/wav/Wave.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/WavHeader.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace quav::wav {

using pcm::Failure;

namespace {

constexpr std::uint16_t plainTag = 1;
constexpr std::uint16_t extensibleTag = 0xFFFE;
constexpr std::uint64_t unknownSize = 0xFFFFFFFF;
constexpr std::uint64_t largestSize = std::uint64_t{1} << 60;
constexpr std::size_t maximalHeader = std::size_t{16} << 20;

using Bytes = std::span<const std::uint8_t>;

std::string text(Bytes bytes) {
    return {bytes.begin(), bytes.end()};
}

class HeaderParser {
public:
    HeaderParser(const ReadBytes& read, const std::string& file, const ChunkHandler& found)
        : read_(read), file_(file), found_(found) {}

    WaveHeader header() {
        const std::string magic = text(take(12));
        isLong_ = magic.starts_with("RF64") || magic.starts_with("BW64");
        if ((!isLong_ && !magic.starts_with("RIFF")) || !magic.ends_with("WAVE")) {
            throw Failure(Failure::Kind::Input, "no WAVE header");
        }
        wave_.chunkSize = pcm::littleEndian(Bytes(bytes_).subspan(4, 4));
        lookingFor_ = "while looking for fmt tag";
        while (nextChunk() != "fmt ") {
            readContent();
        }
        readFormat();
        lookingFor_ = "looking for data tag";
        while (nextChunk() != "data") {
            readContent();
        }
        wave_.dataSize = size_;
        wave_.headerSize = bytes_.size();
        if (isLong_ && wave_.dataSize == unknownSize && longData_ > 0) {
            wave_.dataSize = longData_;
        }
        if (isLong_ && wave_.chunkSize == unknownSize && longRiff_ > 0) {
            wave_.chunkSize = longRiff_;
        }
        // Sums of sizes are made without a look.
        if (std::max(wave_.dataSize, wave_.chunkSize) > largestSize) {
            fail(Failure::Kind::Input, "a size that no file has");
        }
        return {wave_, std::move(bytes_)};
    }

private:
    [[noreturn]] void fail(Failure::Kind kind, const std::string& what) const {
        throw Failure(kind, what + " while processing file: [" + file_ + "]");
    }

    // Valid until the next call.
    Bytes take(std::uint64_t count) {
        const std::size_t start = bytes_.size();
        if (count > maximalHeader - start) {
            fail(Failure::Kind::Input, "more than 16 MiB before the data chunk");
        }
        // Piece by piece: a size that is a lie must not cost memory.
        for (std::size_t left = static_cast<std::size_t>(count); left > 0;) {
            const std::size_t piece = std::min<std::size_t>(left, 4096);
            const std::size_t at = bytes_.size();
            bytes_.resize(at + piece);
            if (read_(std::span(bytes_).subspan(at)) < piece) {
                fail(Failure::Kind::Input, std::string("reached end of file ") + lookingFor_);
            }
            left -= piece;
        }
        return Bytes(bytes_).subspan(start);
    }

    std::string nextChunk() {
        const Bytes head = take(8);
        std::string id = text(head.first(4));
        size_ = pcm::littleEndian(head.subspan(4));
        if (found_) {
            found_(id, size_);
        }
        if (id == "ds64") {
            const Bytes sizes = take(16);
            longRiff_ = pcm::littleEndian(sizes.first(8));
            longData_ = pcm::littleEndian(sizes.subspan(8));
            size_ -= std::min<std::uint64_t>(size_, 16);
        }
        return id;
    }

    Bytes readContent() { return take(size_ + size_ % 2); }

    void readFormat() {
        const Bytes content = readContent();
        if (content.size() < 16) {
            fail(Failure::Kind::Input, "too short a fmt chunk");
        }
        const auto number = [&](std::size_t at, std::size_t width) {
            return static_cast<std::uint32_t>(pcm::littleEndian(content.subspan(at, width)));
        };
        wave_.formatTag = static_cast<std::uint16_t>(number(0, 2));
        wave_.channels = number(2, 2);
        wave_.rate = number(4, 4);
        wave_.bytesPerSecond = number(8, 4);
        wave_.blockAlign = number(12, 2);
        wave_.bits = number(14, 2);
        wave_.validBits = wave_.bits;
        std::uint16_t kind = wave_.formatTag;
        if (kind == extensibleTag && content.size() >= 40) {
            const std::uint32_t valid = number(18, 2);
            wave_.validBits = valid > 0 && valid <= wave_.bits ? valid : wave_.bits;
            wave_.channelMask = number(20, 4);
            kind = static_cast<std::uint16_t>(number(24, 2));
        }
        if (kind != plainTag) {
            std::array<char, 40> tag{};
            std::snprintf(tag.data(), tag.size(), "unsupported format 0x%04x (", kind);
            fail(Failure::Kind::Unsupported, tag.data() + std::string(formatName(kind)) + ")");
        }
        if (wave_.channels == 0 || wave_.rate == 0 || wave_.bits == 0 || wave_.bits > 32) {
            fail(Failure::Kind::Input, "a fmt chunk that describes no sound");
        }
    }

    const ReadBytes& read_;
    const std::string& file_;
    const ChunkHandler& found_;
    Wave wave_;
    std::vector<std::uint8_t> bytes_;
    const char* lookingFor_ = "looking for WAVE tag";
    bool isLong_ = false;
    std::uint64_t size_ = 0; // of the chunk at hand
    std::uint64_t longRiff_ = 0;
    std::uint64_t longData_ = 0;
};

} // namespace

pcm::PcmFormat Wave::format() const {
    const unsigned bytes = (bits + 7) / 8;
    return {.channels = channels,
            .bitsPerSample = validBits,
            .bytesPerSample = bytes,
            .sampleRate = rate,
            .channelMask = channelMask,
            .isUnsigned = bytes == 1};
}

double Wave::seconds(std::uint64_t bytes) const {
    return static_cast<double>(bytes) / static_cast<double>(rightBytesPerSecond());
}

bool Wave::isCdQuality() const {
    return channels == 2 && bits == 16 && rate == 44100 &&
           bytesPerSecond == sectorsPerSecond * sectorSize;
}

bool Wave::isCanonical() const {
    return headerSize == pcm::wavHeaderOfBytes(format(), dataSize).size();
}

bool Wave::hasExtraChunks() const {
    return totalSize() > headerSize + dataSize + dataSize % 2;
}

WaveHeader readWaveHeader(const ReadBytes& read, const std::string& file,
                          const ChunkHandler& found) {
    return HeaderParser(read, file, found).header();
}

WaveHeader readWaveHeader(std::span<const std::uint8_t> bytes, const std::string& file) {
    const ReadBytes read = [&](std::span<std::uint8_t> to) {
        const std::size_t count = std::min(to.size(), bytes.size());
        std::copy_n(bytes.begin(), count, to.begin());
        bytes = bytes.subspan(count);
        return count;
    };
    return readWaveHeader(read, file);
}

WaveHeader canonicalHeader(const pcm::PcmFormat& format, std::uint64_t dataSize) {
    return readWaveHeader(pcm::wavHeaderOfBytes(format, dataSize), "");
}

WaveHeader resizedHeader(const WaveHeader& header, std::uint64_t dataSize,
                         std::uint64_t behindData) {
    const auto chunkSize = [&](const WaveHeader& of) {
        return of.bytes.size() - 8 + dataSize + dataSize % 2 + behindData;
    };
    WaveHeader resized = header;
    if (!pcm::startsWith(header.bytes, "RIFF") || chunkSize(header) >= unknownSize) {
        resized = canonicalHeader(header.wave.format(), dataSize);
        if (chunkSize(resized) >= unknownSize && pcm::startsWith(resized.bytes, "RIFF")) {
            // The chunks behind make it too long for a short header.
            resized = canonicalHeader(header.wave.format(), unknownSize);
        }
    }
    resized.wave.dataSize = dataSize;
    resized.wave.chunkSize = chunkSize(resized);
    const std::span bytes(resized.bytes);
    if (pcm::startsWith(bytes, "RIFF")) {
        pcm::storeLittleEndian(bytes.subspan(4, 4), resized.wave.chunkSize);
        pcm::storeLittleEndian(bytes.last(4), dataSize);
    } else {
        // Our own RF64 begins with its ds64 chunk; the short sizes stay at their largest value.
        const std::span sizes = bytes.subspan(20, 24);
        pcm::storeLittleEndian(sizes.first(8), resized.wave.chunkSize);
        pcm::storeLittleEndian(sizes.subspan(8, 8), dataSize);
        pcm::storeLittleEndian(sizes.last(8), dataSize / header.wave.format().blockAlign());
    }
    return resized;
}

const char* formatName(std::uint16_t tag) {
    constexpr std::array<std::pair<std::uint16_t, const char*>, 8> names{{
        {0x0001, "Microsoft PCM"},
        {0x0002, "Microsoft ADPCM"},
        {0x0003, "IEEE Float"},
        {0x0006, "CCITT A-law"},
        {0x0007, "CCITT mu-law"},
        {0x0050, "MPEG Layer 1 or 2"},
        {0x0055, "MPEG Layer 3"},
        {extensibleTag, "Extensible PCM"},
    }};
    const auto* const known = std::find_if(names.begin(), names.end(),
                                           [&](const auto& name) { return name.first == tag; });
    return known != names.end() ? known->second : "Unknown";
}

} // namespace quav::wav
