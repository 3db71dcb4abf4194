#pragma once

#include "audio/pcm/UniqueFd.h"

#include <sys/types.h>

#include <string>

namespace quav::pcm {

/// A regular file that has been opened for reading, or why it has not.
struct OpenedFile {
    UniqueFd fd;
    int error = 0;   ///< of the system; EISDIR for a folder, EINVAL for all other kinds
    mode_t kind = 0; ///< what stands there, as stat() tells it, when it is no regular file
};

/// Looks at what the path stands for before it is opened, and opens just that: whoever waits at the
/// other end of a pipe notices nothing.
OpenedFile openRegular(const std::string& path);

} // namespace quav::pcm
