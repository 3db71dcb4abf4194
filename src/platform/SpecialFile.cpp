#include "platform/SpecialFile.h"

#include <QCoreApplication>
#include <QFile>

#include <sys/stat.h>

namespace quav {

namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("SpecialFile", text);
}

} // namespace

std::optional<QString> whyNotOpened(const QString& path) {
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0) {
        return std::nullopt;
    }
    switch (info.st_mode & S_IFMT) {
    case S_IFIFO:
        return translated("“%1” is a named pipe and was not opened; save what comes out of it as "
                          "a file and add that.")
            .arg(path);
    case S_IFSOCK:
        return translated("“%1” is a socket and was not opened; add a file instead.").arg(path);
    case S_IFCHR:
    case S_IFBLK:
        return translated("“%1” is a device and was not opened; save what it holds as a file and "
                          "add that.")
            .arg(path);
    default:
        return std::nullopt;
    }
}

} // namespace quav
