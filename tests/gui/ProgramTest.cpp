#include "gui/SingleInstance.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

constexpr std::array ending{SIGTERM, SIGHUP, SIGINT};

/// The program itself, with settings that are nobody's.
class Program {
public:
    explicit Program(const QStringList& arguments) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, config_.path());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(QUAV_PROGRAM), arguments);
    }

    bool hasEnded() const { return process.state() == QProcess::NotRunning; }

    QProcess process;

private:
    QTemporaryDir config_;
};

/// Whether a program with a window is there, with its event loop turning.
bool somebodyAnswers() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"quav.Workbench"_s, u"/quav/Workbench"_s, u"org.freedesktop.Application"_s, u"Activate"_s);
    call << QVariantMap();
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

} // namespace

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aTabThatDoesNotExistIsRefused_data();
    void aTabThatDoesNotExistIsRefused();
    void aTabIsHandedOverAsItIsWritten();
    void aSignalEndsTheProgram_data();
    void aSignalEndsTheProgram();
};

void ProgramTest::initTestCase() {
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "Run this under dbus-run-session");
    // Whoever ignores them, as nohup does, bequeaths that to the program.
    for (const int signal : ending) {
        std::signal(signal, SIG_DFL);
    }
}

void ProgramTest::aTabThatDoesNotExistIsRefused_data() {
    QTest::addColumn<bool>("anotherRuns");
    row("alone", false);
    row("beside another start", true);
}

void ProgramTest::aTabThatDoesNotExistIsRefused() {
    QFETCH(bool, anotherRuns);
    SingleInstance another;
    QVERIFY(!anotherRuns || another.claim());
    Program program({u"--tab"_s, u"lossy"_s});
    QTRY_VERIFY(program.hasEnded());
    another.release();
    QCOMPARE(program.process.exitCode(), 2);
    const QByteArray told = program.process.readAllStandardError();
    QVERIFY2(told.contains("“lossy”; there are: decode, encode, about"), told.constData());
}

void ProgramTest::aTabIsHandedOverAsItIsWritten() {
    SingleInstance another;
    QVERIFY(another.claim());
    QSignalSpy requested(&another, &SingleInstance::tabRequested);
    Program program({u"--tab"_s, u"Encode"_s});
    QTRY_VERIFY(program.hasEnded());
    another.release();
    QCOMPARE(program.process.exitCode(), 0);
    QCOMPARE(requested.size(), 1);
    QCOMPARE(requested.first().first().toString(), u"encode"_s);
}

void ProgramTest::aSignalEndsTheProgram_data() {
    QTest::addColumn<int>("signal");
    row("SIGTERM", SIGTERM);
    row("SIGHUP", SIGHUP);
    row("SIGINT", SIGINT);
}

void ProgramTest::aSignalEndsTheProgram() {
    QFETCH(int, signal);
    Program program({});
    QTRY_VERIFY(somebodyAnswers());
    QCOMPARE(::kill(static_cast<pid_t>(program.process.processId()), signal), 0);
    QTRY_VERIFY(program.hasEnded());
    QCOMPARE(program.process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(ProgramTest)
#include "ProgramTest.moc"
