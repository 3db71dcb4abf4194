#include "platform/DBusDesktop.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace quav;

namespace {

const QString saverName = QStringLiteral("org.freedesktop.ScreenSaver");
const QString saverPath = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString notificationsName = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString mock = QStringLiteral("org.freedesktop.DBus.Mock");

bool isOnBus(const QString& name) {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
}

/// A mocked service; it goes with the object.
class MockService {
public:
    explicit MockService(const QStringList& arguments) {
        process_.start(QStringLiteral("/usr/bin/python3"),
                       QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock")} + arguments);
    }
    ~MockService() {
        process_.terminate();
        process_.waitForFinished();
    }

private:
    QProcess process_;
};

/// What a mock answers to its own interface, as text.
QString ask(const QString& service, const QString& path, const QString& method) {
    QProcess call;
    call.start(QStringLiteral("dbus-send"),
               {QStringLiteral("--session"), QStringLiteral("--print-reply"),
                QStringLiteral("--dest=") + service, path, mock + u'.' + method});
    call.waitForFinished();
    return QString::fromUtf8(call.readAllStandardOutput());
}

} // namespace

/// Needs a session bus of its own: run it with dbus-run-session.
class DBusDesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(QDBusConnection::sessionBus().isConnected()); }

    void absentServicesDoNothing() {
        DBusDesktop desktop;
        QSignalSpy attention(&desktop, &DBusDesktop::attentionRequested);
        std::optional<bool> granted;
        QVERIFY(!desktop.notify(QStringLiteral("nobody there")));
        desktop.preventSleep(QStringLiteral("reason"),
                             [&](std::optional<uint32_t> id) { granted = id.has_value(); });
        desktop.allowSleep(5);
        desktop.requestAttention();
        QTRY_COMPARE(granted, std::optional<bool>(false));
        QCOMPARE(attention.count(), 1);
    }

    void notificationsAreSent() {
        const MockService service(
            {QStringLiteral("--template"), QStringLiteral("notification_daemon")});
        QTRY_VERIFY(isOnBus(notificationsName));
        DBusDesktop desktop;
        QVERIFY(desktop.notify(QStringLiteral("Quav task(s) completed")));
        QTRY_VERIFY(ask(notificationsName, notificationsPath, QStringLiteral("GetCalls"))
                        .contains(u"\"Quav task(s) completed\""));
    }

    void theDisplayIsKeptAwakeAndLetGo() {
        const MockService service({QStringLiteral("--session"), saverName, saverPath, saverName});
        QTRY_VERIFY(isOnBus(saverName));
        QDBusInterface control(saverName, saverPath, mock);
        const auto addMethod = [&](const char* name, const char* in, const char* out,
                                   const char* code) {
            const QDBusReply<void> reply = control.call(
                QStringLiteral("AddMethod"), saverName, QString::fromLatin1(name),
                QString::fromLatin1(in), QString::fromLatin1(out), QString::fromLatin1(code));
            QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
        };
        addMethod("Inhibit", "ss", "u", "ret = 77");
        addMethod("UnInhibit", "u", "", "");
        DBusDesktop desktop;
        std::optional<uint32_t> assertion;
        desktop.preventSleep(QStringLiteral("Quav task running"),
                             [&](std::optional<uint32_t> id) { assertion = id; });
        QTRY_COMPARE(assertion, std::optional<uint32_t>(77));
        desktop.allowSleep(*assertion);
        const auto calls = [] { return ask(saverName, saverPath, QStringLiteral("GetCalls")); };
        QTRY_VERIFY(calls().contains(u"\"UnInhibit\"") && calls().contains(u"uint32 77"));
        QVERIFY(calls().contains(u"\"Quav task running\""));
    }

    void theBadgeIsAnnounced() {
        QProcess monitor;
        monitor.start(QStringLiteral("dbus-monitor"),
                      {QStringLiteral("interface='com.canonical.Unity.LauncherEntry'")});
        QByteArray heard;
        const auto listen = [&] { return heard += monitor.readAllStandardOutput(); };
        // The monitor is ready once the bus has told it its own name was lost or acquired.
        QTRY_VERIFY(listen().contains("member=Name"));
        DBusDesktop desktop;
        desktop.setBadge(12);
        QTRY_VERIFY(listen().contains("int64 12"));
        QVERIFY(heard.contains("application://quav.desktop"));
        desktop.setBadge(std::nullopt);
        QTRY_VERIFY(listen().contains("boolean false"));
        monitor.terminate();
        monitor.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(DBusDesktopTest)
#include "DBusDesktopTest.moc"
