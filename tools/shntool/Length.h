#pragma once

#include "shntool/Audio.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quav::shntool {

enum class TimeStyle {
    Minutes, ///< 61:40.00
    Hours    ///< 1:01:40.00
};

/// The time that so many bytes of a file's samples take: m:ss.ff with 75 frames to the second when
/// they are CD quality, else m:ss.nnn with thousandths; rounded to the nearest.
std::string lengthText(const Wave& wave, std::uint64_t bytes, TimeStyle style);

/// The same for a number of bytes of CD quality, or of seconds.
std::string framesText(std::uint64_t bytes, TimeStyle style);
std::string secondsText(double seconds, TimeStyle style);

/// A number of digits alone, of 48 bits at most.
std::optional<std::uint64_t> parseNumber(std::string_view text);

/// A place or length in a file's samples, as a user writes it.
struct Length {
    std::uint64_t bytes = 0;
    /// It was given in thousandths of a second and has been moved to a sector boundary, from here.
    std::uint64_t rounded = 0;
    bool wasRounded = false;
    /// The boundary next to it would have been zero; it has become the first one behind.
    bool wasZero = false;
};

/// Reads bytes, m:ss, m:ss.ff or m:ss.nnn. In CD quality thousandths go to the nearest sector
/// boundary, in any other sound every time goes to the nearest block. Bytes stay as they are.
/// Throws Failure with Kind::Input.
Length parseLength(const std::string& text, const Wave& wave);

} // namespace quav::shntool
