#include "audio/flac/StreamInfo.h"

#include "audio/pcm/Bytes.h"

#include <algorithm>
#include <array>
#include <span>

namespace quav::flac {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t blockHeader = 4;
constexpr std::size_t infoSize = 34;
constexpr std::uint8_t isLastBlock = 0x80;

StreamInfo parse(Bytes info) {
    const std::uint64_t packed = pcm::bigEndian(info.subspan(10, 8));
    StreamInfo parsed{
        .minimalBlock = static_cast<unsigned>(pcm::bigEndian(info.first(2))),
        .maximalBlock = static_cast<unsigned>(pcm::bigEndian(info.subspan(2, 2))),
        .sampleRate = static_cast<std::uint32_t>(packed >> 44),
        .channels = static_cast<unsigned>(packed >> 41 & 7U) + 1,
        .bits = static_cast<unsigned>(packed >> 36 & 31U) + 1,
        .total = packed & 0xFFFFFFFFF,
    };
    std::copy_n(info.subspan(18).begin(), parsed.digest.size(), parsed.digest.begin());
    return parsed;
}

} // namespace

std::optional<StreamInfo> readStreamInfo(const pcm::InputFile& input) {
    std::array<std::uint8_t, 4 + blockHeader + infoSize> bytes{};
    const auto read = [&](std::uint64_t at, std::size_t count) {
        const auto to = std::span(bytes).first(count);
        return Bytes(to).first(input.readAt(at, to));
    };
    std::uint64_t at = 0;
    while (const std::uint64_t tag = pcm::id3v2Length(read(at, pcm::id3v2Header))) {
        at += tag;
    }
    const Bytes start = read(at, bytes.size());
    if (start.size() < bytes.size() || !pcm::startsWith(start, "fLaC") ||
        (start[4] & ~isLastBlock) != 0 || pcm::bigEndian(start.subspan(5, 3)) != infoSize) {
        return {};
    }
    StreamInfo info = parse(start.subspan(4 + blockHeader));
    bool isLast = false;
    for (at += 4; !isLast;) {
        const Bytes head = read(at, blockHeader);
        if (head.size() < blockHeader || head[0] == 0xFF) {
            break; // cut short in its metadata, or damaged there
        }
        isLast = (head[0] & isLastBlock) != 0;
        at += blockHeader + pcm::bigEndian(head.subspan(1, 3));
    }
    info.audioAt = std::min(at, input.size().value_or(0));
    return info;
}

} // namespace quav::flac
