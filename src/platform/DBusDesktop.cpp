#include "platform/DBusDesktop.h"

#include "platform/Version.h"

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

const QString logind = QStringLiteral("org.freedesktop.login1");
const QString logindPath = QStringLiteral("/org/freedesktop/login1");
const QString logindManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString systemBusName = QStringLiteral("quav-system");
const QString program = QStringLiteral("Quav Workbench");

QDBusMessage screenSaverCall(const QString& method) {
    return QDBusMessage::createMethodCall(screenSaver, screenSaverPath, screenSaver, method);
}

/// Hands the answer over when it is there, unless `owner` has gone by then.
template <typename Take>
void whenAnswered(const QDBusPendingCall& call, QObject& owner, Take take) {
    auto* watcher = new QDBusPendingCallWatcher(call, &owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &owner,
                     [take = std::move(take)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         take(*finished);
                     });
}

} // namespace

DBusDesktop::DBusDesktop(QObject* parent) : QObject(parent), bus_(QDBusConnection::sessionBus()) {}

void DBusDesktop::notify(const QString& title, const QString& body, NotifyAnswer answer) {
    if (!bus_.isConnected()) {
        answer(false);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(notifications, notificationsPath,
                                                       notifications, QStringLiteral("Notify"));
    call << program << 0U << applicationId() << title << body << QStringList()
         << QVariantMap{{QStringLiteral("desktop-entry"), applicationId()}} << -1;
    whenAnswered(bus_.asyncCall(call), *this,
                 [answer = std::move(answer)](const QDBusPendingReply<uint>& reply) {
                     answer(!reply.isError());
                 });
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
    update << QStringLiteral("application://%1.desktop").arg(applicationId())
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
    call << program << reason;
    whenAnswered(bus_.asyncCall(call), *this,
                 [answer = std::move(answer)](const QDBusPendingReply<uint>& reply) {
                     answer(reply.isError() ? std::nullopt
                                            : std::optional<uint32_t>(reply.value()));
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

void DBusDesktop::preventSuspend(const QString& reason) {
    suspendReason_ = reason;
    if (inhibitor_.isValid() || std::exchange(inhibitorAsked_, true)) {
        return;
    }
    connecting_.run(
        [] { QDBusConnection::connectToBus(QDBusConnection::SystemBus, systemBusName); },
        [this] { takeInhibitor(); });
}

void DBusDesktop::takeInhibitor() {
    const QDBusConnection bus(systemBusName);
    if (!bus.isConnected() || !suspendReason_) {
        // A connection that failed would be remembered under its name.
        QDBusConnection::disconnectFromBus(systemBusName);
        inhibitorAsked_ = false;
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(logind, logindPath, logindManager,
                                                       QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep") << program << *suspendReason_ << QStringLiteral("block");
    whenAnswered(bus.asyncCall(call), *this,
                 [this](const QDBusPendingReply<QDBusUnixFileDescriptor>& reply) {
                     inhibitorAsked_ = false;
                     // The work may have ended in the meantime.
                     if (!reply.isError() && suspendReason_) {
                         inhibitor_ = reply.value();
                     }
                 });
}

void DBusDesktop::allowSuspend() {
    suspendReason_.reset();
    inhibitor_ = QDBusUnixFileDescriptor();
}

} // namespace quav
