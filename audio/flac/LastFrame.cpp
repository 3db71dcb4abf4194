#include "audio/flac/LastFrame.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/SoundBehind.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace quav::flac {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t longestHeader = 16;

template <typename Sum, Sum polynomial>
constexpr auto checksumTable() {
    constexpr unsigned width = sizeof(Sum) * 8;
    std::array<Sum, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned sum = byte << (width - 8);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> (width - 1) & 1U) != 0 ? sum << 1 ^ polynomial : sum << 1;
        }
        table[byte] = static_cast<Sum>(sum);
    }
    return table;
}

std::uint8_t crc8(Bytes bytes) {
    constexpr auto table = checksumTable<std::uint8_t, 0x07>();
    std::uint8_t sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum = table[sum ^ byte];
    }
    return sum;
}

std::uint16_t crc16(Bytes bytes) {
    constexpr auto table = checksumTable<std::uint16_t, 0x8005>();
    std::uint16_t sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum = static_cast<std::uint16_t>(sum << 8 ^ table[(sum >> 8 ^ byte) & 0xFFU]);
    }
    return sum;
}

struct FrameHeader {
    std::uint64_t firstSample = 0;
    unsigned samples = 0;
};

// Reads a header field by field; whatever does not fit the stream is no header.
class HeaderReader {
public:
    HeaderReader(Bytes bytes, const Frames& frames) : bytes_(bytes), frames_(frames) {}

    std::optional<FrameHeader> read() {
        if (bytes_.size() < longestHeader || bytes_[0] != 0xFF || (bytes_[1] & 0xFEU) != 0xF8 ||
            !fitsStream()) {
            return {};
        }
        const std::optional<std::uint64_t> number = codedNumber();
        const unsigned samples = number ? blockSize(bytes_[2] >> 4U) : 0;
        if (samples == 0 || samples > frames_.maximalBlock) {
            return {};
        }
        constexpr std::array<std::uint8_t, 4> rateBytes{1, 2, 2, 0};
        const unsigned rate = bytes_[2] & 0xFU;
        at_ += rate >= 12 ? rateBytes.at(rate - 12) : 0;
        if (crc8(bytes_.first(at_)) != bytes_[at_]) {
            return {};
        }
        const bool countsSamples =
            (bytes_[1] & 1U) != 0 || frames_.minimalBlock != frames_.maximalBlock;
        return FrameHeader{countsSamples ? *number : *number * frames_.maximalBlock, samples};
    }

private:
    bool fitsStream() const {
        constexpr std::array<unsigned, 8> depths{0, 8, 12, 0, 16, 20, 24, 32};
        const unsigned rate = bytes_[2] & 0xFU;
        const unsigned channels = bytes_[3] >> 4U;
        const unsigned depth = bytes_[3] >> 1U & 7U;
        const unsigned count = channels < 8 ? channels + 1 : 2;
        return rate != 15 && channels < 11 && count == frames_.channels && (bytes_[3] & 1U) == 0 &&
               (depth == 0 || depths.at(depth) == frames_.bits);
    }

    // As UTF-8 codes a letter, but of up to 36 bits.
    std::optional<std::uint64_t> codedNumber() {
        const std::uint8_t first = bytes_[at_++];
        if (first < 0x80) {
            return first;
        }
        unsigned more = 0;
        while (more < 7 && (first & (0x40U >> more)) != 0) {
            ++more;
        }
        if (more == 0 || more > 6) {
            return {};
        }
        std::uint64_t number = first & (0x3FU >> more);
        for (; more > 0; --more) {
            const std::uint8_t byte = bytes_[at_++];
            if ((byte & 0xC0U) != 0x80) {
                return {};
            }
            number = number << 6 | (byte & 0x3FU);
        }
        return number;
    }

    unsigned blockSize(unsigned code) {
        if (code == 6 || code == 7) {
            const std::size_t width = code - 5;
            const Bytes bytes = bytes_.subspan(at_, width);
            at_ += width;
            return static_cast<unsigned>(pcm::bigEndian(bytes)) + 1;
        }
        return code == 0 ? 0 : code == 1 ? 192 : code < 6 ? 576U << (code - 2) : 256U << (code - 8);
    }

    Bytes bytes_;
    const Frames& frames_;
    std::size_t at_ = 4;
};

std::vector<std::uint8_t> readPart(const pcm::InputFile& input, std::uint64_t from,
                                   std::uint64_t to) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(to - std::min(from, to)));
    bytes.resize(input.readAt(from, bytes));
    return bytes;
}

// Whether another stream begins anywhere behind the first one's metadata.
bool hasAnotherStream(const pcm::InputFile& input, const Frames& frames) {
    constexpr std::string_view magic = "fLaC";
    constexpr std::size_t start = 12; // with the head of STREAMINFO and its block sizes
    constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
    for (std::uint64_t at = frames.begin; at + start <= frames.end; at += pieceSize - start) {
        const auto piece = readPart(input, at, std::min(frames.end, at + pieceSize));
        auto found = piece.begin();
        while (true) {
            found = std::search(found, piece.end(), magic.begin(), magic.end());
            if (piece.end() - found < static_cast<std::ptrdiff_t>(start)) {
                break;
            }
            const Bytes head =
                Bytes(piece).subspan(static_cast<std::size_t>(found - piece.begin()));
            if ((head[4] & 0x7FU) == 0 && pcm::bigEndian(head.subspan(5, 3)) == 34 &&
                pcm::bigEndian(head.subspan(8, 2)) <= pcm::bigEndian(head.subspan(10, 2))) {
                return true;
            }
            ++found;
        }
    }
    return false;
}

// Whether the frames here and there do not go on from each other. Files of the same number of
// samples that have been joined look right at their end.
bool mayBeJoined(const pcm::InputFile& input, const Frames& frames) {
    constexpr std::uint64_t littleToSearch = std::uint64_t{256} << 10;
    constexpr unsigned probes = 8;
    const std::uint64_t size = frames.end - frames.begin;
    const std::uint64_t window = frames.longestFrame() + longestHeader;
    if (size < std::max(littleToSearch, 2 * probes * window)) {
        return true;
    }
    const double bytesPerSample =
        static_cast<double>(frames.longestFrame()) / std::max(1U, frames.maximalBlock);
    std::uint64_t place = frames.begin;
    std::uint64_t sample = 0;
    const auto goesOn = [&](std::uint64_t nextPlace, std::uint64_t nextSample) {
        const auto most =
            static_cast<double>(nextSample - std::min(sample, nextSample) + frames.maximalBlock) *
            bytesPerSample;
        const bool fits = nextSample > sample && static_cast<double>(nextPlace - place) <= most;
        place = nextPlace;
        sample = nextSample;
        return fits;
    };
    for (unsigned probe = 1; probe <= probes; ++probe) {
        const std::uint64_t at = frames.begin + size / (probes + 1) * probe;
        const auto bytes = readPart(input, at, at + window + longestHeader);
        for (std::size_t i = 0; i + longestHeader <= bytes.size(); ++i) {
            const auto header = HeaderReader(Bytes(bytes).subspan(i), frames).read();
            if (header && !goesOn(at + i, header->firstSample)) {
                return true;
            }
            if (header) {
                break;
            }
        }
    }
    return !goesOn(frames.end, frames.total);
}

} // namespace

std::uint64_t Frames::longestFrame() const {
    constexpr std::uint64_t around = 64; // headers and checksums
    return (std::uint64_t{maximalBlock} * (bits + 1) + 7) / 8 * channels + around;
}

std::optional<Frames> findFrames(const pcm::InputFile& input) {
    std::array<std::uint8_t, 38> bytes{};
    const auto read = [&](std::uint64_t at, std::size_t count) {
        const auto to = std::span(bytes).first(count);
        return Bytes(to).first(input.readAt(at, to));
    };
    std::uint64_t at = 0;
    while (const std::uint64_t tag = pcm::id3v2Length(read(at, pcm::id3v2Header))) {
        at += tag;
    }
    if (!pcm::startsWith(read(at, 4), "fLaC")) {
        return {};
    }
    at += 4;
    std::optional<Frames> frames;
    for (bool isLast = false; !isLast;) {
        const Bytes head = read(at, bytes.size());
        if (head.size() < 4 || head[0] == 0xFF) {
            return {};
        }
        isLast = (head[0] & 0x80U) != 0;
        const std::uint64_t size = pcm::bigEndian(head.subspan(1, 3));
        if ((head[0] & 0x7FU) == 0 && size >= 34 && head.size() == bytes.size() && !frames) {
            const Bytes info = head.subspan(4);
            const std::uint64_t packed = pcm::bigEndian(info.subspan(10, 8));
            frames = Frames{
                .minimalBlock = static_cast<unsigned>(pcm::bigEndian(info.first(2))),
                .maximalBlock = static_cast<unsigned>(pcm::bigEndian(info.subspan(2, 2))),
                .channels = static_cast<unsigned>(packed >> 41 & 7U) + 1,
                .bits = static_cast<unsigned>(packed >> 36 & 31U) + 1,
                .total = packed & 0xFFFFFFFFF,
            };
        }
        at += 4 + size;
    }
    if (frames) {
        const pcm::ReadAt readAt = [&](std::uint64_t offset, std::span<std::uint8_t> to) {
            return input.readAt(offset, to);
        };
        const std::uint64_t size = input.size().value_or(0);
        frames->begin = std::min(at, size);
        frames->end = pcm::beginOfTags(readAt, frames->begin, size);
    }
    return frames;
}

std::optional<std::uint64_t> samplesAtEnd(const pcm::InputFile& input, const Frames& frames) {
    const std::uint64_t from =
        std::max(frames.begin, frames.end - std::min(frames.end, frames.longestFrame()));
    const auto bytes = readPart(input, from, frames.end);
    for (std::size_t at = bytes.size(); at-- > 0;) {
        // A header may be shorter than what is looked at.
        std::array<std::uint8_t, longestHeader> head{};
        const Bytes frame = Bytes(bytes).subspan(at);
        std::copy_n(frame.begin(), std::min(head.size(), frame.size()), head.begin());
        const auto header = HeaderReader(head, frames).read();
        if (header && frame.size() > 6 && crc16(frame) == 0) {
            return header->firstSample + header->samples;
        }
    }
    return {};
}

std::optional<std::string> soundLeftOut(const pcm::InputFile& input) {
    const std::optional<Frames> frames = findFrames(input);
    if (!frames || frames->total == 0) {
        return {};
    }
    const std::optional<std::uint64_t> found = samplesAtEnd(input, *frames);
    const bool isAsTold = found == frames->total;
    if ((!isAsTold || mayBeJoined(input, *frames)) && hasAnotherStream(input, *frames)) {
        return "another FLAC stream stands behind its end";
    }
    if (found && *found > frames->total) {
        const std::uint64_t more = *found - frames->total;
        return std::to_string(more) + (more == 1 ? " sample stands" : " samples stand") +
               " behind the number of samples that its STREAMINFO tells";
    }
    return {};
}

} // namespace quav::flac
