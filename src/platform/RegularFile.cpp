#include "platform/RegularFile.h"

#include "audio/pcm/RegularFile.h"

#include <QFile>

#include <sys/stat.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quav {

RegularFile::RegularFile(FileDescriptor descriptor, std::uint64_t size)
    : descriptor_(std::move(descriptor)), size_(size) {}

tl::expected<RegularFile, int> RegularFile::open(const QString& path) {
    pcm::OpenedFile opened = pcm::openRegular(QFile::encodeName(path).toStdString());
    struct stat status {};
    if (!opened.fd || ::fstat(opened.fd.get(), &status) != 0) {
        return tl::make_unexpected(opened.error != 0 ? opened.error : errno);
    }
    ::posix_fadvise(opened.fd.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return RegularFile(std::move(opened.fd), static_cast<std::uint64_t>(status.st_size));
}

tl::expected<QByteArray, int> RegularFile::beginningOf(const QString& path, std::uint64_t most) {
    return open(path).and_then([most](RegularFile&& file) { return file.read(most); });
}

QByteArray RegularFile::path() const {
    return "/proc/self/fd/" + QByteArray::number(descriptor_.get());
}

void RegularFile::announce(std::uint64_t from, std::uint64_t count) const {
    if (from >= size_ || isInMemory(from + std::min(count, size_ - from) / 2)) {
        return;
    }
    // More than this at once may be cut short without a word.
    constexpr std::uint64_t atOnce = std::uint64_t(128) * 1024;
    for (std::uint64_t at = from; at < from + count && at < size_; at += atOnce) {
        ::posix_fadvise(descriptor_.get(), static_cast<off_t>(at), static_cast<off_t>(atOnce),
                        POSIX_FADV_WILLNEED);
    }
}

/// Whether a byte could be read without waiting for the disk.
bool RegularFile::isInMemory(std::uint64_t at) const {
    std::uint8_t byte = 0;
    const iovec place{&byte, sizeof byte};
    return ::preadv2(descriptor_.get(), &place, 1, static_cast<off_t>(at), RWF_NOWAIT) >= 0 ||
           errno != EAGAIN;
}

tl::expected<std::size_t, int> RegularFile::read(std::span<std::uint8_t> buffer) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count =
            ::read(descriptor_.get(), buffer.data() + filled, buffer.size() - filled);
        if (count < 0 && errno != EINTR) {
            return tl::make_unexpected(errno);
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(std::max<ssize_t>(0, count));
    }
    return filled;
}

tl::expected<QByteArray, int> RegularFile::read(std::uint64_t most) {
    QByteArray bytes(static_cast<qsizetype>(std::min(most, size_)), Qt::Uninitialized);
    const auto count = read(
        {reinterpret_cast<std::uint8_t*>(bytes.data()), static_cast<std::size_t>(bytes.size())});
    if (!count) {
        return tl::make_unexpected(count.error());
    }
    bytes.truncate(static_cast<qsizetype>(*count));
    return bytes;
}

tl::expected<QByteArray, int> RegularFile::readAt(std::uint64_t from, std::uint64_t most) const {
    const std::uint64_t there = from < size_ ? size_ - from : 0;
    QByteArray bytes(static_cast<qsizetype>(std::min(most, there)), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::pread(descriptor_.get(), bytes.data() + filled,
                                      static_cast<std::size_t>(bytes.size() - filled),
                                      static_cast<off_t>(from) + filled);
        if (count < 0 && errno != EINTR) {
            return tl::make_unexpected(errno);
        }
        if (count == 0) {
            break;
        }
        filled += std::max<ssize_t>(0, count);
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace quav
