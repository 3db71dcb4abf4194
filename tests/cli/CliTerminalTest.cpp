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

/// A tool that waits to be let pass before it does its work, and listens to no polite signal; its
/// number is in a file of its own.
class SlowTool {
public:
    /// `first` is what it does before it waits, as a line of shell.
    explicit SlowTool(const Cli& cli, const QString& first = {})
        : gate_(cli.path(u"gate"_s)), pid_(cli.path(u"pid"_s)) {
        QCOMPARE(mkfifo(QFile::encodeName(gate_.fileName()).constData(), 0600), 0);
        QVERIFY(gate_.open(QIODevice::ReadWrite | QIODevice::Unbuffered)); // nobody waits for us
        const QString script = u"#!/bin/sh\ntrap '' TERM INT HUP\n%1\necho $$ >'%2'\n"
                               "read -r go <'%3'\nexec '%4' \"$@\"\n"_s.arg(
                                   first, pid_, gate_.fileName(), QFile::symLinkTarget(cli.tool()));
        QVERIFY(QFile::remove(cli.tool()) && writeFile(cli.tool(), script.toUtf8()));
        QVERIFY(QFile::setPermissions(cli.tool(), QFile::ReadOwner | QFile::ExeOwner));
    }

    void letPass() { QCOMPARE(gate_.write("\n"), 1); }
    bool hasStarted() const { return contents(pid_).endsWith('\n'); }

    /// One that nobody has reaped yet is none.
    bool isThere() const {
        const QByteArray stat =
            contents(u"/proc/%1/stat"_s.arg(QString::fromLatin1(contents(pid_)).trimmed()));
        return !stat.isEmpty() && !stat.contains(") Z ");
    }

private:
    QFile gate_;
    QString pid_;
};

void send(int signal, const QProcess& process) {
    QCOMPARE(kill(static_cast<pid_t>(process.processId()), signal), 0);
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
        QVERIFY(process.waitForFinished(quav::test::patience));
        QVERIFY2(process.exitCode() == status, terminal.screen().constData());
        QCOMPARE(contents(cli.out(u"a.flac"_s)) != "old", changed);
        QCOMPARE(isSoundFlac(cli.out(u"a.flac"_s)), changed);
    }

    void whatRunsIsShownOnTheTerminalAndGoesAgain() {
        const Cli cli;
        cli.wav(QString(70, u'n') + u".wav"_s);
        SlowTool tool(cli);
        PseudoTerminal terminal;
        QProcess process;
        terminal.start(process, u"encode --to flac --output out in/"_s);
        QTRY_VERIFY(terminal.screen().contains("1 running, 0 waiting, 0 done"));
        tool.letPass();
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
        send(SIGINT, process);
        QVERIFY(process.waitForFinished(quav::test::patience));
        errors += process.readAllStandardError();
        QCOMPARE(process.exitCode(), 1);
        QVERIFY2(errors.contains("cancelled: 499.wav"), errors.constData());
        const QStringList outputs = cli.namesIn(u"out"_s);
        QVERIFY(!outputs.isEmpty() && outputs.size() < 500);
        for (const QString& output : outputs) {
            QVERIFY2(isSoundFlac(cli.out(output)), qPrintable(output));
        }
    }

    void theSecondSignalEndsToolsAndProgramAndHalfFilesGo_data() {
        columns<int>("signal");
        row("Ctrl-C", SIGINT);
        row("the session's end", SIGHUP);
        row("kill", SIGTERM);
    }
    void theSecondSignalEndsToolsAndProgramAndHalfFilesGo() {
        QFETCH(int, signal);
        const Cli cli;
        cli.wav(u"a.wav"_s);
        const SlowTool tool(cli, u"for output; do :; done; echo half >\"$output\""_s);
        QProcess process;
        process.start(Cli::program(), words(u"encode --to flac --output out in/a.wav"_s));
        QTRY_VERIFY(tool.hasStarted());
        QByteArray errors;
        send(signal, process);
        QTRY_VERIFY((errors += process.readAllStandardError()).contains("Cancelled."));
        QVERIFY(QFile::exists(cli.out(u"a.flac"_s)) && tool.isThere());
        send(signal, process);
        QVERIFY(process.waitForFinished(quav::test::patience));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(!tool.isThere());
        QVERIFY(cli.namesIn(u"out"_s).isEmpty());
    }

    void noToolOutlivesAKilledProgram_data() {
        columns<QString>("arguments");
        row("a task of its own", "encode --to flac --output out in/a.wav");
        row("one of a longer task", "checksum verify in/a.ffp");
    }
    void noToolOutlivesAKilledProgram() {
        QFETCH(QString, arguments);
        const Cli cli;
        cli.flac(u"b.flac"_s);
        cli.wav(u"a.wav"_s);
        QCOMPARE(cli.run(u"checksum create --kind ffp --save in/a.ffp in/b.flac"_s).status, 0);
        const SlowTool tool(cli);
        QProcess process;
        process.start(Cli::program(), words(arguments));
        QTRY_VERIFY(tool.hasStarted());
        QVERIFY(tool.isThere());
        process.kill();
        QVERIFY(process.waitForFinished(quav::test::patience));
        QTRY_VERIFY(!tool.isThere());
    }

    void aToolThatDoesNothingIsToldOfAndEnded_data() {
        columns<QString, QString, QString>("arguments", "fileThatIsDone", "told");
        const QString nothing = u"flac neither read, wrote nor printed anything for 1 s"_s;
        row("encode", "encode --to flac --output out in/a.wav in/b.wav", "out/b.flac", nothing);
        row("test", "checksum test in/a.flac in/b.flac", "", nothing);
        row("verify", "checksum verify in/a.ffp in/b.ffp", "", nothing);
        row("json", "encode --to flac --json --output out in/a.wav in/b.wav", "out/b.flac",
            "\"event\":\"stalled\",\"seconds\":1,");
    }
    void aToolThatDoesNothingIsToldOfAndEnded() {
        QFETCH(QString, arguments);
        QFETCH(QString, fileThatIsDone);
        QFETCH(QString, told);
        const Cli cli;
        for (const QString& name : {u"a"_s, u"b"_s}) {
            cli.flac(name + u".flac"_s);
            cli.wav(name + u".wav"_s);
            const QString list = u"checksum create --kind ffp --save in/%1.ffp in/%1.flac"_s;
            QCOMPARE(cli.run(list.arg(name)).status, 0);
        }
        const SlowTool tool(cli, u"case \"$*\" in *in/b*) exec '%1' \"$@\";; esac"_s.arg(
                                     QFile::symLinkTarget(cli.tool())));
        const Ran ran = cli.run(arguments + u" --jobs 1 --stall-timeout 1"_s);
        QVERIFY2(ran.status == 1, ran.errors.constData());
        const QByteArray all = ran.output + ran.errors;
        QVERIFY2(all.contains(told.toUtf8()), all.constData());
        QVERIFY2(all.contains("1 done, 1 failed"), all.constData());
        QCOMPARE(all.count("stalled: a."), 1);
        QVERIFY(tool.hasStarted() && !tool.isThere());
        QVERIFY(fileThatIsDone.isEmpty() || isSoundFlac(cli.path(fileThatIsDone)));
    }
};

QTEST_GUILESS_MAIN(CliTerminalTest)
#include "CliTerminalTest.moc"
