#include "platform/RegularFile.h"

#include <QFile>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quav {

RegularFile::RegularFile(FileDescriptor descriptor, std::uint64_t size)
    : descriptor_(std::move(descriptor)), size_(size) {}

tl::expected<RegularFile, int> RegularFile::open(const QString& path) {
    FileDescriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) {
        return tl::make_unexpected(errno);
    }
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0) {
        return tl::make_unexpected(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::make_unexpected(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    }
    ::posix_fadvise(descriptor.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return RegularFile(std::move(descriptor), static_cast<std::uint64_t>(status.st_size));
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

} // namespace quav
