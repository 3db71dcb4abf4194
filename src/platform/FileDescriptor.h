#pragma once

#include "audio/pcm/UniqueFd.h"

namespace quav {

/// Owns a file descriptor of the system, or none.
using FileDescriptor = pcm::UniqueFd;

} // namespace quav
