#include "cli/OutputFolder.h"

#include "platform/PathNames.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace quav {

namespace {

tl::unexpected<QString> cannotBeMade(const QString& path, const QString& reason) {
    return tl::make_unexpected(
        OutputFolder::tr("The output folder “%1” cannot be made: %2").arg(path, reason));
}

} // namespace

OutputFolder::OutputFolder(QString path, bool missing)
    : path_(std::move(path)), missing_(missing) {}

tl::expected<OutputFolder, QString> OutputFolder::at(const QString& path) {
    if (path.isEmpty()) {
        return tl::make_unexpected(tr("The output folder has no name."));
    }
    const QString full = fullPath(path);
    const QFileInfo info(full);
    if (info.isDir()) {
        return OutputFolder(full, false);
    }
    if (info.exists() || info.isSymLink()) {
        return tl::make_unexpected(tr("The output folder “%1” is not a folder.").arg(full));
    }
    const QFileInfo parent(folderOf(full));
    if (!parent.isDir()) {
        return cannotBeMade(full, tr("the folder “%1” does not exist.").arg(parent.filePath()));
    }
    if (!parent.isWritable()) {
        return cannotBeMade(full,
                            tr("the folder “%1” cannot be written to.").arg(parent.filePath()));
    }
    return OutputFolder(full, true);
}

tl::expected<void, QString> OutputFolder::create() {
    if (!missing_) {
        return {};
    }
    constexpr mode_t everybodyWithinUmask = 0777;
    if (mkdir(QFile::encodeName(path_).constData(), everybodyWithinUmask) != 0) {
        return cannotBeMade(path_, QString::fromLocal8Bit(std::strerror(errno)) + u'.');
    }
    missing_ = false;
    created_ = true;
    return {};
}

void OutputFolder::discard() {
    if (std::exchange(created_, false)) {
        QDir().rmdir(path_);
        missing_ = true;
    }
}

} // namespace quav
