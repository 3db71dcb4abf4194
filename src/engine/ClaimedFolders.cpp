#include "engine/ClaimedFolders.h"

#include "engine/OutputClaim.h"
#include "platform/PathNames.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/file.h>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quav {

namespace {

const QString suffix = QStringLiteral(".running");

/// So long the program comes back to folders that cannot be reached: a disk that is away.
constexpr qint64 daysToWait = 30;

FileDescriptor openFile(const QString& path, int how) {
    constexpr mode_t mode = 0600;
    return FileDescriptor(::open(QFile::encodeName(path).constData(), how | O_CLOEXEC, mode));
}

bool lock(const FileDescriptor& file) {
    return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

QStringList foldersIn(const QString& path) {
    QFile file(path);
    QStringList folders;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& folder : file.readAll().split('\0')) {
            if (!folder.isEmpty()) {
                folders << QFile::decodeName(folder);
            }
        }
    }
    return folders;
}

} // namespace

ClaimedFolders::ClaimedFolders(QString stateFolder) : stateFolder_(std::move(stateFolder)) {}

ClaimedFolders::~ClaimedFolders() {
    if (file_) {
        QFile::remove(path_);
    }
}

QString ClaimedFolders::userFolder() {
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    return joinPath(QDir::isAbsolutePath(state)
                        ? state
                        : joinPath(QDir::homePath(), QStringLiteral(".local/state")),
                    QStringLiteral("quav"));
}

bool ClaimedFolders::begin() {
    if (!file_) {
        QDir().mkpath(stateFolder_);
        path_ = joinPath(stateFolder_, QStringLiteral("%1-%2%3")
                                           .arg(::getpid())
                                           .arg(QDateTime::currentMSecsSinceEpoch())
                                           .arg(suffix));
        file_ = openFile(path_, O_WRONLY | O_CREAT | O_EXCL | O_APPEND);
        if (file_) {
            lock(file_);
        }
    }
    return static_cast<bool>(file_);
}

void ClaimedFolders::note(const QString& folder) {
    const std::lock_guard guard(mutex_);
    if (noted_.contains(folder)) {
        return;
    }
    noted_.insert(folder);
    if (begin()) {
        const QByteArray name = QFile::encodeName(folder) + '\0';
        [[maybe_unused]] const ssize_t written =
            ::write(file_.get(), name.constData(), static_cast<size_t>(name.size()));
    }
}

QStringList ClaimedFolders::recover() const {
    QStringList sentences;
    const QFileInfoList files =
        QDir(stateFolder_).entryInfoList({u'*' + suffix}, QDir::Files, QDir::Name);
    for (const QFileInfo& info : files) {
        const FileDescriptor file = openFile(info.filePath(), O_RDONLY);
        if (!file || !lock(file)) {
            continue; // its process lives
        }
        const QStringList folders = foldersIn(info.filePath());
        for (const QString& folder : folders) {
            sentences << OutputClaim::recover(folder);
        }
        const bool isOld = info.lastModified().daysTo(QDateTime::currentDateTime()) > daysToWait;
        if (isOld || std::all_of(folders.begin(), folders.end(), isFolder)) {
            QFile::remove(info.filePath());
        }
    }
    return sentences;
}

} // namespace quav
