#include "engine/Util.h"

#include "platform/DesktopServices.h"
#include "platform/Settings.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace quav {

namespace {

/// A number that stays the same during one login: the audit session where there is one, else the
/// process session.
uint32_t loginSession() {
    QFile file(QStringLiteral("/proc/self/sessionid"));
    if (file.open(QIODevice::ReadOnly)) {
        bool isNumber = false;
        const uint session = QString::fromLatin1(file.readAll()).trimmed().toUInt(&isNumber);
        if (isNumber && session != std::numeric_limits<uint32_t>::max()) {
            return session;
        }
    }
    const pid_t session = getsid(0);
    if (session < 0) {
        throw std::system_error(errno, std::generic_category(), "SessionGetInfo failed");
    }
    return static_cast<uint32_t>(session);
}

} // namespace

QString Util::generateTempFileName2(const QString& folder, const QString& extension) {
    const QString directory = folder.isEmpty() ? QDir::tempPath() : folder;
    if (directory.isEmpty()) {
        throw std::invalid_argument("Invalid parameter not satisfying: nil != directory");
    }
    if (extension.isEmpty()) {
        throw std::invalid_argument("Invalid parameter not satisfying: nil != extension");
    }
    return QStringLiteral("%1/Quav-%2-XXXXXXXX.%3")
        .arg(directory, QString::number(loginSession(), 16).rightJustified(8, u'0'), extension);
}

QString Util::generateTempFileName(const QString& folder, const QString& extension) {
    QByteArray path = QFile::encodeName(generateTempFileName2(folder, extension));
    const int suffix = static_cast<int>(extension.toUtf8().size()) + 1;
    const int descriptor = mkstemps(path.data(), suffix);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(),
                                "Unable to create a temporary file");
    }
    if (close(descriptor) != 0) {
        throw std::system_error(errno, std::generic_category(),
                                "Unable to close the temporary file");
    }
    return QFile::decodeName(path);
}

void Util::deleteFile(const QString& path, const Settings& settings, DesktopServices& desktop) {
    if (settings.integer(keys::trashOrDelete) != 0) {
        desktop.moveToTrash(path);
    } else {
        QFile::remove(path);
    }
}

bool quavStartsWith(const QString& text, const QString& prefix) {
    return !prefix.isEmpty() && text.startsWith(prefix);
}

bool quavEndsWith(const QString& text, const QString& suffix) {
    return !suffix.isEmpty() && text.endsWith(suffix);
}

} // namespace quav
