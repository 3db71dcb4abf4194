#include "ChecksumBench.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace quav;
using namespace quav::test;
using Command = ChecksumCommand;

namespace {

constexpr qsizetype md5InStreamInfo = 26;
constexpr qsizetype secondBlock = 42;

QByteArray patched(QByteArray file, qsizetype at, const QByteArray& bytes) {
    return file.replace(at, bytes.size(), bytes);
}

QByteArray fingerprintOf(const QString& flac) {
    return run(u"metaflac"_s, {u"--show-md5"_s, flac}).output.trimmed();
}

/// A FLAC file in one of the states that a disk or an encoder leaves it in.
QString flacThatIs(const Bench& bench, const QString& state) {
    const QString flac = bench.flac(u"a.flac"_s, {.frames = 30011});
    const QByteArray whole = contents(flac);
    if (state == u"damaged") {
        damage(flac, false);
    } else if (state == u"cut short") {
        damage(flac, true);
    } else if (state == u"without STREAMINFO") {
        bench.written(u"a.flac"_s, patched(whole, 8, QByteArray(34, '\0')));
    } else if (state == u"with another MD5") {
        bench.written(u"a.flac"_s, patched(whole, md5InStreamInfo, "no digest of any"));
    } else if (state == u"without an MD5") {
        bench.written(u"a.flac"_s, patched(whole, md5InStreamInfo, QByteArray(16, '\0')));
    } else if (state == u"a text") {
        bench.written(u"a.flac"_s, "no sound");
    } else if (state == u"gone") {
        QFile::remove(flac);
    }
    return flac;
}

} // namespace

/// What the tools say of files, and what becomes of the rest when one of them is not there.
class ChecksumToolsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metaflacsComplaintIsReportedThoughStreamInfoIsRight_data() {
        columns<qsizetype, QByteArray, QString>("length", "block", "complaint");
        // Its sound is whole, and the block is read as what it is not.
        row("a cue sheet that is none", qsizetype(-1), "\x05"_ba, u"_STATUS_READ_ERROR"_s);
        row("a picture that is none", qsizetype(-1), "\x06"_ba, u"_STATUS_BAD_METADATA"_s);
        row("no more than STREAMINFO", secondBlock, ""_ba, u"_STATUS_READ_ERROR"_s);
    }
    void metaflacsComplaintIsReportedThoughStreamInfoIsRight() {
        QFETCH(qsizetype, length);
        QFETCH(QByteArray, block);
        QFETCH(QString, complaint);
        Bench bench;
        const QString good = bench.flac(u"good.flac"_s, {.frames = 30011});
        const QByteArray digest = fingerprintOf(good);
        bench.written(u"bad.flac"_s, patched(contents(good), secondBlock, block)
                                         .first(length < 0 ? contents(good).size() : length));
        const QString report = verify(
            bench, {bench.written(u"l.ffp"_s, "bad.flac:" + digest + "\ngood.flac:" + digest)});
        QVERIFY2(report.startsWith(u"Verify FFP: l.ffp\nbad.flac: ERROR: reading metadata, status "
                                   "= \"FLAC__METADATA_CHAIN"_s +
                                   complaint),
                 qPrintable(report));
        QVERIFY2(report.contains(u" : bad.flac\ngood.flac : OK\n"_s), qPrintable(report));
        QCOMPARE(words(bench.verdicts), u"unreadable ok");
        QVERIFY2(bench.verdicts[0].note.contains(complaint) &&
                     bench.verdicts[0].note.contains(u"is that of the list"_s),
                 qPrintable(bench.verdicts[0].note));
    }

    void fingerprintsAreReadSideBySideAndACancelEndsThat() {
        Bench bench;
        QByteArray list;
        for (int number = 0; number < 20; ++number) {
            list +=
                bench.flac(u"%1.flac"_s.arg(number), {.frames = 600}).section(u'/', -1).toUtf8() +
                ':' + QByteArray(32, '0') + '\n';
        }
        const Gate gate(bench, u"metaflac"_s);
        constexpr int atOnce = 3;
        bench.workbench.queue().maxThreadsChanged(atOnce);
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        bench.checksum.options().set(checksumOptions().command, Command::Verify);
        addFiles(bench.checksum, {bench.written(u"l.ffp"_s, list)});
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Queued);
        QTRY_COMPARE_WITH_TIMEOUT(gate.runs(), atOnce, 60000);
        bench.workbench.queue().cancelAllTasks();
        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(idle.count(), 1, 60000);
        QCOMPARE(bench.reports.value(0), u"Verify FFP: l.ffp\nCanceled\n\n");
        QCOMPARE(gate.runs(), atOnce);
    }

    void aMissingToolStopsWhatNeedsItAlone_data() {
        columns<QString, Command, QString, QString, QString>("tool", "command", "files", "failed",
                                                             "verdicts");
        const QString lists = u"l.md5 l.ffp l.st5"_s;
        row("shntool", u"shntool"_s, Command::Verify, lists, u"l.st5"_s,
            u"a.flac=ok a.flac=ok l.st5=unreadable"_s);
        row("metaflac", u"metaflac"_s, Command::Verify, lists, u"l.ffp"_s,
            u"a.flac=ok a.flac=ok l.ffp=unreadable"_s);
        row("flac", u"flac"_s, Command::Verify, lists, u"l.ffp"_s,
            u"a.flac=ok a.flac=ok l.ffp=unreadable"_s);
        row("mac", u"mac"_s, Command::Test, u"a.ape a.flac"_s, u"a.ape"_s,
            u"a.ape=unreadable a.flac=ok"_s);
    }
    void aMissingToolStopsWhatNeedsItAlone() {
        QFETCH(QString, tool);
        QFETCH(Command, command);
        QFETCH(QString, files);
        Bench bench;
        const QString flac = bench.flac(u"a.flac"_s, {.frames = 30011});
        const QByteArray digest = fingerprintOf(flac);
        bench.written(u"a.ape"_s, "x");
        bench.written(u"l.md5"_s, md5Of(flac) + " *a.flac\n");
        bench.written(u"l.ffp"_s, "a.flac:" + digest);
        bench.written(u"l.st5"_s, digest + "  [shntool]  a.flac");
        QVERIFY(QFile::remove(bench.toolsDir.filePath(tool)));
        bench.checksum.options().set(checksumOptions().command, command);
        for (const QString& file : files.split(u' ')) {
            bench.checksum.addFile(bench.path(file));
        }
        bench.run(bench.checksum);
        QTEST(bench.failed.join(u' '), "failed");
        QStringList found;
        for (const Verdict& verdict : bench.verdicts) {
            found << QFileInfo(verdict.file).fileName() + u'=' + word(verdict.kind);
            if (verdict.kind == Verdict::Kind::Unreadable) {
                QVERIFY2(verdict.note.contains(u"The tool “%1” is not in"_s.arg(tool)) &&
                             verdict.note.contains(u"The Debian package “"_s),
                         qPrintable(verdict.note));
                const QString report = bench.reports.join(u'\n');
                QVERIFY2(report.contains(verdict.note), qPrintable(report));
            }
        }
        found.sort();
        QTEST(found.join(u' '), "verdicts");
        QVERIFY(bench.prompts.alerts.isEmpty() && bench.checksum.fileNames().isEmpty());
    }

    void whatShntoolSaysIsJudged_data() {
        columns<QString, QString, QString, bool>("state", "verified", "created", "warns");
        row("whole", u"whole"_s, u"ok"_s, QString(), false);
        row("damaged", u"damaged"_s, u"failed"_s, u"failed"_s, false);
        row("cut short", u"cut short"_s, u"failed"_s, u"failed"_s, false);
        row("STREAMINFO", u"without STREAMINFO"_s, u"failed"_s, u"failed"_s, false);
        row("another MD5", u"with another MD5"_s, u"ok"_s, QString(), true);
        row("a text", u"a text"_s, u"unreadable"_s, u"unreadable"_s, false);
        row("gone", u"gone"_s, u"missing"_s, QString(), false);
    }
    void whatShntoolSaysIsJudged() {
        QFETCH(QString, state);
        QFETCH(QString, created);
        QFETCH(bool, warns);
        Bench bench;
        const QByteArray digest = fingerprintOf(flacThatIs(bench, u"whole"_s));
        const QString flac = flacThatIs(bench, state);
        const auto warnings = [&] {
            return bench.workbench.queue().warnings().filter(
                u"the MD5 that the file stores is not"_s);
        };
        verify(bench, {bench.written(u"l.st5"_s, digest + "  [shntool]  a.flac")});
        QTEST(words(bench.verdicts), "verified");
        QCOMPARE(warnings().size(), warns ? 1 : 0);
        QCOMPARE(bench.verdicts[0].note.contains(u"the MD5 that the file stores"_s), warns);
        if (!QFile::exists(flac)) {
            return;
        }
        bench.verdicts.clear();
        bench.checksum.options().set(checksumOptions().command, Command::Create);
        bench.checksum.options().set(checksumOptions().kind, ChecksumKind::St5);
        bench.checksum.options().set(checksumOptions().sourceSave, true);
        bench.checksum.addFile(flac);
        bench.run(bench.checksum);
        QCOMPARE(words(bench.verdicts), created);
        QCOMPARE(bench.failed.size(), created.isEmpty() ? 0 : 1);
        QCOMPARE(contents(bench.path(u"checksum.st5"_s)).contains(digest), created.isEmpty());
        QCOMPARE(warnings().size(), warns ? 1 : 0);
    }

    void aNameWithTheWordsOfAComplaintIsNone() {
        Bench bench;
        const QString flac = bench.flac(u"a warning: b.flac"_s, {.frames = 30011});
        verify(bench,
               {bench.written(u"l.st5"_s, fingerprintOf(flac) + "  [shntool]  a warning: b.flac")});
        QCOMPARE(words(bench.verdicts), u"ok");
        QVERIFY(bench.verdicts[0].note.isEmpty());
        QVERIFY(bench.workbench.queue().warnings().isEmpty());
    }

    void aFileWithoutAFingerprintIsIntactWithARemark_data() {
        columns<QString, bool>("state", "remarks");
        row("with", u"whole"_s, false);
        row("without", u"without an MD5"_s, true);
    }
    void aFileWithoutAFingerprintIsIntactWithARemark() {
        QFETCH(QString, state);
        QFETCH(bool, remarks);
        Bench bench;
        const QString flac = flacThatIs(bench, state);
        bench.checksum.options().set(checksumOptions().command, Command::Test);
        bench.checksum.addFile(flac);
        bench.run(bench.checksum);
        const Verdict tested = bench.verdicts.at(0);
        QStringList warnings = bench.workbench.queue().warnings();
        verify(bench, {bench.written(u"l.ffp"_s, "a.flac:" + fingerprintOf(flac))});
        QCOMPARE(word(tested.kind), u"ok");
        QCOMPARE(tested.note, bench.verdicts.at(0).note);
        QCOMPARE(tested.note, remarks ? u"it has no fingerprint, only zeros"_s : QString());
        warnings += bench.workbench.queue().warnings();
        QCOMPARE(warnings.size(), remarks ? 2 : 0);
        QCOMPARE(warnings.value(0).section(u'“', 1), warnings.value(1).section(u'“', 1));
    }

    void filesStayListedUnlessTheDialogWasCancelled_data() {
        columns<ChecksumKind, QString, bool>("kind", "list", "staysAfterTheDialog");
        row("MD5", ChecksumKind::Md5, u"md5sum.md5"_s, false);
        row("ST5", ChecksumKind::St5, u"checksum.st5"_s, false);
        row("FFP", ChecksumKind::Ffp, u"fingerprint.ffp.txt"_s, true);
    }
    void filesStayListedUnlessTheDialogWasCancelled() {
        QFETCH(ChecksumKind, kind);
        QFETCH(QString, list);
        QFETCH(bool, staysAfterTheDialog);
        Bench bench;
        bench.written(list, "theirs\n");
        bench.checksum.options().set(checksumOptions().command, Command::Create);
        bench.checksum.options().set(checksumOptions().kind, kind);
        const auto filesAfter = [&](bool beside) {
            bench.checksum.options().set(checksumOptions().sourceSave, beside);
            bench.prompts.answers = {false};
            [&] { QCOMPARE(bench.press(bench.checksum), CommandOutcome::Declined); }();
            return bench.checksum.fileNames().size();
        };
        addFiles(bench.checksum, {bench.flac(u"a/t.flac"_s), bench.flac(u"t.flac"_s)});
        bench.prompts.savePath = bench.path(u"out/l"_s); // where no name leads to its file
        QCOMPARE(filesAfter(false), 2);
        bench.checksum.clearFiles();
        bench.checksum.addFile(bench.path(u"t.flac"_s));
        QCOMPARE(filesAfter(true), 1);
        QCOMPARE(bench.prompts.questions.size(), 2);
        QCOMPARE(contents(bench.path(list)), "theirs\n");
        bench.prompts.savePath.reset();
        QCOMPARE(filesAfter(false), staysAfterTheDialog ? 1 : 0);
    }

    void filesWithoutSoundNeedNoTool_data() {
        columns<ChecksumKind, QString>("kind", "tool");
        row("ST5", ChecksumKind::St5, u"shntool"_s);
        row("FFP", ChecksumKind::Ffp, u"metaflac"_s);
    }
    void filesWithoutSoundNeedNoTool() {
        QFETCH(ChecksumKind, kind);
        QFETCH(QString, tool);
        Bench bench;
        QVERIFY(QFile::remove(bench.toolsDir.filePath(tool)));
        bench.checksum.options().set(checksumOptions().command, Command::Create);
        bench.checksum.options().set(checksumOptions().kind, kind);
        bench.checksum.addFile(bench.written(u"a.mp3"_s, "x"));
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::NothingToDo);
        QVERIFY(bench.prompts.alerts.isEmpty() && bench.checksum.fileNames().isEmpty());
    }

    void codecsTestTheirFiles() {
        Bench bench;
        const QString wav = bench.wav(u"a.wav"_s);
        const QString tools = bench.toolsDir.path() + u'/';
        QStringList files{bench.flac(u"a.flac"_s)};
        for (const QString& suffix : {u"ape"_s, u"tta"_s, u"wv"_s}) {
            files << bench.path(u"a."_s + suffix);
        }
        run(tools + u"mac"_s, {wav, files[1], u"-c1000"_s});
        run(tools + u"ttaenc"_s, {wav, u"-o"_s, files[2]});
        run(u"wavpack"_s, {u"-q"_s, wav, u"-o"_s, files[3]});
        QStringList damaged;
        for (const QString& file : files) {
            damaged << bench.path(u"bad"_s + QFileInfo(file).fileName());
            QVERIFY(QFile::copy(file, damaged.last()));
            damage(damaged.last(), false);
        }
        addFiles(bench.checksum, files + damaged << wav);
        bench.run(bench.checksum);
        QVERIFY(bench.checksum.fileNames().isEmpty());
        QCOMPARE(bench.verdicts.size(), 8);
        for (const Verdict& verdict : bench.verdicts) {
            const bool isBad = damaged.contains(verdict.file);
            QVERIFY2(isBad == (verdict.kind == Verdict::Kind::Failed), qPrintable(verdict.file));
            QVERIFY2(isBad != verdict.note.isEmpty(), qPrintable(verdict.file));
        }
        const QString report = bench.reports.join(QString());
        for (const QString& part :
             {u"a.flac: testing, 100% complete\na.flac: ok\n"_s,
              u"\nbada.flac: ERROR while decoding data\n"_s, u"a.ape\nProgress: 100.0%"_s,
              u"% done..."_s, u"verified "_s, u"is damaged"_s}) {
            QVERIFY2(report.contains(part), qPrintable(part + u" is not in\n"_s + report));
        }
        QCOMPARE(bench.failed.size(), 4);
    }

    void aFileThatMatchesAndIsDamagedHasFailed() {
        Bench bench;
        const QString flac = bench.flac(u"a.flac"_s);
        const QByteArray ffp = run(u"metaflac"_s, {u"--show-md5"_s, flac}).output;
        damage(flac, false);
        const QString report = verify(bench, {bench.written(u"a.ffp"_s, "a.flac:" + ffp)});
        QVERIFY(report.contains(u"a.flac : OK\n"_s));
        QVERIFY(report.contains(u"a.flac: ERROR while decoding data\n"_s));
        QCOMPARE(words(bench.verdicts), u"failed");
        QCOMPARE(bench.verdicts.front().note, u"flac found it damaged");
    }

    void flacsWordsAreReportedWhereverThePipeIsCut_data() {
        columns<QString, QString>("says", "report");
        const QString backspaces = u"\\b"_s.repeated(21);
        row("short", u"a.flac: ok                    \\n"_s,
            u"a.flac: testing, 100% complete\na.flac: ok\n"_s);
        row("updates",
            u"flac 1.4\\na.flac: testing, 60%% complete"_s + backspaces +
                u"testing, 81%% complete"_s + backspaces + u"ok                    \\n"_s,
            u"a.flac: testing, 100% complete\na.flac: ok\n"_s);
        row("damaged",
            u"a.flac: testing, 5%% complete"_s + backspaces +
                u"*** Got error code 0\\n\\n\\na.flac: ERROR while decoding data\\n   state = X\\n"_s,
            u"a.flac: testing, 5.000000% complete\na.flac: *** Got error code 0\n"
            "a.flac: ERROR while decoding data\na.flac: state = X\n"_s);
        row("no progress", u"flac 1.4\\n\\na.flac: ERROR: not a FLAC file\\n"_s,
            u"a.flac: flac 1.4\na.flac: ERROR: not a FLAC file\n"_s);
    }
    void flacsWordsAreReportedWhereverThePipeIsCut() {
        QFETCH(QString, says);
        QFETCH(QString, report);
        for (const QString& through :
             {u"cat"_s, u"dd bs=1 status=none"_s, u"dd bs=7 status=none"_s}) {
            Bench bench;
            const QString flac = bench.flac(u"a.flac"_s);
            bench.replaceTool(u"flac"_s, u"printf '%1' | %2 >&2\n"_s.arg(says, through));
            bench.checksum.options().set(checksumOptions().command, Command::Test);
            addFiles(bench.checksum, {flac});
            bench.run(bench.checksum);
            QCOMPARE(bench.reports.value(0), report + u'\n');
            const QByteArray ffp = run(u"metaflac"_s, {u"--show-md5"_s, flac}).output;
            const QString whole = verify(bench, {bench.written(u"a.ffp"_s, "a.flac:" + ffp)});
            const QString tail = whole.section(u"in a.ffp\n"_s, 1);
            // The other of the two reports has no decimals, since it keeps the tool's own words.
            QCOMPARE(tail, QString(report)
                                   .replace(u"5.000000% complete"_s, u"testing, 5% complete"_s)
                                   .replace(u"testing, testing"_s, u"testing"_s) +
                               u'\n');
        }
    }
};

QTEST_GUILESS_MAIN(ChecksumToolsTest)
#include "ChecksumToolsTest.moc"
