#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/TemporaryFile.h"
#include "audio/pcm/UniqueFd.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <unistd.h>
#include <utility>

namespace quav::fuzz {

/// The fuzzer's bytes as a file.
inline pcm::InputFile inputOf(const std::uint8_t* data, std::size_t size) {
    pcm::UniqueFd fd(::memfd_create("fuzz", MFD_CLOEXEC));
    pcm::writeAll(fd.get(), {data, size}, "memory");
    ::lseek(fd.get(), 0, SEEK_SET);
    return {std::move(fd), "input"};
}

/// Takes so many bytes, then gives up: a few bytes may stand for gigabytes.
class BoundedSink final : public pcm::ByteSink {
public:
    explicit BoundedSink(std::size_t left) : left_(left) {}
    void write(std::span<const std::uint8_t> bytes) override {
        if (bytes.size() > left_) {
            throw pcm::Failure(pcm::Failure::Kind::Write, "this is enough");
        }
        left_ -= bytes.size();
    }

private:
    std::size_t left_;
};

} // namespace quav::fuzz
