#pragma once

#include "platform/DesktopServices.h"

#include <QDBusConnection>
#include <QObject>

namespace quav {

/// The services of a Linux desktop, over the session bus: notifications through
/// org.freedesktop.Notifications, the badge through the launcher-entry signal, the display's sleep
/// through org.freedesktop.ScreenSaver. Calls are never waited for; only the bus itself is
/// asked whether somebody takes notifications.
class DBusDesktop : public QObject, public NoDesktop {
    Q_OBJECT

public:
    explicit DBusDesktop(QObject* parent = nullptr);

    bool notify(const QString& title) override;
    void requestAttention() override;
    void setBadge(std::optional<int> count) override;
    void preventSleep(const QString& reason, SleepAnswer answer) override;
    void allowSleep(uint32_t assertion) override;

Q_SIGNALS:
    /// Asks whoever owns a window to draw attention to it.
    void attentionRequested();

private:
    QDBusConnection bus_;
    std::optional<int> badge_;
};

} // namespace quav
