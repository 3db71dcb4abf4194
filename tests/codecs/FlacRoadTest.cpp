#include "codecs/ConversionTask.h"
#include "platform/PathNames.h"
#include "support/Bench.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

class FlacRoadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodesAndDecodesBitExactly_data() {
        columns<QString, int, QString>("name", "bits", "format");
        row("16 bit WAV", "d1t01 Größe [live].wav", 16, "WAV");
        row("24 bit AIFF", "It's \"late\" %f (1).wav", 24, "AIFF");
        row("8 bit, leading dash", "-d 100%.WAV", 8, "WAV");
        row("newline, emoji", "a\nb \U0001F3B5.wav", 16, "WAV");
        row("250 bytes", QString(246, u'n') + u".wav"_s, 16, "WAV");
    }
    void encodesAndDecodesBitExactly() {
        QFETCH(QString, name);
        QFETCH(int, bits);
        QFETCH(QString, format);
        Bench bench;
        const QString source = bench.path(name);
        QVERIFY(writeWav(source, {.frames = 50001, .bits = bits}));
        addFiles(bench.encode, {source});
        bench.run(bench.encode);
        const QString flac = bench.out(baseName(name) + u".flac"_s);
        QCOMPARE(test::run(u"flac"_s, {u"-ts"_s, flac}).status, 0);
        QCOMPARE(audioMd5(flac), audioMd5(source));

        addFiles(bench.decode, {flac});
        QVERIFY(bench.decode.options().setForThisRun(decodeOptions().outputFormat.info(), format));
        bench.run(bench.decode);
        const QString back = bench.out(baseName(name) + u'.' + format.toLower());
        QVERIFY(!audioMd5(back).isEmpty());
        QCOMPARE(audioMd5(back), audioMd5(source));
        QCOMPARE(bench.encode.files().rowCount() + bench.decode.files().rowCount(), 0);
    }

    void tagsFollowTheAudio() {
        Bench bench;
        const QString flac = bench.flac(u"a.FLAC"_s);
        for (const QString& format : {u"WAV"_s, u"AIFF"_s}) {
            addFiles(bench.decode, {flac});
            QVERIFY(
                bench.decode.options().setForThisRun(decodeOptions().outputFormat.info(), format));
            bench.run(bench.decode);
            const QString plain = bench.out(u"a."_s + format.toLower());
            QVERIFY(test::run(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-show_entries"_s,
                                             u"format_tags=title"_s, plain})
                        .output.contains("Größe"));
            addFiles(bench.encode, {plain});
            bench.prompts.answers = {true};
            bench.run(bench.encode);
            const QByteArray comments =
                test::run(u"metaflac"_s, {u"--export-tags-to=-"_s, bench.out(u"a.flac"_s)}).output;
            QVERIFY(comments.contains("TITLE=Größe"));
            QVERIFY(comments.contains("ENCODER=Quav "));
        }
    }

    void badInputFailsAndKeepsItsSource_data() {
        columns<QString, QString>("kind", "says");
        row("truncated", "truncated", "ERROR");
        row("flipped byte", "flipped", "ERROR");
        row("text file", "text", "LOST_SYNC");
        row("empty file", "empty", "ERROR");
        row("deleted meanwhile", "deleted", "ERROR");
        row("output is there", "clash", "already exists");
    }
    void badInputFailsAndKeepsItsSource() {
        QFETCH(QString, kind);
        QFETCH(QString, says);
        Bench bench;
        const QString bad = bench.flac(u"bad.flac"_s);
        const QString good = bench.flac(u"good.flac"_s);
        addFiles(bench.decode, {bad, good});
        if (kind == u"truncated" || kind == u"flipped") {
            damage(bad, kind == u"truncated");
        } else if (kind == u"deleted") {
            QFile::remove(bad);
        } else if (kind == u"clash") {
            QVERIFY(writeWav(bench.out(u"bad.wav"_s), {.frames = 5}));
        } else {
            QFile file(bad);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(kind == u"text" ? "no music at all\n" : "");
        }
        const QByteArray before = contents(bad);
        const QByteArray outputBefore = contents(bench.out(u"bad.wav"_s));
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.run(bench.decode);
        QCOMPARE(bench.failed, QStringList{u"bad.flac"_s});
        QCOMPARE(contents(bad), before);
        QCOMPARE(contents(bench.out(u"bad.wav"_s)), outputBefore);
        QVERIFY(!QFile::exists(good) && QFile::exists(bench.out(u"good.wav"_s)));
        QCOMPARE(windows.count(), 1);
        QVERIFY2(bench.reports[0].contains(says), qPrintable(bench.reports[0]));
        QCOMPARE(bench.workbench.queue().rows().rowCount(), 1);
    }

    void aDamagedDecodeIsCompleteButWarnsAndKeepsItsSource() {
        Bench bench;
        const QString bad = bench.flac(u"bad.flac"_s);
        damage(bad, false);
        addFiles(bench.decode, {bad});
        bench.decode.options().set(decodeOptions().flacThroughErrors, true);
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        bench.run(bench.decode);
        QVERIFY(bench.failed.isEmpty());
        QCOMPARE(windows.count(), 0);
        QVERIFY(bench.workbench.queue().warnings().join(u'\n').contains(u"ERROR"));
        QVERIFY(QFile::exists(bad) && QFile::exists(bench.out(u"bad.wav"_s)));
    }

    void overwritingAsksAndAFailureBringsTheOldOutputBack_data() {
        columns<bool, bool>("answer", "sourceIsAudio");
        row("no", false, true);
        row("yes", true, true);
        row("yes, but fails", true, false);
    }
    void overwritingAsksAndAFailureBringsTheOldOutputBack() {
        QFETCH(bool, answer);
        QFETCH(bool, sourceIsAudio);
        Bench bench;
        const QString source = bench.path(u"a.wav"_s);
        QVERIFY(writeWav(source));
        const QString old = bench.flac(u"out/a.flac"_s);
        if (!sourceIsAudio) {
            QFile::resize(source, 20);
        }
        const QByteArray before = contents(old);
        QVERIFY(writeWav(source + u".keep"_s));
        addFiles(bench.encode, {source});
        bench.encode.options().set(encodeOptions().flacLevel, 0);
        bench.prompts.answers = {answer};
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        const CommandOutcome outcome = bench.press(bench.encode);
        QCOMPARE(outcome, answer ? CommandOutcome::Queued : CommandOutcome::Declined);
        if (answer) {
            QTRY_COMPARE(idle.count(), 1);
        }
        QCOMPARE(bench.prompts.questions.size(), 1U);
        QCOMPARE(bench.prompts.questions[0].defaultButton, u"No");
        QCOMPARE(bench.encode.files().rowCount(), answer ? 0 : 1);
        QCOMPARE(contents(old) == before, !(answer && sourceIsAudio));
        QCOMPARE(bench.outputs(), QStringList{u"a.flac"_s});
    }

    void encodingAFileOntoItselfNeverDeletesIt_data() {
        QTest::addColumn<bool>("throughLink");
        row("beside the source", false);
        row("through a linked folder", true);
    }
    void encodingAFileOntoItselfNeverDeletesIt() {
        QFETCH(bool, throughLink);
        Bench bench;
        const QString flac = bench.flac(u"out/x.flac"_s);
        const QByteArray audio = audioMd5(flac);
        const QString link = bench.path(u"link"_s);
        QVERIFY(QFile::link(bench.path(u"out"_s), link));
        addFiles(bench.encode, {throughLink ? link + u"/x.flac"_s : flac});
        bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
        bench.prompts.answers = {true, true};
        bench.run(bench.encode);
        QVERIFY(bench.failed.isEmpty());
        QCOMPARE(audioMd5(flac), audio);
        QCOMPARE(bench.outputs(), QStringList{u"x.flac"_s});
    }

    void nothingStartsWhen_data() {
        columns<QString, QString>("obstacle", "says");
        row("two sources share an output", "shared", "same output file");
        row("a tool is missing", "tool", "package “flac”");
        row("the output folder is gone", "folder", "does not exist");
        row("the output folder is a file", "file", "does not exist");
    }
    void nothingStartsWhen() {
        QFETCH(QString, obstacle);
        QFETCH(QString, says);
        Bench bench;
        QDir(bench.folder.path()).mkdir(u"b"_s);
        QVERIFY(writeWav(bench.path(u"a.wav"_s)));
        QVERIFY(writeWav(bench.path(u"b/a.wav"_s)));
        addFiles(bench.encode, {bench.path(u"a.wav"_s)});
        if (obstacle == u"shared") {
            addFiles(bench.encode, {bench.path(u"b/a.wav"_s)});
        } else if (obstacle == u"tool") {
            QFile::remove(bench.toolsDir.filePath(u"flac"_s));
        } else {
            QDir(bench.folder.path()).rmdir(u"out"_s);
        }
        if (obstacle == u"file") {
            QVERIFY(writeWav(bench.path(u"out"_s)));
        }
        const int listed = bench.encode.files().rowCount();
        QCOMPARE(bench.press(bench.encode), CommandOutcome::Refused);
        QCOMPARE(bench.workbench.queue().taskCount(), 0);
        QCOMPARE(bench.encode.files().rowCount(), listed);
        QVERIFY2(bench.prompts.alerts.join(u'\n').contains(says),
                 qPrintable(bench.prompts.alerts.join(u'\n')));
    }

    void aFullDiskLeavesNothingBehind() {
        Bench bench;
        const QString out = bench.path(u"out"_s);
        if (test::run(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=64k"_s, u"tmpfs"_s, out})
                .status != 0) {
            QSKIP("a small file system cannot be mounted here");
        }
        const QString source = bench.path(u"a.wav"_s);
        QVERIFY(writeWav(source));
        addFiles(bench.encode, {source});
        bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
        bench.run(bench.encode);
        const QStringList left = bench.outputs();
        test::run(u"umount"_s, {out});
        QCOMPARE(bench.failed, QStringList{u"a.wav"_s});
        QVERIFY(left.isEmpty() && QFile::exists(source));
    }

    void aDiskThatFillsUpWithTagsLeavesNothingBehind() {
        Bench bench;
        const QString flac = bench.flac(u"a.flac"_s);
        const QString comment = bench.path(u"comment"_s);
        QFile text(comment);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(90000, 'x')) == 90000);
        text.close();
        QCOMPARE(
            test::run(u"metaflac"_s, {u"--set-tag-from-file=COMMENT="_s + comment, flac}).status,
            0);
        const QString out = bench.path(u"out"_s);
        if (test::run(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, u"size=420k"_s, u"tmpfs"_s, out})
                .status != 0) {
            QSKIP("a small file system cannot be mounted here");
        }
        addFiles(bench.decode, {flac});
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.run(bench.decode);
        const QStringList left = bench.outputs();
        test::run(u"umount"_s, {out});
        QCOMPARE(bench.failed, QStringList{u"a.flac"_s});
        const QString reason = u"Error writing tags to file:\n%1\nNo space left on device.\n"_s.arg(
            bench.out(u"a.wav"_s));
        QVERIFY2(bench.reports.join(u'\n').contains(reason), qPrintable(bench.reports.join(u'\n')));
        QVERIFY(left.isEmpty() && QFile::exists(flac));
    }

    void declinedQuestionsLeaveEverythingAsItIs() {
        Bench bench;
        QVERIFY(writeWav(bench.path(u"a.wav"_s)));
        addFiles(bench.encode, {bench.path(u"a.wav"_s)});
        bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
        bench.prompts.answers = {false};
        QCOMPARE(bench.encode.executeCommand(), CommandOutcome::Declined);
        QCOMPARE(
            bench.prompts.questions[0].title,
            u"You have chosen to delete the original files.  Are you sure you want to continue?");
        bench.encode.options().set(bench.encode.rows().deleteOriginals, false);
        QCOMPARE(bench.encode.executeCommand(), CommandOutcome::Declined);
        QCOMPARE(bench.encode.files().rowCount(), 1);
        bench.settings.set(keys::warnOnDelete, false);
        bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
        bench.run(bench.encode);
        QVERIFY(!QFile::exists(bench.path(u"a.wav"_s)));
    }

    void whatCannotBeConvertedStaysInTheListUnlessItIsOfNoKind() {
        Bench bench;
        const QString tta = bench.path(u"b.tta"_s);
        const QString odd = bench.path(u"c.xyz"_s);
        QVERIFY(writeWav(tta) && writeWav(odd));
        addFiles(bench.decode, {tta, odd, bench.flac(u"a.flac"_s)});
        bench.run(bench.decode);
        QCOMPARE(bench.decode.fileNames(), QStringList{tta});
        QCOMPARE(bench.prompts.alertMessages, QStringList{u"b.tta"_s});
        bench.decode.clearFiles();
        addFiles(bench.decode, {odd});
        QCOMPARE(bench.press(bench.decode), CommandOutcome::NothingToDo);
        QCOMPARE(bench.decode.files().rowCount(), 0);
        QCOMPARE(bench.prompts.alerts.size(), 1);
    }

    void aFolderThatTakesNothingLeavesOutItsOwnFilesAlone() {
        Bench bench;
        const QString good = bench.wav(u"good/a.wav"_s);
        const QString gone = bench.wav(u"gone/b.wav"_s);
        addFiles(bench.encode, {good, gone});
        QDir(bench.path(u"gone"_s)).removeRecursively();
        bench.encode.options().set(encodeOptions().beside, true);
        bench.run(bench.encode);
        QVERIFY(QFile::exists(bench.path(u"good/a.flac"_s)) && bench.failed.isEmpty());
        QCOMPARE(bench.prompts.alertMessages, QStringList{gone});
        QCOMPARE(bench.encode.fileNames(), QStringList{gone});
        QCOMPARE(bench.press(bench.encode), CommandOutcome::Refused);
    }

    void filesThatComeWhileAQuestionIsOpenStay() {
        Bench bench;
        const QString late = bench.path(u"late.wav"_s);
        QVERIFY(writeWav(bench.path(u"a.wav"_s)) && writeWav(late));
        bench.flac(u"out/a.flac"_s);
        addFiles(bench.encode, {bench.path(u"a.wav"_s)});
        bench.prompts.answers = {true};
        bench.prompts.beforeAnswer = [&] { addFiles(bench.encode, {late}); };
        bench.run(bench.encode);
        QCOMPARE(bench.encode.fileNames(), QStringList{late});
        QCOMPARE(bench.outputs(), QStringList{u"a.flac"_s});
    }

    void cancelledWaitingDecodesShowNoReport() {
        Bench bench;
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        for (int i = 0; i < 5; ++i) {
            addFiles(bench.decode, {bench.flac(u"%1.flac"_s.arg(i))});
        }
        QCOMPARE(bench.press(bench.decode), CommandOutcome::Queued);
        bench.workbench.queue().cancelAllTasks();
        QTRY_COMPARE(idle.count(), 1);
        QCOMPARE(windows.count(), 0);
    }

    void aToolWithoutAnOutputHasFailed() {
        Bench bench;
        const QString tool = bench.toolsDir.filePath(u"flac"_s);
        QFile::remove(tool);
        QFile::link(QStandardPaths::findExecutable(u"true"_s), tool);
        addFiles(bench.decode, {bench.flac(u"a.flac"_s)});
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.run(bench.decode);
        QCOMPARE(bench.failed, QStringList{u"a.flac"_s});
        QVERIFY(QFile::exists(bench.path(u"a.flac"_s)));
    }

    void foreignMetadataComesBackByteForByte() {
        Bench bench;
        const QString wav = bench.path(u"bext.wav"_s);
        QVERIFY(writeWav(wav));
        QFile file(wav);
        QVERIFY(file.open(QIODevice::Append));
        const QByteArray chunk("note\x06\0\0\0memo!\0", 14);
        file.write(chunk);
        file.close();
        QFile riff(wav);
        QVERIFY(riff.open(QIODevice::ReadWrite));
        riff.seek(4);
        const quint32 size = qToLittleEndian(static_cast<quint32>(riff.size() - 8));
        riff.write(reinterpret_cast<const char*>(&size), sizeof size);
        riff.close();
        addFiles(bench.encode, {wav});
        bench.encode.options().set(encodeOptions().flacKeepForeignMetadata, true);
        bench.run(bench.encode);
        addFiles(bench.decode, {bench.out(u"bext.flac"_s)});
        bench.decode.options().set(decodeOptions().flacKeepForeignMetadata, true);
        bench.run(bench.decode);
        QVERIFY(contents(bench.out(u"bext.wav"_s)).contains(chunk));
    }
};

QTEST_GUILESS_MAIN(FlacRoadTest)
#include "FlacRoadTest.moc"
