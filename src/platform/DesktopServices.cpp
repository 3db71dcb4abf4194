#include "platform/DesktopServices.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace quav {

bool NoDesktop::notify(const QString& /*title*/) {
    return false;
}

void NoDesktop::requestAttention() {}

void NoDesktop::setBadge(std::optional<int> /*count*/) {}

void NoDesktop::preventSleep(const QString& /*reason*/, SleepAnswer answer) {
    answer(std::nullopt);
}

void NoDesktop::allowSleep(uint32_t /*assertion*/) {}

bool NoDesktop::moveToTrash(const QString& path) {
    // Without the data folder Qt 6.4 would move the file into "./files" and call that a success.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir().mkpath(data) && QFile::moveToTrash(path);
}

} // namespace quav
