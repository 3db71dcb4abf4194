#include "audio/tta/Stream.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"

#include <algorithm>
#include <string_view>
#include <zlib.h>

using quav::pcm::Failure;

namespace quav::tta {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::string_view magic = "TTA1";
constexpr std::uint32_t plainPcm = 1;
constexpr std::size_t tableEntrySize = 4;

std::uint32_t number(Bytes bytes, std::size_t offset, std::size_t width) {
    return static_cast<std::uint32_t>(pcm::littleEndian(bytes.subspan(offset, width)));
}

void putNumber(std::span<std::uint8_t> bytes, std::size_t offset, std::size_t width,
               std::uint32_t value) {
    pcm::storeLittleEndian(bytes.subspan(offset, width), value);
}

// Whether the checksum at the end is that of the bytes before.
bool checks(Bytes bytes) {
    const std::size_t end = bytes.size() - checksumSize;
    return checksum(bytes.first(end)) == number(bytes, end, checksumSize);
}

} // namespace

std::uint32_t checksum(Bytes bytes) {
    return static_cast<std::uint32_t>(::crc32_z(0, bytes.data(), bytes.size()));
}

void putChecksum(std::span<std::uint8_t> bytes) {
    const std::size_t end = bytes.size() - checksumSize;
    putNumber(bytes, end, checksumSize, checksum(bytes.first(end)));
}

std::uint32_t Header::frameLength() const {
    return static_cast<std::uint32_t>(std::uint64_t{sampleRate} * 256 / 245);
}

std::size_t Header::frames() const {
    return (std::size_t{blocks} + frameLength() - 1) / frameLength();
}

std::uint32_t Header::blocksOfFrame(std::size_t frame) const {
    const std::uint64_t first = std::uint64_t{frame} * frameLength();
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(frameLength(), blocks - first));
}

pcm::PcmFormat Header::wavFormat() const {
    return {.channels = channels,
            .bitsPerSample = bitsPerSample,
            .bytesPerSample = bitsPerSample / 8,
            .sampleRate = sampleRate,
            .isUnsigned = bitsPerSample == 8};
}

std::array<std::uint8_t, headerSize> Header::bytes() const {
    std::array<std::uint8_t, headerSize> bytes{};
    std::copy(magic.begin(), magic.end(), bytes.begin());
    putNumber(bytes, 4, 2, plainPcm);
    putNumber(bytes, 6, 2, channels);
    putNumber(bytes, 8, 2, bitsPerSample);
    putNumber(bytes, 10, 4, sampleRate);
    putNumber(bytes, 14, 4, blocks);
    putChecksum(bytes);
    return bytes;
}

std::vector<std::uint8_t> seekTable(std::span<const std::uint32_t> frameSizes) {
    std::vector<std::uint8_t> table(frameSizes.size() * tableEntrySize + checksumSize);
    for (std::size_t i = 0; i < frameSizes.size(); ++i) {
        putNumber(table, i * tableEntrySize, tableEntrySize, frameSizes[i]);
    }
    putChecksum(table);
    return table;
}

std::optional<std::uint64_t> findStream(const pcm::InputFile& input) {
    std::uint64_t offset = input.position();
    std::array<std::uint8_t, pcm::id3v2Header> start{};
    while (input.readAt(offset, start) == start.size() && pcm::id3v2Length(start) > 0) {
        offset += pcm::id3v2Length(start);
    }
    return pcm::startsWith(start, magic) ? std::optional(offset) : std::nullopt;
}

Stream::Stream(const pcm::InputFile& input) : input_(input), fileSize_(input.size().value_or(0)) {
    const std::optional<std::uint64_t> start = findStream(input);
    if (!start) {
        throw Failure(Failure::Kind::Input, name() + ": is no TTA file");
    }
    readHeader(*start);
    readSeekTable(*start + headerSize);
}

void Stream::damaged(const std::string& what) const {
    throw Failure(Failure::Kind::Input, name() + ": is damaged: " + what);
}

void Stream::readHeader(std::uint64_t offset) {
    std::array<std::uint8_t, headerSize> bytes{};
    if (input_.readAt(offset, bytes) < bytes.size()) {
        damaged("it ends inside its header");
    }
    if (!checks(bytes)) {
        damaged("the checksum of its header is wrong");
    }
    header_ = {.channels = number(bytes, 6, 2),
               .bitsPerSample = number(bytes, 8, 2),
               .sampleRate = number(bytes, 10, 4),
               .blocks = number(bytes, 14, 4)};
    const unsigned bits = header_.bitsPerSample;
    if (number(bytes, 4, 2) != plainPcm) {
        throw Failure(Failure::Kind::Input, name() + ": is encrypted or of an unknown kind");
    }
    if (header_.channels < 1 || header_.channels > maximalChannels ||
        (bits != 8 && bits != 16 && bits != 24) || header_.sampleRate == 0 ||
        header_.sampleRate > maximalSampleRate) {
        throw Failure(Failure::Kind::Input, name() + ": " + std::to_string(header_.channels) +
                                                " channels of " + std::to_string(bits) +
                                                " bits at " + std::to_string(header_.sampleRate) +
                                                " Hz cannot be decoded");
    }
    if (header_.blocks == 0) {
        throw Failure(Failure::Kind::Input, name() + ": holds no samples");
    }
}

void Stream::readSeekTable(std::uint64_t offset) {
    const std::size_t frames = header_.frames();
    std::uint64_t start = offset + std::uint64_t{frames} * tableEntrySize + checksumSize;
    if (start > fileSize_) {
        damaged("it ends inside its seek table");
    }
    std::vector<std::uint8_t> table(static_cast<std::size_t>(start - offset));
    if (input_.readAt(offset, table) < table.size()) {
        damaged("it ends inside its seek table");
    }
    if (!checks(table)) {
        damaged("the checksum of its seek table is wrong");
    }
    frameStarts_.reserve(frames + 1);
    frameStarts_.push_back(start);
    for (std::size_t i = 0; i < frames; ++i) {
        start += number(table, i * tableEntrySize, tableEntrySize);
        frameStarts_.push_back(start);
    }
}

std::string Stream::readFrame(std::size_t frame, std::vector<std::uint8_t>& coded) const {
    const std::uint64_t start = frameStarts_[frame];
    const std::uint64_t end = frameStarts_[frame + 1];
    if (end > fileSize_) {
        return start < fileSize_ ? "is cut off" : "is missing";
    }
    // No sample takes less than a bit: whatever is allocated for a frame is in scale with the file.
    const std::uint64_t samples = std::uint64_t{header_.blocksOfFrame(frame)} * header_.channels;
    if (end - start < checksumSize || samples > (end - start - checksumSize) * 8) {
        return "is too short for its samples";
    }
    coded.resize(static_cast<std::size_t>(end - start));
    if (input_.readAt(start, coded) < coded.size()) {
        return "is cut off";
    }
    if (!checks(coded)) {
        return "has a wrong checksum";
    }
    return {};
}

} // namespace quav::tta
