#include "platform/DBusDesktop.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

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
        process_.waitForFinished(quav::test::patience);
    }

private:
    QProcess process_;
};

/// What a service answers, as text.
QString answerOf(const QString& service, const QString& path, const QString& method) {
    QProcess call;
    call.start(u"dbus-send"_s,
               {u"--session"_s, u"--print-reply"_s, u"--dest="_s + service, path, method});
    call.waitForFinished();
    return QString::fromUtf8(call.readAllStandardOutput());
}

/// What a mock was called with.
QString callsOf(const QString& service, const QString& path) {
    return answerOf(service, path, mock + u".GetCalls"_s);
}

QString inhibitors() {
    return answerOf(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                    u"org.freedesktop.login1.Manager.ListInhibitors"_s);
}

/// Where the bus looks for services that it can start.
QString serviceFile() {
    return qEnvironmentVariable("XDG_DATA_HOME") +
           u"/dbus-1/services/org.freedesktop.Notifications.service"_s;
}

void readServiceFiles() {
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
}

bool isActivatable(const QString& name) {
    return QDBusConnection::sessionBus().interface()->activatableServiceNames().value().contains(
        name);
}

} // namespace

/// Needs a session bus of its own, which it also takes for the system's, and a data folder of its
/// own from which that bus starts services: run it with dbus-run-session and XDG_DATA_HOME.
class DBusDesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // There is no system bus until somebody makes this link. Read when the first bus is met.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + QFile::encodeName(systemBus()));
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(QDir().mkpath(QFileInfo(serviceFile()).path()));
        QFile::remove(serviceFile());
        readServiceFiles();
        QVERIFY(!isActivatable(notificationsName));
    }
    void cleanupTestCase() { QFile::remove(serviceFile()); }

    void absentServicesDoNothing() {
        DBusDesktop desktop;
        QSignalSpy attention(&desktop, &DBusDesktop::attentionRequested);
        std::optional<bool> granted;
        std::optional<bool> shown;
        desktop.preventSuspend(u"reason"_s);
        desktop.allowSuspend();
        desktop.notify(u"nobody there"_s, {}, [&](bool answer) { shown = answer; });
        desktop.preventSleep(u"reason"_s,
                             [&](std::optional<uint32_t> id) { granted = id.has_value(); });
        desktop.allowSleep(5);
        desktop.requestAttention();
        QTRY_COMPARE(granted, std::optional<bool>(false));
        QTRY_COMPARE(shown, std::optional<bool>(false));
        QCOMPARE(attention.count(), 1);
    }

    void notificationsAreSent_data() {
        QTest::addColumn<bool>("runs");
        QTest::newRow("to a service that runs") << true;
        QTest::newRow("to one that the bus can start") << false;
    }
    void notificationsAreSent() {
        QFETCH(bool, runs);
        std::optional<MockService> service;
        if (runs) {
            service.emplace(QStringList{u"--template"_s, u"notification_daemon"_s});
        } else {
            QFile file(serviceFile());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("[D-BUS Service]\nName=org.freedesktop.Notifications\n"
                       "Exec=/usr/bin/python3 -m dbusmock --template notification_daemon\n");
            file.close();
            readServiceFiles();
            QTRY_VERIFY(isActivatable(notificationsName));
        }
        QTRY_COMPARE(isOnBus(notificationsName), runs);
        DBusDesktop desktop;
        std::optional<bool> shown;
        desktop.notify(u"Quav task(s) completed"_s, u"3 tasks are done."_s,
                       [&](bool answer) { shown = answer; });
        QTRY_COMPARE_WITH_TIMEOUT(shown, std::optional<bool>(true), 20000);
        const QString calls = callsOf(notificationsName, notificationsPath);
        QVERIFY(calls.contains(u"\"Quav task(s) completed\""));
        QVERIFY(calls.contains(u"\"3 tasks are done.\""));
    }

    void theSystemIsKeptFromSuspendingAndLetGo() {
        DBusDesktop desktop;
        const auto isHeld = [] {
            const QString all = inhibitors();
            return all.contains(u"\"sleep\"") && all.contains(u"\"block\"") &&
                   all.contains(u"\"work\"");
        };
        // An answer on its way holds the system, too: only what stays has been kept.
        const auto staysHeld = [&] {
            for (int i = 0; i < 10; ++i) {
                QCoreApplication::processEvents();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                if (!isHeld()) {
                    return false;
                }
            }
            return true;
        };
        desktop.preventSuspend(u"work"_s); // and no bus
        QVERIFY(!isHeld());
        const QString session = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        QVERIFY(QFile::link(session.section(u'=', 1).section(u',', 0, 0), systemBus()));
        const MockService service({u"--template"_s, u"logind"_s});
        QTRY_VERIFY(isOnBus(u"org.freedesktop.login1"_s));
        QTRY_VERIFY((desktop.preventSuspend(u"work"_s), staysHeld()));
        desktop.allowSuspend();
        QTRY_VERIFY(!isHeld());
        // A wish that comes back before the first answer.
        desktop.preventSuspend(u"work"_s);
        desktop.allowSuspend();
        desktop.preventSuspend(u"work"_s);
        QTRY_VERIFY(staysHeld());
        desktop.allowSuspend();
        QTRY_VERIFY(!isHeld());
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
        const auto calls = [] { return callsOf(saverName, saverPath); };
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
        QVERIFY(heard.contains("application://workbench.quav.Quav.desktop"));
        desktop.setBadge(std::nullopt);
        QTRY_VERIFY(listen().contains("boolean false"));
        monitor.terminate();
        monitor.waitForFinished(quav::test::patience);
    }

private:
    QString systemBus() const { return folder_.filePath(u"system-bus"_s); }

    QTemporaryDir folder_;
};

QTEST_GUILESS_MAIN(DBusDesktopTest)
#include "DBusDesktopTest.moc"
