#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace quav::pcm {

/// A number of up to 8 bytes, the lowest first.
inline std::uint64_t littleEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (; !bytes.empty(); bytes = bytes.first(bytes.size() - 1)) {
        value = value << 8 | bytes.back();
    }
    return value;
}

/// Fills bytes with a number, the lowest first; keeps as much of it as there is room for.
inline void storeLittleEndian(std::span<std::uint8_t> to, std::uint64_t value) {
    for (std::uint8_t& byte : to) {
        byte = static_cast<std::uint8_t>(value);
        value >>= 8;
    }
}

/// littleEndian() for eight bytes, in one step.
inline std::uint64_t littleEndian64(const std::uint8_t* bytes) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return std::endian::native == std::endian::little ? value : __builtin_bswap64(value);
}

/// bigEndian() for eight bytes, in one step.
inline std::uint64_t bigEndian64(const std::uint8_t* bytes) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return std::endian::native == std::endian::big ? value : __builtin_bswap64(value);
}

/// Writes eight bytes, the highest first.
inline void storeBigEndian64(std::uint8_t* to, std::uint64_t value) {
    value = std::endian::native == std::endian::big ? value : __builtin_bswap64(value);
    std::memcpy(to, &value, sizeof value);
}

/// A number of up to 8 bytes, the highest first.
inline std::uint64_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes) {
        value = value << 8 | byte;
    }
    return value;
}

inline bool startsWith(std::span<const std::uint8_t> bytes, std::string_view magic) {
    return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

/// Bytes of an ID3v2 tag's header.
constexpr std::size_t id3v2Header = 10;

/// The whole length in bytes of the ID3v2 tag that begins with these bytes (ID3v2.4, section 3); 0
/// when none does.
inline std::uint64_t id3v2Length(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < id3v2Header || !startsWith(bytes, "ID3")) {
        return 0;
    }
    std::uint64_t content = 0;
    for (const std::uint8_t byte : bytes.subspan(6, 4)) {
        content = content << 7 | (byte & 0x7FU);
    }
    constexpr std::uint8_t hasFooter = 0x10;
    return content + id3v2Header * ((bytes[5] & hasFooter) != 0 ? 2 : 1);
}

} // namespace quav::pcm
