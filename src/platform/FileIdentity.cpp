#include "platform/FileIdentity.h"

#include "platform/FileDescriptor.h"
#include "platform/PathNames.h"

#include <QFile>

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace quav {

namespace {

std::optional<struct stat> look(const QString& path) {
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

} // namespace

std::optional<FileIdentity> FileIdentity::of(const QString& path) {
    const auto status = look(path);
    if (!status) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileIdentity{status->st_dev, status->st_ino, status->st_size,
                        status->st_ctim.tv_sec * nanoseconds + status->st_ctim.tv_nsec};
}

bool isTaken(const QString& path) {
    struct stat status {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

bool isDanglingLink(const QString& path) {
    return isTaken(path) && !look(path);
}

tl::expected<void, int> reachDisk(const QString& path) {
    for (const QString& part : {path, folderOf(path)}) {
        const FileDescriptor file(
            ::open(QFile::encodeName(part).constData(), O_RDONLY | O_CLOEXEC));
        // Some file systems do not know this of folders.
        if (!file || (::fsync(file.get()) != 0 && errno != EINVAL)) {
            return tl::make_unexpected(errno);
        }
    }
    return {};
}

bool copyModificationTime(const QString& from, const QString& to) {
    const auto status = look(from);
    if (!status) {
        return false;
    }
    const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, status->st_mtim};
    return ::utimensat(AT_FDCWD, QFile::encodeName(to).constData(), times.data(), 0) == 0;
}

} // namespace quav
