#include "platform/SpillFile.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <utility>

namespace quav {

namespace {

constexpr int ownerOnly = 0600;

FileDescriptor unnamedFileIn(const QByteArray& folder) {
    FileDescriptor file(
        open(folder.constData(), O_TMPFILE | O_EXCL | O_RDWR | O_CLOEXEC, ownerOnly));
    if (!file) {
        // Not every file system knows files without names.
        QByteArray path = folder + "/quav-XXXXXX";
        file = FileDescriptor(mkostemp(path.data(), O_CLOEXEC));
        if (file) {
            unlink(path.constData());
        }
    }
    return file;
}

FileDescriptor unnamedFile() {
    // The folder for what is large comes first: the other one may itself lie in memory.
    const bool chosen = qEnvironmentVariableIsSet("TMPDIR");
    for (const QByteArray& folder :
         {chosen ? QByteArray() : QByteArray("/var/tmp"), QFile::encodeName(QDir::tempPath())}) {
        FileDescriptor file = folder.isEmpty() ? FileDescriptor() : unnamedFileIn(folder);
        if (file) {
            return file;
        }
    }
    return {};
}

template <typename Transfer>
qsizetype transferAll(qsizetype size, const Transfer& transfer) {
    qsizetype done = 0;
    while (done < size) {
        const ssize_t some = transfer(done, static_cast<size_t>(size - done));
        if (some == 0 || (some < 0 && errno != EINTR)) {
            break;
        }
        done += std::max<ssize_t>(0, some);
    }
    return done;
}

} // namespace

SpillFile::Part::Part(std::shared_ptr<SpillFile> file, std::int64_t offset, qsizetype size)
    : file_(std::move(file)), offset_(offset), size_(size) {}

SpillFile::Part::~Part() {
    file_->release(offset_, size_);
}

QByteArray SpillFile::Part::read() const {
    QByteArray bytes(size_, Qt::Uninitialized);
    bytes.truncate(transferAll(size_, [&](qsizetype done, size_t most) {
        return pread(file_->descriptor_.get(), bytes.data() + done, most, offset_ + done);
    }));
    return bytes;
}

std::shared_ptr<const SpillFile::Part> SpillFile::write(const QByteArray& bytes) {
    const std::lock_guard lock(mutex_);
    if (!descriptor_) {
        descriptor_ = unnamedFile();
    }
    const qsizetype written = transferAll(bytes.size(), [&](qsizetype done, size_t most) {
        return pwrite(descriptor_.get(), bytes.constData() + done, most, end_ + done);
    });
    if (written < bytes.size()) {
        return nullptr;
    }
    auto part = std::make_shared<const Part>(shared_from_this(), end_, bytes.size());
    end_ += bytes.size();
    used_ += bytes.size();
    return part;
}

void SpillFile::release(std::int64_t offset, qsizetype size) {
    const std::lock_guard lock(mutex_);
    used_ -= size;
    if (used_ > 0) {
        fallocate(descriptor_.get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, offset, size);
    } else if (ftruncate(descriptor_.get(), 0) == 0) {
        end_ = 0;
    }
}

} // namespace quav
