#include "audio/pcm/Samples.h"

#include <cstddef>

namespace quav::pcm {

namespace {

// Width and byte order are known when the loops are compiled, so that they become vector code.
template <unsigned Width, bool BigEndian>
void unpack(const std::uint8_t* bytes, std::span<std::int32_t> samples, std::uint32_t flip) {
    for (std::int32_t& sample : samples) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < Width; ++i) {
            const unsigned place = BigEndian ? Width - 1 - i : i;
            value |= std::uint32_t{bytes[i]} << (8 * place);
        }
        // To the top and down again: the sign fills the upper bits.
        constexpr unsigned rest = 32 - 8 * Width;
        sample = static_cast<std::int32_t>((value ^ flip) << rest) >> rest;
        bytes += Width;
    }
}

template <unsigned Width, bool BigEndian>
void pack(std::span<const std::int32_t> samples, std::uint8_t* bytes, std::uint32_t flip) {
    for (const std::int32_t sample : samples) {
        const std::uint32_t value = static_cast<std::uint32_t>(sample) ^ flip;
        for (unsigned i = 0; i < Width; ++i) {
            const unsigned place = BigEndian ? Width - 1 - i : i;
            bytes[i] = static_cast<std::uint8_t>(value >> (8 * place));
        }
        bytes += Width;
    }
}

// Calls `work.template operator()<width, bigEndian>()` for the format.
template <typename Work>
void forLayout(const PcmFormat& format, Work work) {
    switch (format.bytesPerSample) {
    case 1:
        return work.template operator()<1, false>();
    case 2:
        return format.bigEndian ? work.template operator()<2, true>()
                                : work.template operator()<2, false>();
    case 3:
        return format.bigEndian ? work.template operator()<3, true>()
                                : work.template operator()<3, false>();
    default:
        return format.bigEndian ? work.template operator()<4, true>()
                                : work.template operator()<4, false>();
    }
}

// Unsigned samples differ from signed ones in the top bit alone.
std::uint32_t topBit(const PcmFormat& format) {
    return format.isUnsigned ? std::uint32_t{1} << (format.containerBits() - 1) : 0;
}

} // namespace

void unpackSamples(const PcmFormat& format, std::span<const std::uint8_t> bytes,
                   std::span<std::int32_t> samples) {
    forLayout(format, [&]<unsigned Width, bool BigEndian>() {
        unpack<Width, BigEndian>(bytes.data(), samples.first(bytes.size() / Width), topBit(format));
    });
}

void packSamples(const PcmFormat& format, std::span<const std::int32_t> samples,
                 std::span<std::uint8_t> bytes) {
    forLayout(format, [&]<unsigned Width, bool BigEndian>() {
        pack<Width, BigEndian>(samples.first(bytes.size() / Width), bytes.data(), topBit(format));
    });
}

} // namespace quav::pcm
