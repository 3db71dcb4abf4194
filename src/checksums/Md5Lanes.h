#pragma once

#include "checksums/Md5Streams.h"

#include <span>

namespace quav::md5lanes {

struct NamedKernel {
    const char* name;
    Kernel kernel;
};

/// The kernels that this machine can run, the fastest first; never empty.
std::span<const NamedKernel> kernels();

} // namespace quav::md5lanes
