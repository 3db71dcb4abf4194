#pragma once

#include "audio/pcm/PcmFormat.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// The Shorten stream of versions 1 to 3, as the program of that name has written it since 1993 and
/// FFmpeg reads it: after "ajkg" and the version byte, codes of varying length, the first bit the
/// highest of a byte. A code with k low bits is the number without them as so many zero bits, a one
/// bit, and the low bits; signed numbers are folded, 0 -1 1 -2 to 0 1 2 3, and have one low bit
/// more than their k.
namespace quav::shorten {

/// What the stream goes on with.
enum class Function : std::uint32_t {
    Difference0,
    Difference1,
    Difference2,
    Difference3,
    Quit,
    BlockSize,
    BitShift,
    Predictor,
    Zero,
    Verbatim
};

/// The low bits of the codes.
namespace bits {
constexpr unsigned longSize =
    2; ///< how many significant bits a long has; that many low bits follow
constexpr unsigned skipped = 7;
constexpr unsigned function = 2;
constexpr unsigned rice = 3; ///< the k of a block's samples
constexpr unsigned order = 2;
constexpr unsigned shift = 2;
constexpr unsigned coefficient = 6;
constexpr unsigned verbatimSize = 5;
constexpr unsigned verbatimByte = 8;
} // namespace bits

constexpr std::size_t differenceHistory = 3; ///< the samples that Difference3 looks back
constexpr unsigned maximalChannels = 8;

/// How the stream calls a kind of samples, and what every channel's mean starts from.
struct SampleType {
    std::uint32_t number = 0;
    unsigned bytesPerSample = 0;
    bool isUnsigned = false;
    bool bigEndian = false;

    std::int32_t middle() const { return isUnsigned ? 1 << (8 * bytesPerSample - 1) : 0; }
};

/// Nothing for the logarithmic kinds, and for what is none.
std::optional<SampleType> sampleTypeOf(std::uint32_t number);

/// Nothing for what Shorten cannot hold.
std::optional<SampleType> sampleTypeOf(const pcm::PcmFormat& format);

} // namespace quav::shorten
