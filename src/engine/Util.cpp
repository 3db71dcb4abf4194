#include "engine/Util.h"

#include "platform/DesktopServices.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <numeric>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace quav {

namespace {

constexpr std::string_view placeholder = "XXXXXXXX";

/// A number that stays the same during one login, whatever program asks: the session's, else the
/// user's.
uint32_t loginSession() {
    const QByteArray session = qgetenv("XDG_SESSION_ID");
    if (session.isEmpty()) {
        return getuid();
    }
    bool isNumber = false;
    const uint number = session.toUInt(&isNumber);
    if (isNumber) {
        return number;
    }
    // A session that is not numbered is called c1, c2 and so on: FNV-1a.
    return std::accumulate(session.begin(), session.end(), 2166136261U,
                           [](uint32_t hash, char byte) {
                               return (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
                           });
}

/// Replaces the placeholder, of which mkstemps would leave two characters as they are.
void fillPlaceholder(char* at) {
    constexpr std::string_view characters =
        "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::generate_n(at, placeholder.size(), [&] {
        return characters[QRandomGenerator::system()->bounded(
            static_cast<quint32>(characters.size()))];
    });
}

/// Creates a file that did not exist; gives its descriptor, or -1 with errno.
int createNew(QByteArray& path, qsizetype placeholderAt) {
    constexpr int mostTries = 1000;
    int descriptor = -1;
    for (int i = 0; i < mostTries && descriptor < 0; ++i) {
        fillPlaceholder(path.data() + placeholderAt);
        descriptor =
            open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (descriptor < 0 && errno != EEXIST) {
            break;
        }
    }
    return descriptor;
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
    const qsizetype suffix = QFile::encodeName(extension).size() + 1;
    const int descriptor =
        createNew(path, path.size() - suffix - static_cast<qsizetype>(placeholder.size()));
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

bool Util::isTempFileName(const QString& path) {
    static const QRegularExpression pattern(
        QStringLiteral("^Quav-[0-9a-f]{8}-[0-9A-Za-z]{8}\\.[0-9A-Za-z]+$"));
    return pattern.match(lastPathComponent(path)).hasMatch();
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
