#include "platform/PathNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace quav {

namespace {

qsizetype extensionDot(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && dot < name.size() - 1 ? dot : -1;
}

} // namespace

QString lastPathComponent(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString folderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0) {
        return QStringLiteral(".");
    }
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

QString pathExtension(const QString& path) {
    const QString name = lastPathComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? QString() : name.mid(dot + 1);
}

QString formatWord(const QString& path) {
    return pathExtension(path).toUpper();
}

QString baseName(const QString& path) {
    const QString name = lastPathComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? name : name.left(dot);
}

QString joinPath(const QString& folder, const QString& name) {
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

QString fullPath(const QString& path) {
    // Most paths that come are full already.
    if (path.startsWith(u'/') && !path.endsWith(u'/') && !path.contains(u"//") &&
        !path.contains(u"/.")) {
        return path;
    }
    const QFileInfo info(path);
    if (!path.split(u'/').contains(QStringLiteral(".."))) {
        return QDir::cleanPath(info.absoluteFilePath());
    }
    return info.isDir() ? info.canonicalFilePath() : withRealFolder(info.absoluteFilePath());
}

bool isFolder(const QString& path) {
    struct stat info {};
    return stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool isSameFile(const QString& a, const QString& b) {
    struct stat first {};
    struct stat second {};
    return stat(QFile::encodeName(a).constData(), &first) == 0 &&
           stat(QFile::encodeName(b).constData(), &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

QString withRealFolder(const QString& path) {
    const QString real = QFileInfo(folderOf(path)).canonicalFilePath();
    return real.isEmpty() ? path : joinPath(real, lastPathComponent(path));
}

} // namespace quav
