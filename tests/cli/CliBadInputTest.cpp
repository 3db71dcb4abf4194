#include "cli/Cli.h"
#include "support/Table.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

/// Makes one kind of trouble for the decoding of a sound file, if it can be made here.
bool makeTrouble(const Cli& cli, const QString& kind) {
    const QString path = cli.flac(u"x.flac"_s);
    QByteArray bytes = contents(path);
    const qsizetype middle = bytes.size() / 2;
    if (kind == u"truncated"_s) {
        bytes.truncate(middle);
    } else if (kind == u"flipped"_s) {
        bytes[middle] = static_cast<char>(~bytes.at(middle));
    } else if (kind == u"text"_s) {
        bytes = "no music at all\n";
    } else if (kind == u"empty"_s) {
        bytes.clear();
    } else if (kind == u"no tool"_s) {
        QFile::remove(cli.tool());
    } else if (kind == u"read-only"_s) {
        cli.giveAway();
        return QFile::setPermissions(u"out"_s, QFile::ReadOwner | QFile::ExeOwner);
    } else if (kind == u"full"_s) {
        return run(u"mount"_s, words(u"-t tmpfs -o size=64k tmpfs out"_s)).status == 0;
    }
    return writeFile(path, bytes) && writeFile(u"afile"_s, "x");
}

} // namespace

class CliBadInputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deletingOriginalsKeepsThem_data() {
        columns<QString, QString, int, QString>("kind", "arguments", "status", "told");
        const QString usual = u"--yes --output out in"_s;
        const QString through = u"--through-errors "_s + usual;
        row("truncated", "truncated", usual, 1, "failed: x.flac: ");
        row("flipped byte", "flipped", usual, 1, "ERROR");
        row("text", "text", usual, 1, "failed: x.flac: ");
        row("empty", "empty", usual, 1, "failed: x.flac: ");
        row("disk full", "full", usual, 1, "failed: x.flac: No space left on device: ");
        row("tool missing", "no tool", usual, 2, "“flac”");
        row("no parent of the folder", "", "--yes --output no/such in", 2, "no” does not exist");
        row("output folder is a file", "", "--yes --output afile in", 2, "is not a folder");
        row("read-only folder", "read-only", usual, 2, "cannot be written to");
        row("new folder in it", "read-only", "--yes --output out/new in", 2, "cannot be made");
        row("answered no", "", "--no --output out in", 3, "The answer was no");
        row("truncated, go on", "truncated", through, 0, "warning: x.flac: *** Got error code 0");
        row("flipped byte, go on", "flipped", through, 0, "ERROR");
    }
    void deletingOriginalsKeepsThem() {
        QFETCH(QString, kind);
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QFETCH(QString, told);
        const Cli cli;
        if (!makeTrouble(cli, kind)) {
            QSKIP("only root can mount a small file system");
        }
        const QByteArray before = contents(cli.in(u"x.flac"_s));
        const QString command = u"decode --to wav --delete-originals "_s + arguments;
        const Ran ran = kind == u"read-only" ? cli.runAsOrdinaryUser(command) : cli.run(command);
        const QStringList outputs = cli.namesIn(u"out"_s);
        if (kind == u"full"_s) {
            run(u"umount"_s, {u"out"_s});
        }
        QVERIFY2(ran.status == status, ran.errors.constData());
        QVERIFY2(ran.errors.contains(told.toUtf8()), ran.errors.constData());
        QCOMPARE(contents(cli.in(u"x.flac"_s)), before);
        QCOMPARE(outputs, status == 0 ? QStringList(u"x.wav"_s) : QStringList());
    }

    void whatAnOrdinaryUserMayNotDoCostsNothing_data() {
        columns<QString, QString, int, QString, QString, QString>("before", "arguments", "status",
                                                                  "told", "made", "left");
        const QString a = u"encode --to flac --delete-originals --yes --output out in/a.wav"_s;
        const QString x = u"decode --to wav --delete-originals --yes --output out in/x.flac"_s;
        const QString beside = u"encode --to flac --delete-originals --yes --beside "_s;
        row("read-only WAV", "chmod 444 in/a.wav", a, 0, "1 done", "out/a.flac", "in/x.flac");
        row("read-only FLAC", "chmod 444 in/x.flac", x, 0, "1 done", "out/x.wav", "in/a.wav");
        row("read-only, in its place", "chmod 444 in/x.flac", beside + u"in/x.flac"_s, 0, "1 done",
            "in/x.flac", "in/a.wav");
        row("somebody else's", "chown 0 in/a.wav && chmod 444 in/a.wav", a, 0, "1 done",
            "out/a.flac", "in/x.flac");
        row("not for its owner", "chown 0 in/a.wav && chmod 044 in/a.wav", a, 0, "1 done",
            "out/a.flac", "in/x.flac");
        row("unreadable", "chmod 0 in/a.wav", a, 1,
            "failed: a.wav: ERROR: can't open input file DIR/in/a.wav: Permission denied", "",
            "in/a.wav in/x.flac");
        row("output folder", "chmod 555 out", a, 2,
            "The output folder “DIR/out” cannot be written to.", "", "in/a.wav in/x.flac");
        row("source folder", "chmod 555 in", a, 0,
            "warning: a.wav: the original could not be deleted and is still there", "out/a.flac",
            "in/a.wav in/x.flac");
        row("one folder of two", "mkdir b; mv in/x.flac b; chown 65534 b; chmod 555 in",
            beside + u"in b/x.flac"_s, 1, "They were left out.\nDIR/in/a.wav\n", "b/x.flac",
            "in/a.wav");
    }
    void whatAnOrdinaryUserMayNotDoCostsNothing() {
        QFETCH(QString, before);
        QFETCH(QString, arguments);
        QFETCH(QString, told);
        QFETCH(QString, made);
        const Cli cli;
        cli.flac(u"x.flac"_s);
        run(u"metaflac"_s, words(u"--set-tag=TITLE=Lied in/x.flac"_s));
        const QByteArray music = audioMd5(cli.wav(u"a.wav"_s));
        QVERIFY(writeFile(cli.settingsFile(), "[General]\nkeepModificationTime=true\n"));
        cli.giveAway();
        const auto removable = qScopeGuard([&] { cli.shell(u"chmod -R u+rwX ."_s); });
        if (cli.shell(u"touch -d 1999-12-31T12:00:00 in/*; "_s + before).status != 0) {
            QSKIP("only root can give a file away");
        }
        const auto mode = QFileInfo(words(arguments).last()).permissions();

        const Ran ran = cli.runAsOrdinaryUser(arguments);

        QVERIFY2(ran.errors.contains(told.replace(u"DIR"_s, cli.path({})).toUtf8()),
                 ran.errors.constData());
        QTEST(ran.status, "status");
        if (!made.isEmpty()) {
            QCOMPARE(audioMd5(made), music);
            QVERIFY(contents(made).contains(made == u"out/a.flac" ? "ENCODER=Quav" : "Lied"));
            QCOMPARE(QFileInfo(made).permissions(), mode);
            QCOMPARE(QFileInfo(made).lastModified(), QDateTime(QDate(1999, 12, 31), QTime(12, 0)));
            QVERIFY(QFile::remove(made));
        }
        const Ran left = cli.shell(u"find in out b -type f | sort | xargs"_s);
        QTEST(QString::fromUtf8(left.output.trimmed()), "left");
    }

    void oneUnfitFileKeepsNoneFromBeingDone_data() {
        columns<QString, QString>("kind", "told");
        row("cut short", "cut", "failed: unfit.wav: ERROR: got partial sample");
        row("32-bit float", "float", "failed: unfit.wav: ERROR: unsupported");
        row("sound behind its header", "behind",
            "failed: unfit.wav: “unfit.wav” was not converted");
        row("no sound", "text", "failed: unfit.wav: ERROR");
    }
    void oneUnfitFileKeepsNoneFromBeingDone() {
        QFETCH(QString, kind);
        QFETCH(QString, told);
        const Cli cli;
        cli.wav(u"a.wav"_s);
        cli.wav(u"z.wav"_s);
        const QByteArray sound = contents(cli.wav(u"unfit.wav"_s));
        if (kind == u"float") {
            run(u"ffmpeg"_s, words(u"-v error -i in/a.wav -c:a pcm_f32le -y in/unfit.wav"_s));
        } else {
            QVERIFY(writeFile(u"in/unfit.wav"_s, kind == u"cut"      ? sound.first(40001)
                                                 : kind == u"behind" ? sound + sound
                                                                     : "no music at all\n"));
        }
        const Ran ran = cli.encode(u"--output out in"_s);
        QVERIFY2(ran.errors.contains(told.toUtf8()), ran.errors.constData());
        QVERIFY2(ran.errors.contains("2 done, 1 failed"), ran.errors.constData());
        QCOMPARE(ran.status, 1);
        QCOMPARE(cli.namesIn(u"out"_s), (QStringList{u"a.flac"_s, u"z.flac"_s}));
    }

    void anOutputThatIsItsSourceKeepsTheMusic() {
        const Cli cli;
        const QString source = cli.flac(u"x.flac"_s);
        const QByteArray before = audioMd5(source);
        QVERIFY(QFile::link(cli.path(u"in"_s), cli.path(u"link"_s)));
        const Ran ran = cli.encode(u"--delete-originals --yes --output link in"_s);
        QVERIFY2(ran.status == 0, ran.errors.constData());
        QCOMPARE(cli.namesIn(u"in"_s), QStringList(u"x.flac"_s));
        QVERIFY(isSoundFlac(source));
        QCOMPARE(audioMd5(source), before);
    }

    void whatIsAskedForDecidesTheEnd_data() {
        columns<QString, int, QString, QString>("arguments", "status", "outputs", "told");
        const QString flac = u"encode --to flac --output out "_s;
        const QString elsewhere = u"encode --to flac --output new "_s;
        const QString over = u"encode --to flac --output there in "_s;
        const QString some = u"decode --to wav --output out bad"_s;
        const QString raw = u"\"$RAW\" "_s;
        row("version", "--version", 0, "", "quav-cli ");
        row("help", "encode --help", 0, "", "Example");
        row("no command", "", 2, "", "command");
        row("unknown target", "encode --to mp3 --output out in", 2, "", "mp3");
        row("unknown option", flac + u"--loud in"_s, 2, "", "--loud");
        row("level", flac + u"--level 9 in"_s, 2, "", "--level");
        row("mode of another target", flac + u"--mode high in"_s, 2, "",
            "--mode has no effect with --to flac.");
        row("switch of another target", u"encode --to wv --output out --verify in"_s, 2, "",
            "--verify has no effect with --to wv.");
        row("switched off for another", u"encode --to wv --output out --no-verify in"_s, 0, "a.wv",
            "1 done");
        row("jobs", flac + u"--jobs 0 in"_s, 2, "", "--jobs");
        row("yes and no", flac + u"--yes --no in"_s, 2, "", "--no");
        row("no place", "encode --to flac in", 2, "", "--output DIR");
        row("no files", flac, 2, "", "FILES");
        row("missing file", flac + u"in in/b.wav"_s, 2, "", "“in/b.wav” does not exist");
        row("wrong kind", flac + u"x.txt"_s, 2, "", "not supported by this tab");
        row("nothing in it", elsewhere + u"a.flac"_s, 2, "", "nothing to do");
        row("setting", "settings get noise", 2, "", "“noise”");
        row("value of a setting", "settings set maxThreads many", 2, "", "“many”");
        row("one output of two", elsewhere + u"two"_s, 2, "",
            "“DIR/two/a.wav” and “DIR/two/b/a.wav”");
        row("plan of one output", elsewhere + u"--dry-run two"_s, 2, "",
            "in the way: “DIR/two/a.wav");
        row("one kind wrong", flac + u"in/a.wav x.txt"_s, 1, "a.flac", "were skipped");
        row("plan of it", flac + u"--dry-run in/a.wav x.txt"_s, 1, "", "flac -5 /");
        row("kind wrong in a folder", flac + u"mixed"_s, 0, "a.flac", "were skipped");
        row("named of no kind", some + u"/good.flac odd/c.xyz"_s, 1, "good.wav",
            "“DIR/odd/c.xyz” is of");
        row("of no kind in a folder", "decode --to wav --output out odd", 0, "a.wav", "1 done");
        row("only of no kind", "decode --to wav --output out odd/c.xyz", 2, "", "nothing to do");
        row("plan of no kind", "decode --to wav --dry-run --output out odd", 0, "",
            "no kind to convert: DIR/odd/c");
        row("not UTF-8", flac + raw, 2, "", "is not valid UTF-8");
        row("one not UTF-8", flac + raw + u"in"_s, 1, "a.flac", "is not valid UTF-8");
        row("one not UTF-8 in a folder", flac + u"raw"_s, 1, "a.flac", "is not valid UTF-8");
        row("one fails", some, 1, "good.wav", "done: good.flac\n");
        row("the count of it", some, 1, "good.wav", "1 done, 1 failed, 0 cancelled");
        row("the report of it", some + u" --quiet"_s, 1, "good.wav", "ERROR");
        row("pipe", flac + u"pipe.wav"_s, 2, "", "“DIR/pipe.wav” is a named pipe");
        row("link to a pipe", flac + u"link.wav in"_s, 1, "a.flac", "“DIR/link.wav” is a named");
        row("device", flac + u"/dev/null in"_s, 1, "a.flac", "“/dev/null” is a device");
        row("pipe in a folder", flac + u"piped"_s, 1, "a.flac", "“DIR/piped/p.wav” is a named");
        row("pipe in a list", "checksum create --yes --kind md5 --save out/md5 piped", 1, "md5",
            "“DIR/piped/p.wav” is a named pipe");
        row("list that is a pipe", "checksum verify pipe.md5", 2, "", "“DIR/pipe.md5” is a named");
        row("nobody says yes", over, 3, "", "\nDIR/there/a.flac\n");
        row("plan says so", over + u"--dry-run"_s, 0, "", "would overwrite DIR/there/a.flac\n");
        row("plan forces the tool", over + u"--dry-run"_s, 0, "", "flac -5 -f /");
        row("in brackets", flac + u"'[a,b]'"_s, 0, "a.flac", "1 done");
        row("in braces", flac + u"'{}'"_s, 0, "a.flac", "1 done");
        row("plus signs", flac + u"++"_s, 0, "a.flac", "1 done");
        row("a command's name", flac + u"decode"_s, 0, "a.flac", "1 done");
        row("an option's name", flac + u"-- --json"_s, 0, "a.flac", "1 done");
        row("dashes", flac + u"-- --"_s, 0, "a.flac", "1 done");
    }
    void whatIsAskedForDecidesTheEnd() {
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QFETCH(QString, outputs);
        QFETCH(QString, told);
        const Cli cli;
        for (const QString& folder :
             words(u"in two two/b mixed raw piped [a,b] {} ++ decode --json --"_s)) {
            cli.wav(u"../%1/a.wav"_s.arg(folder));
        }
        QVERIFY(writeFile(u"bad/bad.flac"_s, "no music"));
        QVERIFY(writeFile(u"odd/c.xyz"_s, contents(u"in/a.wav"_s)));
        cli.flac(u"../odd/a.flac"_s);
        cli.flac(u"../bad/good.flac"_s);
        QVERIFY(QDir().mkdir(u"a.flac"_s) && writeFile(u"there/a.flac"_s, "precious"));
        QVERIFY(writeFile(u"x.txt"_s, "x") && writeFile(u"mixed/x.txt"_s, "x"));
        const QString script = u"mkfifo pipe.wav pipe.md5 piped/p.wav; ln -s pipe.wav link.wav; "
                               "RAW=raw/$(printf '\\377').wav; cp in/a.wav \"$RAW\"; \"$QUAV\" %1; "
                               "status=$?; rm \"$RAW\"; exit $status"_s;
        const Ran ran = cli.shell(script.arg(arguments));
        QVERIFY2(ran.status == status, ran.errors.constData());
        const QRegularExpression printing(u"--(dry-run|quiet|help|version)"_s);
        const bool printed = arguments.contains(printing);
        const QByteArray& text = printed ? ran.output : ran.errors;
        told.replace(u"DIR/"_s, cli.path({}) + u'/');
        QVERIFY2(text.contains(told.toUtf8()), text.constData());
        if (status != 1) {
            QCOMPARE(ran.output.isEmpty(), !printed);
        }
        QCOMPARE(cli.namesIn(u"out"_s), words(outputs));
        QVERIFY(!QFile::exists(cli.path(u"new"_s)));
        QCOMPARE(contents(u"there/a.flac"_s), QByteArray("precious"));
    }

    void aFileThatBecomesAPipeIsNotOpened() {
        const Cli cli;
        cli.wav(u"1.wav"_s);
        cli.wav(u"2.wav"_s);
        const QString flac = QFile::symLinkTarget(cli.tool());
        QVERIFY(QFile::remove(cli.tool()));
        QVERIFY(writeFile(cli.tool(), u"#!/bin/sh\nrm -f in/2.wav; mkfifo in/2.wav\n"
                                      "exec '%1' \"$@\"\n"_s.arg(flac)
                                          .toUtf8()));
        QVERIFY(QFile::setPermissions(cli.tool(), QFile::ReadOwner | QFile::ExeOwner));
        const Ran ran = cli.encode(u"--jobs 1 --stall-timeout 5 --output out in"_s);
        QCOMPARE(ran.status, 1);
        QVERIFY2(ran.errors.contains("in/2.wav” is a named pipe"), ran.errors.constData());
        QCOMPARE(cli.namesIn(u"out"_s), QStringList(u"1.flac"_s));
    }

    void settingsThatAreDamagedAreTold() {
        const Cli cli;
        QVERIFY(writeFile(cli.settingsFile(), "[General]\nmaxThreads=three\n\x01 torn line\n"));
        const Ran ran = cli.run(u"settings get maxThreads"_s);
        QCOMPARE(ran.status, 0);
        QCOMPARE(ran.output, QByteArray("2\n"));
        QVERIFY2(ran.errors.contains("is damaged"), ran.errors.constData());
    }
};

QTEST_GUILESS_MAIN(CliBadInputTest)
#include "CliBadInputTest.moc"
