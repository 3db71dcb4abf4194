#include "cli/Cli.h"
#include "support/Table.h"

#include <QTest>

#include <sys/ioctl.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using quav::test::Cli;
using quav::test::contents;
using quav::test::isSoundFlac;
using quav::test::row;
using quav::test::words;

namespace {

/// A terminal that a program can be run on; this end is the user's.
class PseudoTerminal {
public:
    static constexpr unsigned short columns = 60;

    PseudoTerminal() : user_(posix_openpt(O_RDWR | O_NOCTTY)) {
        if (grantpt(user_) == 0 && unlockpt(user_) == 0) {
            // Held open so that reading at this end waits and does not fail.
            program_ = open(ptsname(user_), O_RDWR | O_NOCTTY);
        }
        const winsize size{24, columns, 0, 0};
        ioctl(user_, TIOCSWINSZ, &size);
    }
    ~PseudoTerminal() {
        close(program_);
        close(user_);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    void attach(QProcess& process) const {
        auto environment = process.processEnvironment();
        environment.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
        process.setProcessEnvironment(environment);
        const QString name = QString::fromLocal8Bit(ptsname(user_));
        process.setStandardInputFile(name);
        process.setStandardErrorFile(name);
    }

    void type(const QByteArray& text) const {
        QCOMPARE(write(user_, text.constData(), static_cast<size_t>(text.size())), text.size());
    }

    /// What has been shown so far.
    QByteArray screen() {
        fcntl(user_, F_SETFL, O_NONBLOCK);
        QByteArray part(4096, '\0');
        for (ssize_t n = 0; (n = read(user_, part.data(), 4096)) > 0;) {
            screen_ += part.left(n);
        }
        return screen_;
    }

private:
    int user_;
    int program_ = -1;
    QByteArray screen_;
};

/// Encodes again over an output that is there, with somebody at the terminal.
class OverwritingAtTerminal {
public:
    OverwritingAtTerminal() {
        cli.wav(QStringLiteral("a.wav"));
        cli.encode(words(QStringLiteral("--output out in")));
        before = contents(cli.out(QStringLiteral("a.flac")));
        cli.wav(QStringLiteral("a.wav"), 2);
        cli.prepare(process_, words(QStringLiteral("encode --to flac --output out in")));
        terminal.attach(process_);
        process_.start();
    }

    int answer(const QByteArray& text) {
        terminal.type(text);
        process_.waitForFinished(-1);
        return process_.exitCode();
    }

    bool isChanged() const { return contents(cli.out(QStringLiteral("a.flac"))) != before; }

    Cli cli;
    PseudoTerminal terminal;
    QByteArray before;

private:
    QProcess process_;
};

/// A WAV file that arrives as slowly as the test likes: a pipe in its place.
class SlowWav {
public:
    SlowWav(const Cli& cli, const QString& name) : bytes_(contents(cli.wav(name))) {
        const QByteArray pipe = QFile::encodeName(cli.in(name));
        if (unlink(pipe.constData()) == 0 && mkfifo(pipe.constData(), 0600) == 0) {
            writer_ = open(pipe.constData(), O_RDWR);
        }
    }
    ~SlowWav() { end(); }
    SlowWav(const SlowWav&) = delete;
    SlowWav& operator=(const SlowWav&) = delete;

    /// So much as a pipe takes without a reader.
    void writeHalf() { QCOMPARE(write(writer_, bytes_.constData(), half), half); }

    void writeRest() {
        const QByteArray rest = bytes_.mid(half);
        QCOMPARE(write(writer_, rest.constData(), static_cast<size_t>(rest.size())), rest.size());
        end();
    }

private:
    static constexpr qsizetype half = 60000;

    void end() {
        if (writer_ >= 0) {
            close(writer_);
            writer_ = -1;
        }
    }

    QByteArray bytes_;
    int writer_ = -1;
};

void signalTo(const QProcess& process, int signal) {
    QCOMPARE(kill(static_cast<pid_t>(process.processId()), signal), 0);
}

/// The text of each line that was drawn to be drawn again.
QList<QByteArray> drawnLines(const QByteArray& screen) {
    QList<QByteArray> lines;
    for (const QByteArray& line : screen.split('\n')) {
        const qsizetype end = line.indexOf("\x1b[K");
        if (end >= 0) {
            lines << line.mid(line.lastIndexOf('\r', end) + 1).split('\x1b').first();
        }
    }
    return lines;
}

} // namespace

class CliTerminalTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aQuestionIsAskedAtTheTerminal_data() {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("changed");
        row("yes", QByteArrayLiteral("y\n"), 0, true);
        row("no", QByteArrayLiteral("No\n"), 3, false);
        row("the default", QByteArrayLiteral("\n"), 3, false);
        row("nonsense, then yes", QByteArrayLiteral("x\nyes\n"), 0, true);
        row("end of input", QByteArrayLiteral("\x04"), 3, false);
    }
    void aQuestionIsAskedAtTheTerminal() {
        QFETCH(QByteArray, typed);
        QFETCH(int, status);
        QFETCH(bool, changed);
        OverwritingAtTerminal overwriting;
        QTRY_VERIFY(overwriting.terminal.screen().contains("[y/N] "));
        const int ended = overwriting.answer(typed);
        QVERIFY2(ended == status, overwriting.terminal.screen().constData());
        QCOMPARE(overwriting.isChanged(), changed);
    }

    void whatRunsIsShownOnTheTerminalAndGoesAgain() {
        const Cli cli;
        const QString name = QString(70, u'n') + QStringLiteral(".wav");
        SlowWav wav(cli, name);
        PseudoTerminal terminal;
        QProcess process;
        cli.prepare(process, words(QStringLiteral("encode --to flac --output out in/")));
        terminal.attach(process);
        process.start();
        wav.writeHalf();
        QTRY_VERIFY(terminal.screen().contains("1 running, 0 waiting, 0 done"));
        wav.writeRest();
        QTRY_COMPARE(process.state(), QProcess::NotRunning);
        QCOMPARE(process.exitCode(), 0);
        const QByteArray screen = terminal.screen();
        for (const QByteArray& line : drawnLines(screen)) {
            QVERIFY2(line.size() < PseudoTerminal::columns, line.constData());
        }
        QVERIFY2(drawnLines(screen).first().contains("nnn"), screen.constData());
        const qsizetype cleared = screen.lastIndexOf("\x1b[2A\x1b[J");
        QVERIFY2(cleared >= 0 && screen.indexOf("1 done, 0 failed") > cleared, screen.constData());
    }

    void ctrlCDropsWhatWaitsAndLeavesNothingHalf() {
        const Cli cli;
        cli.wav(QStringLiteral("0.wav"));
        for (int i = 1; i < 500; ++i) {
            QVERIFY(QFile::copy(cli.in(QStringLiteral("0.wav")),
                                cli.in(QStringLiteral("%1.wav").arg(i))));
        }
        QProcess process;
        cli.prepare(process, words(QStringLiteral("encode --to flac --output out in")));
        process.start();
        QByteArray errors;
        QTRY_VERIFY((errors += process.readAllStandardError()).contains("done: "));
        signalTo(process, SIGINT);
        QVERIFY(process.waitForFinished());
        errors += process.readAllStandardError();
        QCOMPARE(process.exitCode(), 1);
        QVERIFY2(errors.contains("cancelled: 499.wav"), errors.constData());
        const QStringList outputs = cli.namesIn(QStringLiteral("out"));
        QVERIFY(!outputs.isEmpty() && outputs.size() < 500);
        for (const QString& output : outputs) {
            QVERIFY2(isSoundFlac(cli.out(output)), qPrintable(output));
        }
    }

    void aSecondCtrlCStopsTheToolsAndTheirHalfFilesGo() {
        const Cli cli;
        SlowWav wav(cli, QStringLiteral("a.wav"));
        wav.writeHalf();
        QProcess process;
        cli.prepare(process, words(QStringLiteral("encode --to flac --output out in/a.wav")));
        process.start();
        QTRY_VERIFY(QFile::exists(cli.out(QStringLiteral("a.flac"))));
        QByteArray errors;
        signalTo(process, SIGINT);
        QTRY_VERIFY((errors += process.readAllStandardError()).contains("Cancelled."));
        QVERIFY(QFile::exists(cli.out(QStringLiteral("a.flac"))));
        signalTo(process, SIGINT);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(cli.namesIn(QStringLiteral("out")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(CliTerminalTest)
#include "CliTerminalTest.moc"
