#include "platform/FlacCount.h"

#include "platform/RegularFile.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <bit>

namespace quav {

namespace {

// RFC 9639: section 8 for the blocks at the beginning, section 9.1 for the header of a frame.

using Bytes = QByteArray;

unsigned byteAt(const Bytes& bytes, qsizetype at) {
    return static_cast<unsigned char>(bytes[at]);
}

std::uint64_t bigEndian(const Bytes& bytes, qsizetype from, qsizetype count) {
    std::uint64_t value = 0;
    for (qsizetype at = from; at < from + count; ++at) {
        value = value << 8 | byteAt(bytes, at);
    }
    return value;
}

/// The remainder of every byte by a polynomial; CRC-8 and CRC-16 differ in the rest alone.
template <typename Sum>
constexpr std::array<Sum, 256> remainders(unsigned polynomial) {
    constexpr unsigned width = 8 * sizeof(Sum);
    std::array<Sum, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        unsigned sum = byte << (width - 8);
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum << 1 ^ ((sum >> (width - 1) & 1U) != 0 ? polynomial : 0);
        }
        table[byte] = static_cast<Sum>(sum);
    }
    return table;
}

constexpr auto headerSums = remainders<std::uint8_t>(0x07);
constexpr auto frameSums = remainders<std::uint16_t>(0x8005);

/// Which byte has a remainder that ends so; each end belongs to one byte.
constexpr std::array<std::uint8_t, 256> bytesByEnd() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        table[frameSums[byte] & 0xffU] = static_cast<std::uint8_t>(byte);
    }
    return table;
}

/// What the sum of a frame was before it came to `sum` with this byte. A sum can be followed to the
/// beginning as well as to the end, and that way one pass finds where it has begun with nothing.
std::uint16_t sumBefore(std::uint16_t sum, unsigned byte) {
    static constexpr auto ends = bytesByEnd();
    const unsigned index = ends[sum & 0xffU];
    const unsigned low = (sum >> 8U ^ frameSums[index] >> 8U) & 0xffU;
    return static_cast<std::uint16_t>((index ^ byte) << 8U | low);
}

constexpr qsizetype longestHeader = 16;

struct Frame {
    bool countsSamples; ///< its number is that of its first sample, and not of the frame
    std::uint64_t number;
    std::uint64_t blockSize; ///< samples a channel
};

/// A number in the manner of UTF-8, up to seven bytes; moves `at` behind it.
std::optional<std::uint64_t> codedNumber(const Bytes& bytes, qsizetype& at) {
    const unsigned first = byteAt(bytes, at);
    const auto leadingOnes =
        static_cast<unsigned>(std::countl_one(static_cast<std::uint8_t>(first)));
    ++at;
    if (leadingOnes == 0) {
        return first;
    }
    if (leadingOnes == 1 || leadingOnes > 7) {
        return std::nullopt;
    }
    std::uint64_t number = first & 0x7fU >> leadingOnes;
    for (unsigned i = 1; i < leadingOnes; ++i, ++at) {
        if (at >= bytes.size() || (byteAt(bytes, at) & 0xc0U) != 0x80U) {
            return std::nullopt;
        }
        number = number << 6 | (byteAt(bytes, at) & 0x3fU);
    }
    return number;
}

/// The block size of a code; for two codes it stands behind the number, and `at` moves behind it.
std::optional<std::uint64_t> blockSizeOf(unsigned code, const Bytes& bytes, qsizetype& at) {
    constexpr unsigned inOneByte = 6;
    constexpr unsigned inTwoBytes = 7;
    if (code == 0) {
        return std::nullopt;
    }
    if (code == inOneByte || code == inTwoBytes) {
        const qsizetype count = code == inOneByte ? 1 : 2;
        at += count;
        return at <= bytes.size() ? std::optional(bigEndian(bytes, at - count, count) + 1)
                                  : std::nullopt;
    }
    if (code == 1) {
        return 192;
    }
    return code < inOneByte ? 576U << (code - 2) : 256U << (code - 8);
}

qsizetype bytesOfSampleRate(unsigned code) {
    constexpr unsigned inOneByte = 12;
    return code < inOneByte ? 0 : code == inOneByte ? 1 : 2;
}

/// The frame whose header the bytes begin with, if they do.
std::optional<Frame> frameIn(const Bytes& bytes) {
    constexpr qsizetype fixedPart = 4;
    constexpr unsigned noRate = 15;
    if (bytes.size() <= fixedPart || byteAt(bytes, 0) != 0xff ||
        (byteAt(bytes, 1) & 0xfeU) != 0xf8 || (byteAt(bytes, 3) & 1U) != 0) {
        return std::nullopt;
    }
    const unsigned rateCode = byteAt(bytes, 2) & 0xfU;
    qsizetype at = fixedPart;
    const auto number = codedNumber(bytes, at);
    const auto blockSize = blockSizeOf(byteAt(bytes, 2) >> 4U, bytes, at);
    at += bytesOfSampleRate(rateCode);
    if (!number || !blockSize || rateCode == noRate || at >= bytes.size()) {
        return std::nullopt;
    }
    std::uint8_t sum = 0;
    for (qsizetype i = 0; i <= at; ++i) {
        sum = headerSums[sum ^ byteAt(bytes, i)];
    }
    return sum == 0 ? std::optional(Frame{(byteAt(bytes, 1) & 1U) != 0, *number, *blockSize})
                    : std::nullopt;
}

/// A file of which any place can be read; what cannot be read is as good as not there.
class Places {
public:
    explicit Places(const RegularFile& file) : file_(file) {}

    std::uint64_t size() const { return file_.size(); }
    Bytes at(std::uint64_t from, std::uint64_t count) const {
        return file_.readAt(from, count).value_or(Bytes());
    }

private:
    const RegularFile& file_;
};

/// Where the stream begins, behind ID3v2 tags.
std::uint64_t streamStart(const Places& file) {
    constexpr qsizetype headerSize = 10;
    constexpr qsizetype flags = 5;
    constexpr unsigned hasFooter = 0x10;
    std::uint64_t at = 0;
    for (Bytes header = file.at(at, headerSize);
         header.size() == headerSize && header.startsWith("ID3");
         header = file.at(at, headerSize)) {
        std::uint64_t size = 0;
        for (qsizetype i = flags + 1; i < headerSize; ++i) {
            size = size << 7 | (byteAt(header, i) & 0x7fU);
        }
        at += headerSize + size + ((byteAt(header, flags) & hasFooter) != 0 ? headerSize : 0);
    }
    return at;
}

struct Beginning {
    std::uint64_t total;
    std::uint64_t firstFrame; ///< its place in the file
};

std::optional<Beginning> beginningOf(const Places& file) {
    constexpr qsizetype blockHeader = 4;
    constexpr qsizetype infoSize = 34;
    constexpr qsizetype totalInInfo = 13;
    constexpr std::uint64_t ofTotal = (std::uint64_t(1) << 36) - 1;
    constexpr unsigned isLast = 0x80;
    std::uint64_t at = streamStart(file);
    const Bytes start = file.at(at, blockHeader + blockHeader + infoSize);
    if (start.size() < blockHeader + blockHeader + infoSize || !start.startsWith("fLaC") ||
        (bigEndian(start, blockHeader, blockHeader) & 0x7fffffffU) != infoSize) {
        return std::nullopt;
    }
    const std::uint64_t total = bigEndian(start, 2 * blockHeader + totalInInfo, 5) & ofTotal;
    at += blockHeader;
    for (Bytes header = file.at(at, blockHeader); header.size() == blockHeader;
         header = file.at(at, blockHeader)) {
        at += blockHeader + bigEndian(header, 1, 3);
        if ((byteAt(header, 0) & isLast) != 0) {
            return Beginning{total, at};
        }
    }
    return std::nullopt;
}

/// Where the frames end, in front of tags.
std::uint64_t framesEnd(const Places& file) {
    constexpr std::uint64_t id3Size = 128;
    constexpr std::uint64_t apeSize = 32; // of its header and of its footer
    std::uint64_t end = file.size();
    while (end >= id3Size) {
        const Bytes tail = file.at(end - id3Size, id3Size);
        const Bytes footer = tail.last(std::min<qsizetype>(tail.size(), apeSize));
        std::uint64_t tag = 0;
        if (tail.startsWith("TAG")) {
            tag = id3Size;
        } else if (footer.size() == apeSize && footer.startsWith("APETAGEX")) {
            const auto little = [&](qsizetype from) {
                Bytes field = footer.mid(from, 4);
                std::reverse(field.begin(), field.end());
                return bigEndian(field, 0, field.size());
            };
            constexpr unsigned hasHeader = 31;
            tag = little(12) + ((little(20) >> hasHeader & 1U) != 0 ? apeSize : 0);
        }
        if (tag == 0 || tag > end) {
            return end;
        }
        end -= tag;
    }
    return end;
}

/// The last frame that reaches from its header to the end with a sum that is right.
std::optional<Frame> lastFrame(const Places& file, const Beginning& beginning, bool countsSamples) {
    // No frame is longer: 65,535 samples of eight channels in 33 bits, and what goes with them.
    constexpr std::uint64_t longestFrame = std::uint64_t(4) * 1024 * 1024;
    constexpr std::uint64_t piece = std::uint64_t(64) * 1024;
    const std::uint64_t end = framesEnd(file);
    const std::uint64_t least = std::max(beginning.firstFrame, end - std::min(end, longestFrame));
    std::uint16_t sum = 0;
    for (std::uint64_t to = end; to > least;) {
        const std::uint64_t from = to - std::min(to - least, piece);
        const Bytes bytes = file.at(from, to - from);
        for (qsizetype i = bytes.size() - 1; i >= 0; --i) {
            sum = sumBefore(sum, byteAt(bytes, i));
            if (sum == 0 && byteAt(bytes, i) == 0xff) {
                const std::uint64_t at = from + static_cast<std::uint64_t>(i);
                const auto frame =
                    frameIn(file.at(at, std::min<std::uint64_t>(longestHeader, end - at)));
                if (frame && frame->countsSamples == countsSamples) {
                    return frame;
                }
            }
        }
        to = static_cast<std::uint64_t>(bytes.size()) == to - from ? from : least;
    }
    return std::nullopt;
}

} // namespace

QString FlacCount::difference() const {
    return QCoreApplication::translate("FlacCount",
                                       "its beginning tells of %L1 samples, and it has %L2")
        .arg(told)
        .arg(held);
}

std::optional<FlacCount> flacCount(const QString& path) {
    const auto opened = RegularFile::open(path);
    if (!opened) {
        return std::nullopt;
    }
    const Places file(*opened);
    const auto beginning = beginningOf(file);
    if (!beginning) {
        return std::nullopt;
    }
    const auto first = frameIn(file.at(beginning->firstFrame, longestHeader));
    if (!first) {
        return beginning->firstFrame >= framesEnd(file)
                   ? std::optional(FlacCount{beginning->total, 0})
                   : std::nullopt;
    }
    const auto last = lastFrame(file, *beginning, first->countsSamples);
    if (!last || last->number < first->number) {
        return std::nullopt;
    }
    // Of frames that are counted all but the last are as long as the first.
    const std::uint64_t unit = first->countsSamples ? 1 : first->blockSize;
    return FlacCount{beginning->total, (last->number - first->number) * unit + last->blockSize};
}

} // namespace quav
