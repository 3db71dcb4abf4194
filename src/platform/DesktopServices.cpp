#include "platform/DesktopServices.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace quav {

void NoDesktop::notify(const QString& /*title*/, const QString& /*body*/, NotifyAnswer answer) {
    answer(false);
}

void NoDesktop::requestAttention() {}

void NoDesktop::setBadge(std::optional<int> /*count*/) {}

void NoDesktop::preventSleep(const QString& /*reason*/, SleepAnswer answer) {
    answer(std::nullopt);
}

void NoDesktop::allowSleep(uint32_t /*assertion*/) {}

void NoDesktop::preventSuspend(const QString& /*reason*/) {}

void NoDesktop::allowSuspend() {}

bool NoDesktop::moveToTrash(const QString& path) {
    // Without the data folder Qt 6.4 would move the file into "./files" and call that a success.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir().mkpath(data) && QFile::moveToTrash(path);
}

} // namespace quav
