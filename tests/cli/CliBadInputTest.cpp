#include "cli/Cli.h"
#include "support/Table.h"

#include <QTest>

#include <sys/mount.h>
#include <sys/stat.h>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using quav::test::audioMd5;
using quav::test::Cli;
using quav::test::contents;
using quav::test::isSoundFlac;
using quav::test::Ran;
using quav::test::row;
using quav::test::words;

namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void makeSource(const Cli& cli, const QString& kind) {
    const QString path = cli.flac(QStringLiteral("x.flac"));
    const QByteArray whole = contents(path);
    if (kind == QStringLiteral("truncated")) {
        write(path, whole.left(whole.size() / 2));
    } else if (kind == QStringLiteral("flipped")) {
        QByteArray flipped = whole;
        flipped[whole.size() / 2] = static_cast<char>(~whole[whole.size() / 2]);
        write(path, flipped);
    } else if (kind == QStringLiteral("text")) {
        write(path, "no music at all\n");
    } else if (kind == QStringLiteral("empty")) {
        write(path, {});
    } else if (kind == QStringLiteral("no tool")) {
        QVERIFY(QFile::remove(cli.tool()));
    } else if (kind == QStringLiteral("no folder")) {
        write(cli.path(QStringLiteral("afile")), "x");
    }
}

/// A small file system in memory that is gone with the object.
class SmallDisk {
public:
    explicit SmallDisk(QString path) : path_(std::move(path)) {
        mounted_ =
            mount("tmpfs", QFile::encodeName(path_).constData(), "tmpfs", 0, "size=64k") == 0;
    }
    ~SmallDisk() {
        if (mounted_) {
            umount(QFile::encodeName(path_).constData());
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return mounted_; }

private:
    QString path_;
    bool mounted_;
};

} // namespace

class CliBadInputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deletingOriginalsKeepsThem_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("told");
        const QString usual = QStringLiteral("--yes --output out in");
        row("truncated", "truncated", usual, 1, QByteArray("failed: x.flac: "));
        row("flipped byte", "flipped", usual, 1, QByteArray("ERROR"));
        row("text", "text", usual, 1, QByteArray("failed: x.flac: "));
        row("empty", "empty", usual, 1, QByteArray("failed: x.flac: "));
        row("tool missing", "no tool", usual, 2, QByteArray("“flac”"));
        row("parent of the output folder missing", "", "--yes --output no/such in", 2,
            QByteArray("no” does not exist"));
        row("output folder is a file", "no folder", "--yes --output afile in", 2,
            QByteArray("is not a folder"));
        row("answered no", "", "--no --output out in", 3, QByteArray("The answer was no"));
        row("truncated, through errors", "truncated", "--through-errors --yes --output out in", 0,
            QByteArray("warning: x.flac: *** Got error code 0:FLAC__"));
        row("flipped byte, through errors", "flipped", "--through-errors --yes --output out in", 0,
            QByteArray("ERROR"));
    }
    void deletingOriginalsKeepsThem() {
        QFETCH(QString, kind);
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QFETCH(QByteArray, told);
        const Cli cli;
        makeSource(cli, kind);
        const QByteArray before = contents(cli.in(QStringLiteral("x.flac")));
        const Ran ran = cli.decode(words(QStringLiteral("--delete-originals ") + arguments));
        QVERIFY2(ran.status == status, ran.errors.constData());
        QVERIFY2(ran.errors.contains(told), ran.errors.constData());
        QCOMPARE(contents(cli.in(QStringLiteral("x.flac"))), before);
        if (status != 0) {
            QCOMPARE(cli.namesIn(QStringLiteral("out")), QStringList());
        }
    }

    void anOutputThatIsItsSourceKeepsTheMusic() {
        const Cli cli;
        const QString source = cli.flac(QStringLiteral("x.flac"));
        const QByteArray before = audioMd5(source);
        QVERIFY(QFile::link(cli.path(QStringLiteral("in")), cli.path(QStringLiteral("link"))));
        const Ran ran =
            cli.encode(words(QStringLiteral("--delete-originals --yes --output link in")));
        QVERIFY2(ran.status == 0, ran.errors.constData());
        QCOMPARE(cli.namesIn(QStringLiteral("in")), QStringList(QStringLiteral("x.flac")));
        QVERIFY(isSoundFlac(source));
        QCOMPARE(audioMd5(source), before);
    }

    void wrongUsageStartsNothing_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("told");
        row("no command", "", QByteArray("command"));
        row("unknown command", "enrich", QByteArray("enrich"));
        row("unknown target", "encode --to mp3 --output out in", QByteArray("mp3"));
        row("no target", "encode --output out in", QByteArray("--to"));
        row("unknown option", "encode --to flac --output out --loud in", QByteArray("--loud"));
        row("level", "encode --to flac --level 9 --output out in", QByteArray("--level"));
        row("jobs", "encode --to flac --jobs 0 --output out in", QByteArray("--jobs"));
        row("yes and no", "encode --to flac --yes --no --output out in", QByteArray("--no"));
        row("verify and not", "encode --to flac --verify --no-verify --output out in",
            QByteArray("--no-verify"));
        row("two places", "encode --to flac --beside --output out in", QByteArray("--output"));
        row("no place", "encode --to flac in", QByteArray("--output DIR"));
        row("no files", "encode --to flac --output out", QByteArray("FILES"));
        row("missing file", "encode --to flac --output out in in/nothing.wav",
            QByteArray("“in/nothing.wav” does not exist"));
        row("nothing for the tab", "encode --to flac --output out notes.txt",
            QByteArray("File types not supported by this tab"));
        row("empty folder", "encode --to flac --output new out", QByteArray("nothing to do"));
        row("folder with a music name", "decode --to wav --output new folder.flac",
            QByteArray("nothing to do"));
        row("setting", "settings get noise", QByteArray("“noise”"));
        row("value of a setting", "settings set maxThreads many", QByteArray("“many”"));
    }
    void wrongUsageStartsNothing() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, told);
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        write(cli.path(QStringLiteral("notes.txt")), "x");
        QVERIFY(QDir(cli.path({})).mkdir(QStringLiteral("folder.flac")));
        const Ran ran = cli.run(words(arguments));
        QCOMPARE(ran.status, 2);
        QVERIFY2(ran.errors.contains(told), ran.errors.constData());
        QCOMPARE(ran.output, QByteArray());
        QVERIFY(cli.namesIn(QStringLiteral("out")).isEmpty());
        QVERIFY(!QFile::exists(cli.path(QStringLiteral("new"))));
    }

    void twoSourcesOfOneOutputAreNamed() {
        const Cli cli;
        const QString first = cli.wav(QStringLiteral("a.wav"));
        QVERIFY(QDir(cli.path({})).mkdir(QStringLiteral("in/sub")));
        const QString second = cli.wav(QStringLiteral("sub/a.wav"));
        const Ran ran = cli.encode(words(QStringLiteral("--output new in")));
        QCOMPARE(ran.status, 2);
        QVERIFY2(ran.errors.contains(first.toUtf8()), ran.errors.constData());
        QVERIFY2(ran.errors.contains(second.toUtf8()), ran.errors.constData());
        QVERIFY(!QFile::exists(cli.path(QStringLiteral("new"))));
    }

    void aDryRunTellsWhatIsInTheWay() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QVERIFY(QDir(cli.path({})).mkdir(QStringLiteral("in/sub")));
        cli.wav(QStringLiteral("sub/a.wav"));
        const Ran dry = cli.encode(words(QStringLiteral("--dry-run --output new in")));
        QCOMPARE(dry.status, 2);
        QVERIFY2(dry.output.count("in the way") == 1, dry.output.constData());
        QVERIFY2(dry.errors.contains("the same output file"), dry.errors.constData());
    }

    void aFileIsLeftOutWithoutSuccessOnlyIfItWasNamed_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("status");
        row("named", "in/a.wav in/notes.txt", 1);
        row("named in a dry run", "--dry-run in/a.wav in/notes.txt", 1);
        row("in a folder", "in", 0);
    }
    void aFileIsLeftOutWithoutSuccessOnlyIfItWasNamed() {
        QFETCH(QString, arguments);
        QFETCH(int, status);
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        write(cli.in(QStringLiteral("notes.txt")), "x");
        const Ran ran = cli.encode(words(QStringLiteral("--output out ") + arguments));
        QVERIFY2(ran.status == status, ran.errors.constData());
        QVERIFY2(ran.errors.contains("were skipped"), ran.errors.constData());
    }

    void whatStandsThereIsKeptWhenTheAnswerIsNo() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        write(cli.out(QStringLiteral("a.flac")), "precious");
        const Ran ran = cli.encode(words(QStringLiteral("--output out in")));
        QCOMPARE(ran.status, 3);
        QVERIFY2(ran.errors.contains(cli.out(QStringLiteral("a.flac")).toUtf8()),
                 ran.errors.constData());
        QCOMPARE(contents(cli.out(QStringLiteral("a.flac"))), QByteArray("precious"));
    }

    void aFailureDoesNotKeepTheOthersBack() {
        const Cli cli;
        cli.flac(QStringLiteral("good.flac"));
        write(cli.in(QStringLiteral("bad.flac")), "no music");
        const Ran ran = cli.decode(words(QStringLiteral("--output out in")));
        QCOMPARE(ran.status, 1);
        QCOMPARE(cli.namesIn(QStringLiteral("out")), QStringList(QStringLiteral("good.wav")));
        QVERIFY2(ran.errors.contains("done: good.flac\n"), ran.errors.constData());
        QVERIFY2(ran.errors.contains("1 done, 1 failed, 0 cancelled"), ran.errors.constData());
    }

    void theReportOfAFailureIsTheOutput() {
        const Cli cli;
        write(cli.in(QStringLiteral("bad.flac")), "no music");
        const Ran ran = cli.decode(words(QStringLiteral("--quiet --output out in")));
        QVERIFY2(ran.output.contains("ERROR"), ran.output.constData());
    }

    void aDiskThatIsFullKeepsNoHalfFile() {
        const Cli cli;
        const QString source = cli.wav(QStringLiteral("a.wav"));
        const QByteArray before = contents(source);
        const SmallDisk disk(cli.path(QStringLiteral("out")));
        if (!disk.isMounted()) {
            QSKIP("a file system can be mounted only by root");
        }
        const Ran ran =
            cli.encode(words(QStringLiteral("--delete-originals --yes --output out in")));
        QCOMPARE(ran.status, 1);
        QVERIFY(cli.namesIn(QStringLiteral("out")).isEmpty());
        QCOMPARE(contents(source), before);
    }

    void aFolderThatIsReadOnlyIsRefused() {
        if (geteuid() == 0) {
            QSKIP("root may write everywhere");
        }
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QFile::setPermissions(cli.path(QStringLiteral("out")), QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(cli.encode(words(QStringLiteral("--output out in"))).status, 2);
        QCOMPARE(cli.encode(words(QStringLiteral("--output out/new in"))).status, 2);
    }

    void aNameThatIsNotUtf8IsReported_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("outputs");
        row("alone", "in/raw$(printf '\\377').wav", 2, 0);
        row("with another", "in/raw$(printf '\\377').wav in/a.wav", 1, 1);
        row("in a folder", "in", 1, 1);
    }
    void aNameThatIsNotUtf8IsReported() {
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QFETCH(int, outputs);
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(cli.shell(QStringLiteral("cp in/a.wav in/raw$(printf '\\377').wav")).status, 0);
        const Ran ran =
            cli.shell(QStringLiteral("\"$QUAV\" encode --to flac --output out ") + arguments);
        QVERIFY2(ran.status == status, ran.errors.constData());
        QVERIFY2(ran.errors.contains("is not valid UTF-8"), ran.errors.constData());
        QCOMPARE(cli.namesIn(QStringLiteral("out")).size(), outputs);
    }

    void aDamagedSettingsFileIsTold() {
        const Cli cli;
        QVERIFY(QDir().mkpath(QFileInfo(cli.settingsFile()).path()));
        write(cli.settingsFile(), "[General]\nmaxThreads=three\n\x01 torn line\n");
        const Ran ran = cli.run(words(QStringLiteral("settings get maxThreads")));
        QCOMPARE(ran.status, 0);
        QCOMPARE(ran.output, QByteArray("2\n"));
        QVERIFY2(ran.errors.contains("is damaged"), ran.errors.constData());
    }

    void settingsThatCannotBeWrittenAreNoSuccess() {
        const Cli cli;
        write(QFileInfo(cli.settingsFile()).path(), "a file where the folder would be");
        const Ran ran = cli.run(words(QStringLiteral("settings set maxThreads 3")));
        QCOMPARE(ran.status, 1);
        QVERIFY2(ran.errors.contains("could not be written"), ran.errors.constData());
    }
};

QTEST_GUILESS_MAIN(CliBadInputTest)
#include "CliBadInputTest.moc"
