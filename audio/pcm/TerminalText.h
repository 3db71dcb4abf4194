#pragma once

#include <string>

namespace quav::pcm {

/// Names and words that others have chosen as they may be printed to this descriptor: where it is a
/// terminal, control characters, which it would obey, become escapes such as \n and \x1b; all
/// others get every byte as it is. `keepsLines` leaves the ends of lines alone.
std::string printable(const std::string& words, int fd, bool keepsLines = false);

/// The same for any terminal, without a look.
std::string escaped(const std::string& words, bool keepsLines = false);

} // namespace quav::pcm
