#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void signalsEndTheProgram();
};

namespace {

/// Whether a program with a window is there, with its event loop turning.
bool somebodyAnswers() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"workbench.quav.Quav"_s, u"/workbench/quav/Quav"_s,
                                       u"org.freedesktop.Application"_s, u"Activate"_s);
    call << QVariantMap();
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

} // namespace

void ProgramTest::signalsEndTheProgram() {
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "Run this under dbus-run-session");
    const QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
    qputenv("XDG_STATE_HOME", QFile::encodeName(config.path()));
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        // Whoever ignores it, as nohup does, bequeaths that to the program.
        std::signal(signal, SIG_DFL);
        QProcess program;
        program.start(QStringLiteral(QUAV_PROGRAM), {});
        QTRY_VERIFY(somebodyAnswers());
        QCOMPARE(::kill(static_cast<pid_t>(program.processId()), signal), 0);
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
    }
}

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
