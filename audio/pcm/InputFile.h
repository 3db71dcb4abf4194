#pragma once

#include "audio/pcm/UniqueFd.h"

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quav::pcm {

/// A file, a pipe or standard input, read through a buffer from front to back. A regular file can
/// also be read at any place. Every operation throws Failure with Kind::Read when the system fails.
class InputFile {
public:
    /// Opens a file; "-" is standard input, whatever that is. Anything else that is no regular file
    /// is refused, and pipes and devices are not touched: that could block, or have effects.
    static InputFile open(const std::string& path);

    /// Takes an open descriptor; `name` is how messages call it.
    InputFile(UniqueFd fd, std::string name);

    /// How messages call it: the path as it was given, or "standard input".
    const std::string& name() const { return name_; }

    /// Length in bytes; nothing for a pipe or a device.
    std::optional<std::uint64_t> size() const { return size_; }

    /// Place of the next byte that read() gives, counted from where reading began.
    std::uint64_t position() const { return position_; }

    /// Reads until `to` is full or the input ends; returns the number of bytes.
    std::size_t read(std::span<std::uint8_t> to);

    /// Shows up to `count` of the next bytes without taking them; fewer only at the end of the
    /// input. At most 64 KiB; valid until the next read.
    std::span<const std::uint8_t> peek(std::size_t count);

    /// Reads on until `count` bytes are left behind; fewer only at the end. Returns their number.
    std::uint64_t skip(std::uint64_t count);

    /// Reads at a place of a regular file, from any thread, without moving position().
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> to) const;

    /// Goes to a place of a regular file, counted from its start.
    void seek(std::uint64_t offset);

    /// An input of unknown length, from its present position on, as a regular file: itself when it
    /// is one, else an unnamed temporary copy beside `outputPath` that goes when it is closed.
    InputFile spooled(const std::string& outputPath) &&;

private:
    std::size_t readSome(std::span<std::uint8_t> to);

    UniqueFd fd_;
    std::string name_;
    std::optional<std::uint64_t> size_;
    std::uint64_t position_ = 0;
    std::vector<std::uint8_t> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

/// What something is that is no regular file: "a named pipe", "a device".
const char* kindOfFile(mode_t mode);

} // namespace quav::pcm
