#include "platform/SpecialFile.h"

#include <QCoreApplication>
#include <QFile>

#include <sys/stat.h>

namespace quav {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SpecialFile)
};

} // namespace

std::optional<QString> whyNotOpened(const QString& path) {
    struct stat info {};
    if (::stat(QFile::encodeName(path).constData(), &info) != 0) {
        return std::nullopt;
    }
    switch (info.st_mode & S_IFMT) {
    case S_IFIFO:
        return Words::tr("“%1” is a named pipe and was not opened; save what comes out of it as "
                         "a file and add that.")
            .arg(path);
    case S_IFSOCK:
        return Words::tr("“%1” is a socket and was not opened; add a file instead.").arg(path);
    case S_IFCHR:
    case S_IFBLK:
        return Words::tr("“%1” is a device and was not opened; save what it holds as a file and "
                         "add that.")
            .arg(path);
    default:
        return std::nullopt;
    }
}

} // namespace quav
