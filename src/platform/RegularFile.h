#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <span>

namespace quav {

/// A file, most often read from its beginning to its end, and nothing but a file: opening a pipe or
/// a device under a file's name may wait for ever or never end. Errors are numbers of the system's
/// list (errno).
class RegularFile {
public:
    /// EISDIR for a folder, EINVAL for what is neither folder nor file.
    static tl::expected<RegularFile, int> open(const QString& path);

    /// The first bytes of a file, at most so many.
    static tl::expected<QByteArray, int> beginningOf(const QString& path, std::uint64_t most);

    /// Fills the buffer as far as the file goes; less than that is the end of the file.
    tl::expected<std::size_t, int> read(std::span<std::uint8_t> buffer);

    /// The next bytes, at most so many and none that came after the file was opened.
    tl::expected<QByteArray, int> read(std::uint64_t most);

    /// The bytes from that place on, at most so many; where `read` goes on stays as it is.
    tl::expected<QByteArray, int> readAt(std::uint64_t from, std::uint64_t most) const;

    /// Tells the system which bytes are going to be read, so that it reads them from the disk in
    /// one go; does nothing when they seem to be in memory already.
    void announce(std::uint64_t from, std::uint64_t count) const;

    /// A path that leads to this very file, whatever has taken its place since; valid as long as
    /// the object lives.
    QByteArray path() const;

    /// The size that the file had when it was opened, in bytes.
    std::uint64_t size() const { return size_; }

private:
    RegularFile(FileDescriptor descriptor, std::uint64_t size);

    bool isInMemory(std::uint64_t at) const;

    FileDescriptor descriptor_;
    std::uint64_t size_;
};

} // namespace quav
