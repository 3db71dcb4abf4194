#pragma once

#include "audio/pcm/PcmFormat.h"

#include <cstdint>
#include <span>

namespace quav::pcm {

/// Turns the bytes of whole blocks into signed numbers of the container's width, in the same order
/// (unsigned 8-bit samples lose 128). `samples` holds one element a sample.
void unpackSamples(const PcmFormat& format, std::span<const std::uint8_t> bytes,
                   std::span<std::int32_t> samples);

/// The inverse; keeps the low bytes of numbers that are too large.
void packSamples(const PcmFormat& format, std::span<const std::int32_t> samples,
                 std::span<std::uint8_t> bytes);

} // namespace quav::pcm
