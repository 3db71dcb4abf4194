#pragma once

#include <cstdint>
#include <span>

namespace quav::pcm {

/// Takes bytes in order.
class ByteSink {
public:
    ByteSink() = default;
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;
    virtual ~ByteSink() = default;

    virtual void write(std::span<const std::uint8_t> bytes) = 0;
};

} // namespace quav::pcm
