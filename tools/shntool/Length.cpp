#include "shntool/Length.h"

#include "audio/pcm/Failure.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

namespace quav::shntool {

using pcm::Failure;

namespace {

std::string clock(std::uint64_t units, std::uint64_t unitsPerSecond, int digits, TimeStyle style) {
    const unsigned long long part = units % unitsPerSecond;
    const unsigned long long seconds = units / unitsPerSecond;
    std::array<char, 80> text{};
    if (style == TimeStyle::Hours && seconds >= 3600) {
        std::snprintf(text.data(), text.size(), "%llu:%02llu:%02llu.%0*llu", seconds / 3600,
                      seconds / 60 % 60, seconds % 60, digits, part);
    } else {
        std::snprintf(text.data(), text.size(), "%llu:%02llu.%0*llu", seconds / 60, seconds % 60,
                      digits, part);
    }
    return text.data();
}

struct Time {
    std::uint64_t minutes = 0;
    std::uint64_t seconds = 0;
    std::uint64_t part = 0;
    std::uint64_t partsPerSecond = 1;

    std::uint64_t parts() const { return (minutes * 60 + seconds) * partsPerSecond + part; }
};

std::optional<Time> parseTime(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = text.substr(colon + 1);
    const std::size_t point = rest.find('.');
    const std::string_view part = point == std::string_view::npos ? "" : rest.substr(point + 1);
    const auto minutes = parseNumber(text.substr(0, colon));
    const auto seconds = parseNumber(rest.substr(0, point));
    const bool hasPart = point != std::string_view::npos;
    const auto parts = hasPart ? parseNumber(part) : std::uint64_t{0};
    const bool isWellFormed =
        rest.substr(0, point).size() == 2 && (!hasPart || part.size() == 2 || part.size() == 3);
    if (!minutes || !seconds || !parts || !isWellFormed || *minutes > 100'000'000) {
        return {};
    }
    const std::uint64_t unit = !hasPart ? 1 : part.size() == 2 ? sectorsPerSecond : 1000;
    return Time{*minutes, *seconds, *parts, unit};
}

Length toNearestSector(std::uint64_t bytes) {
    Length length{.rounded = bytes, .wasRounded = bytes % sectorSize != 0};
    length.bytes = (bytes + sectorSize / 2) / sectorSize * sectorSize;
    if (length.wasRounded && length.bytes == 0) {
        length.bytes = sectorSize;
        length.wasZero = true;
    }
    return length;
}

} // namespace

std::optional<std::uint64_t> parseNumber(std::string_view text) {
    std::uint64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    // More than any file has would only overflow on the way.
    const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size() &&
                          value < std::uint64_t{1} << 48;
    return isNumber ? std::optional(value) : std::nullopt;
}

std::string framesText(std::uint64_t bytes, TimeStyle style) {
    return clock((bytes + sectorSize / 2) / sectorSize, sectorsPerSecond, 2, style);
}

std::string secondsText(double seconds, TimeStyle style) {
    return clock(static_cast<std::uint64_t>(std::llrint(seconds * 1000)), 1000, 3, style);
}

std::string lengthText(const Wave& wave, std::uint64_t bytes, TimeStyle style) {
    return wave.isCdQuality() ? framesText(bytes, style) : secondsText(wave.seconds(bytes), style);
}

Length parseLength(const std::string& text, const Wave& wave) {
    if (const auto bytes = parseNumber(text)) {
        return {.bytes = *bytes};
    }
    const std::optional<Time> time = parseTime(text);
    if (!time) {
        throw Failure(Failure::Kind::Input,
                      "value not in bytes, m:ss, m:ss.ff, or m:ss.nnn format: [" + text + "]");
    }
    if (time->seconds > 59) {
        throw Failure(Failure::Kind::Input,
                      "invalid value for seconds: [" + std::to_string(time->seconds) + "]");
    }
    if (time->partsPerSecond == sectorsPerSecond && time->part >= sectorsPerSecond) {
        throw Failure(Failure::Kind::Input,
                      "invalid value for frames: [" + std::to_string(time->part) + "]");
    }
    const std::uint64_t align = wave.format().blockAlign();
    // In blocks, so that no time is between two of them; 48 bits of minutes leave room for it.
    const long double blocks = static_cast<long double>(time->parts()) * wave.rate /
                               static_cast<long double>(time->partsPerSecond);
    if (!wave.isCdQuality()) {
        return {.bytes = static_cast<std::uint64_t>(std::llroundl(blocks)) * align};
    }
    // Bytes here: the nearest boundary is looked for from the exact place.
    return toNearestSector(
        static_cast<std::uint64_t>(std::llroundl(blocks * static_cast<long double>(align))));
}

} // namespace quav::shntool
