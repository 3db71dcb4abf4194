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

constexpr auto frameSums = checksumTable<std::uint16_t, 0x8005>();

// Which byte has a sum that ends so; each end belongs to one byte.
constexpr std::array<std::uint8_t, 256> bytesByEnd() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        table.at(frameSums.at(byte) & 0xFFU) = static_cast<std::uint8_t>(byte);
    }
    return table;
}

// What the sum of a frame was before it came to `sum` with this byte. A sum can be followed to the
// beginning as well as to the end, and that way one pass finds where it has begun with nothing.
std::uint16_t sumBefore(std::uint16_t sum, std::uint8_t byte) {
    static constexpr auto ends = bytesByEnd();
    const unsigned index = ends[sum & 0xFFU];
    const unsigned low = (sum >> 8U ^ frameSums[index] >> 8U) & 0xFFU;
    return static_cast<std::uint16_t>((index ^ byte) << 8U | low);
}

struct FrameHeader {
    std::uint64_t firstSample = 0;
    unsigned samples = 0;
};

// Reads a header field by field; whatever does not fit the stream is no header.
class HeaderReader {
public:
    HeaderReader(Bytes bytes, const StreamInfo& info) : bytes_(bytes), info_(info) {}

    std::optional<FrameHeader> read() {
        if (bytes_.size() < longestHeader || bytes_[0] != 0xFF || (bytes_[1] & 0xFEU) != 0xF8 ||
            !fitsStream()) {
            return {};
        }
        const std::optional<std::uint64_t> number = codedNumber();
        const unsigned samples = number ? blockSize(bytes_[2] >> 4U) : 0;
        if (samples == 0 || samples > info_.maximalBlock) {
            return {};
        }
        constexpr std::array<std::uint8_t, 4> rateBytes{1, 2, 2, 0};
        const unsigned rate = bytes_[2] & 0xFU;
        at_ += rate >= 12 ? rateBytes.at(rate - 12) : 0;
        if (crc8(bytes_.first(at_)) != bytes_[at_]) {
            return {};
        }
        const bool countsSamples =
            (bytes_[1] & 1U) != 0 || info_.minimalBlock != info_.maximalBlock;
        return FrameHeader{countsSamples ? *number : *number * info_.maximalBlock, samples};
    }

private:
    bool fitsStream() const {
        constexpr std::array<unsigned, 8> depths{0, 8, 12, 0, 16, 20, 24, 32};
        const unsigned rate = bytes_[2] & 0xFU;
        const unsigned channels = bytes_[3] >> 4U;
        const unsigned depth = bytes_[3] >> 1U & 7U;
        const unsigned count = channels < 8 ? channels + 1 : 2;
        return rate != 15 && channels < 11 && count == info_.channels && (bytes_[3] & 1U) == 0 &&
               (depth == 0 || depths.at(depth) == info_.bits);
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
    const StreamInfo& info_;
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
    for (std::uint64_t at = frames.info.audioAt; at + start <= frames.end;
         at += pieceSize - start) {
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
    const std::uint64_t size = frames.end - frames.info.audioAt;
    const std::uint64_t window = frames.longestFrame() + longestHeader;
    if (size < std::max(littleToSearch, std::uint64_t{2} * probes * window)) {
        return true;
    }
    const double bytesPerSample =
        static_cast<double>(frames.longestFrame()) / std::max(1U, frames.info.maximalBlock);
    std::uint64_t place = frames.info.audioAt;
    std::uint64_t sample = 0;
    const auto goesOn = [&](std::uint64_t nextPlace, std::uint64_t nextSample) {
        const auto most = static_cast<double>(nextSample - std::min(sample, nextSample) +
                                              frames.info.maximalBlock) *
                          bytesPerSample;
        const bool fits = nextSample > sample && static_cast<double>(nextPlace - place) <= most;
        place = nextPlace;
        sample = nextSample;
        return fits;
    };
    for (unsigned probe = 1; probe <= probes; ++probe) {
        const std::uint64_t at = frames.info.audioAt + size / (probes + 1) * probe;
        const auto bytes = readPart(input, at, at + window + longestHeader);
        for (std::size_t i = 0; i + longestHeader <= bytes.size(); ++i) {
            const auto header = HeaderReader(Bytes(bytes).subspan(i), frames.info).read();
            if (header && !goesOn(at + i, header->firstSample)) {
                return true;
            }
            if (header) {
                break;
            }
        }
    }
    return !goesOn(frames.end, frames.info.total);
}

} // namespace

std::uint64_t Frames::longestFrame() const {
    constexpr std::uint64_t around = 64; // headers and checksums
    return (std::uint64_t{info.maximalBlock} * (info.bits + 1) + 7) / 8 * info.channels + around;
}

std::optional<Frames> findFrames(const pcm::InputFile& input) {
    const std::optional<StreamInfo> info = readStreamInfo(input);
    if (!info) {
        return {};
    }
    const pcm::ReadAt readAt = [&](std::uint64_t offset, std::span<std::uint8_t> to) {
        return input.readAt(offset, to);
    };
    return Frames{*info, pcm::beginOfTags(readAt, info->audioAt, input.size().value_or(0))};
}

std::optional<std::uint64_t> samplesAtEnd(const pcm::InputFile& input, const Frames& frames) {
    if (frames.info.audioAt == frames.end) {
        return 0;
    }
    const auto headerAt = [&](std::uint64_t at) {
        // A header may be shorter than what is looked at.
        std::vector<std::uint8_t> head =
            readPart(input, at, std::min(frames.end, at + longestHeader));
        head.resize(longestHeader);
        return HeaderReader(head, frames.info).read();
    };
    const std::uint64_t from =
        std::max(frames.info.audioAt, frames.end - std::min(frames.end, frames.longestFrame()));
    const auto bytes = readPart(input, from, frames.end);
    std::uint16_t sum = 0;
    for (std::size_t at = bytes.size(); at-- > 0;) {
        sum = sumBefore(sum, bytes[at]);
        if (sum != 0 || bytes[at] != 0xFF) {
            continue;
        }
        if (const auto last = headerAt(from + at)) {
            // A stream that was cut out of a longer one goes on counting.
            const auto first = headerAt(frames.info.audioAt);
            const std::uint64_t begin = first ? first->firstSample : 0;
            return last->firstSample + last->samples - std::min(begin, last->firstSample);
        }
    }
    return {};
}

std::optional<std::string> soundLeftOut(const pcm::InputFile& input) {
    const std::optional<Frames> frames = findFrames(input);
    if (!frames || frames->info.total == 0) {
        return {};
    }
    const std::optional<std::uint64_t> found = samplesAtEnd(input, *frames);
    const bool isAsTold = found == frames->info.total;
    if ((!isAsTold || mayBeJoined(input, *frames)) && hasAnotherStream(input, *frames)) {
        return "another FLAC stream stands behind its end";
    }
    if (found && *found > frames->info.total) {
        const std::uint64_t more = *found - frames->info.total;
        return std::to_string(more) + (more == 1 ? " sample stands" : " samples stand") +
               " behind the number of samples that its STREAMINFO tells";
    }
    return {};
}

} // namespace quav::flac
