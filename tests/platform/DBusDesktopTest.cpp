#include "platform/DBusDesktop.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace quav;
using namespace Qt::StringLiterals;

namespace {

const QString saverName = u"org.freedesktop.ScreenSaver"_s;
const QString saverPath = u"/org/freedesktop/ScreenSaver"_s;
const QString notificationsName = u"org.freedesktop.Notifications"_s;
const QString notificationsPath = u"/org/freedesktop/Notifications"_s;
const QString mock = u"org.freedesktop.DBus.Mock"_s;

bool isOnBus(const QString& name) {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
}

/// A mocked service; it goes with the object.
class MockService {
public:
    explicit MockService(const QStringList& arguments) {
        process_.start(u"/usr/bin/python3"_s, QStringList{u"-m"_s, u"dbusmock"_s} + arguments);
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
    call.start(u"dbus-send"_s, {u"--session"_s, u"--print-reply"_s, u"--dest="_s + service, path,
                                mock + u'.' + method});
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
        QVERIFY(!desktop.notify(u"nobody there"_s));
        desktop.preventSleep(u"reason"_s,
                             [&](std::optional<uint32_t> id) { granted = id.has_value(); });
        desktop.allowSleep(5);
        desktop.requestAttention();
        QTRY_COMPARE(granted, std::optional<bool>(false));
        QCOMPARE(attention.count(), 1);
    }

    void notificationsAreSent() {
        const MockService service({u"--template"_s, u"notification_daemon"_s});
        QTRY_VERIFY(isOnBus(notificationsName));
        DBusDesktop desktop;
        QVERIFY(desktop.notify(u"Quav task(s) completed"_s));
        QTRY_VERIFY(ask(notificationsName, notificationsPath, u"GetCalls"_s)
                        .contains(u"\"Quav task(s) completed\""));
    }

    void theDisplayIsKeptAwakeAndLetGo() {
        const MockService service({u"--session"_s, saverName, saverPath, saverName});
        QTRY_VERIFY(isOnBus(saverName));
        QDBusInterface control(saverName, saverPath, mock);
        const auto addMethod = [&](const char* name, const char* in, const char* out,
                                   const char* code) {
            const QDBusReply<void> reply = control.call(
                u"AddMethod"_s, saverName, QString::fromLatin1(name), QString::fromLatin1(in),
                QString::fromLatin1(out), QString::fromLatin1(code));
            QVERIFY2(reply.isValid(), qPrintable(reply.error().message()));
        };
        addMethod("Inhibit", "ss", "u", "ret = 77");
        addMethod("UnInhibit", "u", "", "");
        DBusDesktop desktop;
        std::optional<uint32_t> assertion;
        desktop.preventSleep(u"Quav task running"_s,
                             [&](std::optional<uint32_t> id) { assertion = id; });
        QTRY_COMPARE(assertion, std::optional<uint32_t>(77));
        desktop.allowSleep(*assertion);
        const auto calls = [] { return ask(saverName, saverPath, u"GetCalls"_s); };
        QTRY_VERIFY(calls().contains(u"\"UnInhibit\"") && calls().contains(u"uint32 77"));
        QVERIFY(calls().contains(u"\"Quav task running\""));
    }

    void theBadgeIsAnnounced() {
        QProcess monitor;
        monitor.start(u"dbus-monitor"_s, {u"interface='com.canonical.Unity.LauncherEntry'"_s});
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
