#include "tags/TagFiles.h"

#include "platform/FileDescriptor.h"
#include "tags/TagError.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <sys/statvfs.h>
#include <taglib/audioproperties.h>

#include <cerrno>
#include <fcntl.h>

namespace quav {
namespace {

bool isDiskFull(const QString& path) {
    struct statvfs disk {};
    return ::statvfs(QFile::encodeName(path).constData(), &disk) == 0 && disk.f_bavail == 0;
}

} // namespace

TagResult openForWriting(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) {
        throw TagError::cannotOpenForTagging();
    }
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        return tl::make_unexpected(
            QCoreApplication::translate("TagLibTagsHelper",
                                        "The file cannot be opened for writing: %1.")
                .arg(qt_error_string(errno)));
    }
    return {};
}

tl::unexpected<QString> notSaved(const QString& path, const QString& reason) {
    return tl::make_unexpected(isDiskFull(path) ? qt_error_string(ENOSPC) + u'.' : reason);
}

bool holdsAudio(const TagLib::File& file) {
    const auto* properties = file.isValid() ? file.audioProperties() : nullptr;
    return properties && properties->sampleRate() > 0;
}

} // namespace quav
