#pragma once

#include "platform/BackgroundWork.h"
#include "platform/DesktopServices.h"
#include "platform/MainThread.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace quav {

/// The services of a Linux desktop: over the session bus notifications through
/// org.freedesktop.Notifications, the badge through the launcher-entry signal, the display's sleep
/// through org.freedesktop.ScreenSaver; over the system bus an inhibitor of org.freedesktop.login1
/// against suspending. Calls are never waited for, and the bus starts what it can start.
class DBusDesktop : public QObject, public NoDesktop {
    Q_OBJECT

public:
    explicit DBusDesktop(QObject* parent = nullptr);

    void notify(const QString& title, const QString& body, NotifyAnswer answer) override;
    void requestAttention() override;
    void setBadge(std::optional<int> count) override;
    void preventSleep(const QString& reason, SleepAnswer answer) override;
    void allowSleep(uint32_t assertion) override;
    void preventSuspend(const QString& reason) override;
    void allowSuspend() override;

Q_SIGNALS:
    /// Asks whoever owns a window to draw attention to it.
    void attentionRequested();

private:
    void takeInhibitor();

    QDBusConnection bus_;
    std::optional<int> badge_;

    std::optional<QString> suspendReason_; ///< while the system is to be kept from suspending
    QDBusUnixFileDescriptor inhibitor_;    ///< open for as long as logind is to heed it
    bool inhibitorAsked_ = false;
    MainThread mainThread_;
    BackgroundWork connecting_{mainThread_}; ///< to the system bus, which may let us wait
};

} // namespace quav
