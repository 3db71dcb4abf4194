#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

QString program(const QString& name) {
    return QStringLiteral(QUAV_TOOLS "/") + name;
}

struct FileDescriptor {
    int fd = -1;
    ~FileDescriptor() { ::close(fd); }
};

} // namespace

/// What all four tools do with files that are not what they seem.
class HostileInputTest : public QObject, ToolFolder {
    Q_OBJECT

    /// The command's first word is the program; of all others, @ stands for our folder.
    Ran ran(const QString& command, const QByteArray& input = {}) const {
        QStringList words = QProcess::splitCommand(command);
        words.replaceInStrings(u"@"_s, path({}) + u'/');
        return pipe(program(words.takeFirst()), words, input);
    }

private Q_SLOTS:
    void init() { folder = QTemporaryDir(); }

    void soundThatWouldBeLostIsTold_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<bool>("isPiped");
        for (const char* const command :
             {"ttaenc -e @in.wav -o @out", "mac @in.wav @out -c1000", "mac @in.wav @out -c2000",
              "shorten @in.wav @out", "shntool conv -o aiff -d @ @in.wav",
              "shntool conv -o flac -d @ @in.wav", "shntool hash @in.wav",
              "shntool cmp @in.wav @in.wav", "shntool join -d @ @in.wav @fine.wav",
              "shntool split -d @ -l 0:01 @in.wav", "shntool fix -d @ @in.wav @fine.wav",
              "shntool pad -d @ @in.wav", "shntool trim -d @ @in.wav", "shntool strip -d @ @in.wav",
              "shntool cue @in.wav @fine.wav", "shntool len @in.wav", "shntool info @in.wav"}) {
            row(command, QString::fromLatin1(command), false);
        }
        for (const char* const command :
             {"ttaenc -e - -o @out", "mac - @out -c1000", "shorten - @out"}) {
            row(command, QString::fromLatin1(command), true);
        }
    }
    void soundThatWouldBeLostIsTold() {
        QFETCH(QString, command);
        QFETCH(bool, isPiped);
        const QByteArray wav = wavFile(waves(90001, 16, 2), 2, 16, 44100);
        const QByteArray twice = wav + wav;
        QVERIFY(!write(u"in.wav"_s, twice).isEmpty() && !write(u"fine.wav"_s, wav).isEmpty());
        const QStringList before = files();
        const Ran told = ran(command, isPiped ? twice : QByteArray());
        QCOMPARE(told.status, 1);
        QVERIFY2(told.errors.contains("another WAV file stands behind its sound") &&
                     told.errors.contains(isPiped ? "standard input" : "in.wav"),
                 told.errors.constData());
        QCOMPARE(files(), before);
        const bool describes = command.contains(u"len"_s) || command.contains(u"info"_s);
        QCOMPARE(told.output.contains("0:02"), describes);
    }

    void pipesAndDevicesAreNotOpened_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("says");
        const auto rows = [](const QString& kind, const QByteArray& says) {
            for (const char* const command :
                 {"ttaenc -e %1 -o @out", "ttaenc -d %1 -o @out", "ttaenc -t %1",
                  "ttaenc -e @in.wav -o %1", "mac %1 @out -c2000", "mac %1 -v", "mac %1 @out -d",
                  "mac @in.wav %1 -c2000", "shorten %1 @out", "shorten -x %1 @out",
                  "shorten @in.wav %1", "shntool hash %1", "shntool split -f %1 @in.wav",
                  "shntool len -F %1", "shntool conv -O always -n %1 @in.wav",
                  "shntool conv -O always -o flac -n %1 @in.wav"}) {
                const QString whole = QString::fromLatin1(command).arg(kind);
                row(whole.toLatin1().constData(), whole, says);
            }
        };
        rows(u"@fifo"_s, "pipe");
        rows(u"@socket"_s, "socket");
        rows(u"/dev/null"_s, "device");
    }
    void pipesAndDevicesAreNotOpened() {
        QFETCH(QString, command);
        QFETCH(QByteArray, says);
        QVERIFY(!write(u"in.wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100)).isEmpty());
        QCOMPARE(::mkfifo(qUtf8Printable(path(u"fifo"_s)), 0600), 0);
        const FileDescriptor listening{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        std::strncpy(address.sun_path, qUtf8Printable(path(u"socket"_s)),
                     sizeof address.sun_path - 1);
        QCOMPARE(::bind(listening.fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        // Somebody waits at the other end, and would notice.
        const FileDescriptor reader{
            ::open(qUtf8Printable(path(u"fifo"_s)), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};

        const Ran told = ran(command);
        QCOMPARE(told.status, 1);
        // The list's own words, and shntool's for what it reads.
        QVERIFY2(told.errors.contains(says) || told.errors.contains("could not open") ||
                     told.errors.contains("cannot open non-regular file"),
                 told.errors.constData());
        QVERIFY(told.errors.contains("fifo") || told.errors.contains("socket") ||
                told.errors.contains("/dev/null"));
        QVERIFY(!QFile::exists(path(u"out"_s)));
        struct stat status = {};
        QCOMPARE(::stat(qUtf8Printable(path(u"fifo"_s)), &status), 0);
        QVERIFY(S_ISFIFO(status.st_mode));
    }

    void anEncoderHasItsFolderForItselfAndEndsWithUs() {
        write(u"in.wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100));
        const QString fifo = path(u"fifo"_s);
        QCOMPARE(::mkfifo(qUtf8Printable(fifo), 0600), 0);
        const QString encoder =
            write(u"encoder"_s, "#!/bin/sh\nexec > '" + fifo.toUtf8() +
                                    "'\nstat -L -c %a \"$(dirname \"$1\")\"\nexec sleep 1000\n");
        QVERIFY(QFile(encoder).setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        const FileDescriptor reader{
            ::open(qUtf8Printable(fifo), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
        QVERIFY(reader.fd >= 0);
        QProcess shntool;
        shntool.start(program(u"shntool"_s),
                      {u"conv"_s, u"-d"_s, path({}), u"-o"_s, u"cust ext=x "_s + encoder + u" %f"_s,
                       path(u"in.wav"_s)});
        QVERIFY(shntool.waitForStarted(quav::test::patience));
        QByteArray mode;
        std::array<char, 100> piece{};
        const auto readOn = [&] {
            const ssize_t count = ::read(reader.fd, piece.data(), piece.size());
            mode.append(piece.data(), std::max<ssize_t>(count, 0));
            return count;
        };
        QTRY_VERIFY((readOn(), mode.contains('\n')));
        QCOMPARE(mode, "700\n"_ba);
        QCOMPARE(readOn(), ssize_t(-1)); // The encoder has it open.
        shntool.kill();
        QVERIFY(shntool.waitForFinished(quav::test::patience));
        QTRY_COMPARE(readOn(), ssize_t(0));
    }

    void aTerminalGetsNoControlCharacters_data() {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QStringList>("arguments");
        row("ttaenc", u"ttaenc"_s, QStringList{u"-t"_s, u"%"_s});
        row("mac", u"mac"_s, QStringList{u"%"_s, u"-v"_s});
        row("shorten", u"shorten"_s, QStringList{u"%"_s, u"%.shn"_s});
        row("shorten, a word", u"shorten"_s, QStringList{u"a"_s, u"b"_s, u"%"_s});
        row("shntool", u"shntool"_s, QStringList{u"hash"_s, u"%"_s});
        row("shntool, a word", u"shntool"_s, QStringList{u"%"_s});
        row("shntool, a result", u"shntool"_s, QStringList{u"len"_s, u"%.wav"_s});
        row("shntool, a title", u"shntool"_s, QStringList{u"hash"_s, u"%.wav"_s});
    }
    void aTerminalGetsNoControlCharacters() {
        QFETCH(QString, tool);
        QFETCH(QStringList, arguments);
        const QString name = u"a\x1b[31m\nü\x85z"_s;
        write(name + u".wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100));
        arguments.replaceInStrings(u"%"_s, name);
        int master = -1;
        int terminal = -1;
        QCOMPARE(::openpty(&master, &terminal, nullptr, nullptr, nullptr), 0);
        const FileDescriptor screen{master};
        QProcess process;
        process.setWorkingDirectory(path({}));
        process.setChildProcessModifier([terminal] {
            ::dup2(terminal, STDOUT_FILENO);
            ::dup2(terminal, STDERR_FILENO);
        });
        process.start(program(tool), arguments);
        QVERIFY(process.waitForFinished(quav::test::patience));
        ::close(terminal);
        QByteArray shown;
        std::array<char, 4096> piece{};
        for (ssize_t count = 0; (count = ::read(master, piece.data(), piece.size())) > 0;) {
            shown.append(piece.data(), count);
        }
        QVERIFY2(shown.contains("a\\x1b[31m\\nü\\x85z"), shown.constData());
        QVERIFY(!shown.contains('\x1b') && !shown.contains("\xC2\x85"));

        process.setChildProcessModifier({});
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program(tool), arguments);
        QVERIFY(process.waitForFinished(quav::test::patience));
        QVERIFY(process.readAll().contains(name.toUtf8()));
    }
};

QTEST_GUILESS_MAIN(HostileInputTest)
#include "HostileInputTest.moc"
