#include "platform/DBusDesktop.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace quav {

namespace {

const QString notifications = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString screenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
const QString screenSaverPath = QStringLiteral("/org/freedesktop/ScreenSaver");

QDBusMessage screenSaverCall(const QString& method) {
    return QDBusMessage::createMethodCall(screenSaver, screenSaverPath, screenSaver, method);
}

} // namespace

DBusDesktop::DBusDesktop(QObject* parent) : QObject(parent), bus_(QDBusConnection::sessionBus()) {}

bool DBusDesktop::notify(const QString& title) {
    if (!bus_.isConnected() || !bus_.interface()->isServiceRegistered(notifications)) {
        return false;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(notifications, notificationsPath,
                                                       notifications, QStringLiteral("Notify"));
    call << QStringLiteral("Quav Workbench") << 0U << QStringLiteral("quav") << title << QString()
         << QStringList() << QVariantMap() << -1;
    bus_.asyncCall(call);
    return true;
}

void DBusDesktop::requestAttention() {
    Q_EMIT attentionRequested();
}

void DBusDesktop::setBadge(std::optional<int> count) {
    if (!bus_.isConnected() || badge_ == count) {
        return;
    }
    badge_ = count;
    QDBusMessage update = QDBusMessage::createSignal(
        QStringLiteral("/quav"), QStringLiteral("com.canonical.Unity.LauncherEntry"),
        QStringLiteral("Update"));
    update << QStringLiteral("application://quav.desktop")
           << QVariantMap{
                  {QStringLiteral("count"), QVariant::fromValue<qlonglong>(count.value_or(0))},
                  {QStringLiteral("count-visible"), count.has_value()}};
    bus_.send(update);
}

void DBusDesktop::preventSleep(const QString& reason, SleepAnswer answer) {
    if (!bus_.isConnected()) {
        answer(std::nullopt);
        return;
    }
    QDBusMessage call = screenSaverCall(QStringLiteral("Inhibit"));
    call << QStringLiteral("Quav Workbench") << reason;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [answer = std::move(answer)](QDBusPendingCallWatcher* finished) {
                const QDBusPendingReply<uint> reply = *finished;
                finished->deleteLater();
                answer(reply.isError() ? std::nullopt : std::optional<uint32_t>(reply.value()));
            });
}

void DBusDesktop::allowSleep(uint32_t assertion) {
    if (!bus_.isConnected()) {
        return;
    }
    QDBusMessage call = screenSaverCall(QStringLiteral("UnInhibit"));
    call << assertion;
    bus_.asyncCall(call);
}

} // namespace quav
