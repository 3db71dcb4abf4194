#include "platform/OwnerAccess.h"

#include <QByteArray>
#include <QFile>

#include <sys/stat.h>

#include <fcntl.h>
#include <utility>

namespace quav {

namespace {

constexpr mode_t readAndWrite = S_IRUSR | S_IWUSR;
constexpr mode_t permissions = 07777;

} // namespace

OwnerAccess::OwnerAccess(const QString& path) {
    // Opened for nothing but this, which even a file takes that may not be read.
    FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        (status.st_mode & readAndWrite) == readAndWrite) {
        return;
    }
    mode_ = status.st_mode & permissions;
    file_ = std::move(file);
    if (!change(mode_ | readAndWrite)) {
        file_.reset();
    }
}

OwnerAccess::~OwnerAccess() {
    if (file_) {
        change(mode_);
    }
}

/// By the open file, so that it is this very one whatever stands at the path now.
bool OwnerAccess::change(mode_t mode) const {
    const QByteArray file = "/proc/self/fd/" + QByteArray::number(file_.get());
    return ::chmod(file.constData(), mode) == 0;
}

} // namespace quav
