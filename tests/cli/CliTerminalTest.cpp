#include "cli/Cli.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <pty.h>

using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

/// A terminal that a program can be run on; this end is the user's.
class PseudoTerminal {
public:
    static constexpr unsigned short columns = 60;

    PseudoTerminal() {
        int user = -1;
        int program = -1;
        const winsize size{24, columns, 0, 0};
        openpty(&user, &program, nullptr, nullptr, &size);
        fcntl(user, F_SETFL, O_NONBLOCK);
        constexpr auto mode = QIODevice::ReadWrite | QIODevice::Unbuffered;
        user_.open(user, mode, QFile::AutoCloseHandle);
        // Held open so that reading at this end waits and does not fail.
        program_.open(program, mode, QFile::AutoCloseHandle);
    }

    /// Starts the program with arguments on this terminal.
    void start(QProcess& process, const QString& arguments) const {
        qputenv("TERM", "xterm");
        const QString name = QString::fromLocal8Bit(ptsname(user_.handle()));
        process.setStandardInputFile(name);
        process.setStandardErrorFile(name);
        process.start(Cli::program(), words(arguments));
    }

    void type(const QByteArray& text) { QCOMPARE(user_.write(text), text.size()); }

    /// What has been shown so far.
    QByteArray screen() { return screen_ += user_.readAll(); }

private:
    QFile user_;
    QFile program_;
    QByteArray screen_;
};

/// A WAV file that arrives as slowly as the test likes: a pipe in its place, which takes the first
/// half without a reader.
class SlowWav {
public:
    SlowWav(const Cli& cli, const QString& name)
        : bytes_(contents(cli.wav(name))), pipe_(cli.in(name)) {
        QVERIFY(pipe_.remove());
        QCOMPARE(mkfifo(QFile::encodeName(pipe_.fileName()).constData(), 0600), 0);
        QVERIFY(pipe_.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        QCOMPARE(pipe_.write(bytes_.left(half)), half);
    }

    void writeRest() {
        QCOMPARE(pipe_.write(bytes_.mid(half)), bytes_.size() - half);
        pipe_.close();
    }

private:
    static constexpr qsizetype half = 60000;

    QByteArray bytes_;
    QFile pipe_;
};

void interrupt(const QProcess& process) {
    QCOMPARE(kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
}

} // namespace

class CliTerminalTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aQuestionIsAskedAtTheTerminal_data() {
        columns<QString, int, bool>("typed", "status", "changed");
        row("yes", "y\n", 0, true);
        row("no", "No\n", 3, false);
        row("the default", "\n", 3, false);
        row("nonsense, then yes", "x\nyes\n", 0, true);
        row("end of input", "\x04", 3, false);
    }
    void aQuestionIsAskedAtTheTerminal() {
        QFETCH(QString, typed);
        QFETCH(int, status);
        QFETCH(bool, changed);
        const Cli cli;
        cli.wav(u"a.wav"_s);
        QVERIFY(writeFile(cli.out(u"a.flac"_s), "old"));
        PseudoTerminal terminal;
        QProcess process;
        terminal.start(process, u"encode --to flac --output out in"_s);
        QTRY_VERIFY(terminal.screen().contains("[y/N] "));
        terminal.type(typed.toUtf8());
        QVERIFY(process.waitForFinished());
        QVERIFY2(process.exitCode() == status, terminal.screen().constData());
        QCOMPARE(contents(cli.out(u"a.flac"_s)) != "old", changed);
        QCOMPARE(isSoundFlac(cli.out(u"a.flac"_s)), changed);
    }

    void whatRunsIsShownOnTheTerminalAndGoesAgain() {
        const Cli cli;
        SlowWav wav(cli, QString(70, u'n') + u".wav"_s);
        PseudoTerminal terminal;
        QProcess process;
        terminal.start(process, u"encode --to flac --output out in/"_s);
        QTRY_VERIFY(terminal.screen().contains("1 running, 0 waiting, 0 done"));
        wav.writeRest();
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
        QCOMPARE(process.exitCode(), 0);
        const QByteArray screen = terminal.screen();
        const QRegularExpression drawnLine(u"\r([^\r\n\x1b]*)\x1b\\[K"_s);
        auto drawn = drawnLine.globalMatch(QString::fromUtf8(screen));
        QVERIFY2(drawn.hasNext() && drawn.peekNext().captured(1).contains(u"nnn"_s),
                 screen.constData());
        while (drawn.hasNext()) {
            const QString line = drawn.next().captured(1);
            QVERIFY2(line.size() < PseudoTerminal::columns, qPrintable(line));
        }
        const qsizetype cleared = screen.lastIndexOf("\x1b[2A\x1b[J");
        QVERIFY2(cleared >= 0 && screen.indexOf("1 done, 0 failed") > cleared, screen.constData());
    }

    void ctrlCDropsWhatWaitsAndLeavesNothingHalf() {
        const Cli cli;
        cli.wav(u"0.wav"_s);
        for (int i = 1; i < 500; ++i) {
            QVERIFY(QFile::copy(cli.in(u"0.wav"_s), cli.in(u"%1.wav"_s.arg(i))));
        }
        QProcess process;
        process.start(Cli::program(), words(u"encode --to flac --output out in"_s));
        QByteArray errors;
        QTRY_VERIFY((errors += process.readAllStandardError()).contains("done: "));
        interrupt(process);
        QVERIFY(process.waitForFinished());
        errors += process.readAllStandardError();
        QCOMPARE(process.exitCode(), 1);
        QVERIFY2(errors.contains("cancelled: 499.wav"), errors.constData());
        const QStringList outputs = cli.namesIn(u"out"_s);
        QVERIFY(!outputs.isEmpty() && outputs.size() < 500);
        for (const QString& output : outputs) {
            QVERIFY2(isSoundFlac(cli.out(output)), qPrintable(output));
        }
    }

    void aSecondCtrlCStopsTheToolsAndTheirHalfFilesGo() {
        const Cli cli;
        const SlowWav wav(cli, u"a.wav"_s);
        QProcess process;
        process.start(Cli::program(), words(u"encode --to flac --output out in/a.wav"_s));
        QTRY_VERIFY(QFile::exists(cli.out(u"a.flac"_s)));
        QByteArray errors;
        interrupt(process);
        QTRY_VERIFY((errors += process.readAllStandardError()).contains("Cancelled."));
        QVERIFY(QFile::exists(cli.out(u"a.flac"_s)));
        interrupt(process);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(cli.namesIn(u"out"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(CliTerminalTest)
#include "CliTerminalTest.moc"
