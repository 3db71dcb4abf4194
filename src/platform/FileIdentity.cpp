#include "platform/FileIdentity.h"

#include <QFile>

#include <sys/stat.h>

#include <array>
#include <fcntl.h>

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

bool copyModificationTime(const QString& from, const QString& to) {
    const auto status = look(from);
    if (!status) {
        return false;
    }
    const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, status->st_mtim};
    return ::utimensat(AT_FDCWD, QFile::encodeName(to).constData(), times.data(), 0) == 0;
}

} // namespace quav
