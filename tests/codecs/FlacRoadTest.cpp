#include "codecs/ConversionTask.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "support/AudioFixtures.h"
#include "support/FakeDesktop.h"
#include "support/ScriptedPrompts.h"
#include "support/Table.h"
#include "workbench/Workbench.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace quav;
using quav::test::audioMd5;
using quav::test::contents;
using quav::test::row;
using quav::test::writeWav;

namespace {

/// The whole program without a face, in a folder of its own.
struct Bench {
    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    Settings settings{folder.filePath(QStringLiteral("settings.ini"))};
    test::ScriptedPrompts prompts;
    test::FakeDesktop desktop;
    Workbench workbench{settings, prompts, desktop, toolsWithFlac(toolsDir)};
    EncodeTab& encode = workbench.encodeTab();
    DecodeTab& decode = workbench.decodeTab();
    QStringList failed;

    Bench() {
        QDir(folder.path()).mkdir(QStringLiteral("out"));
        QObject::connect(&workbench.queue(), &QUAVTaskQueue::taskFinished, &workbench.queue(),
                         [this](const std::shared_ptr<QUAVTask>& task) {
                             if (task->error()) {
                                 failed << task->title();
                             }
                         });
    }

    static ToolsFolder toolsWithFlac(const QTemporaryDir& dir) {
        QFile::link(QStandardPaths::findExecutable(QStringLiteral("flac")),
                    dir.filePath(QStringLiteral("flac")));
        return ToolsFolder(dir.path());
    }

    QString path(const QString& name) const { return folder.filePath(name); }
    QString out(const QString& name) const { return path(QStringLiteral("out/") + name); }

    CommandOutcome press(ConversionTab& tab) {
        prompts.folders.push_back(path(QStringLiteral("out")));
        return tab.executeCommand();
    }

    void run(ConversionTab& tab) {
        QSignalSpy idle(&workbench.queue(), &QUAVTaskQueue::becameIdle);
        QCOMPARE(press(tab), CommandOutcome::Queued);
        QTRY_COMPARE_WITH_TIMEOUT(idle.count(), 1, 60000);
    }

    QStringList outputs() const {
        return QDir(path(QStringLiteral("out")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// A FLAC file made by the tool itself.
    QString flac(const QString& name) const {
        const QString wav = path(QStringLiteral("source of fixture.wav"));
        writeWav(wav);
        test::run(QStringLiteral("flac"),
                  {QStringLiteral("-s"), QStringLiteral("-f"), QStringLiteral("-T"),
                   QStringLiteral("TITLE=Größe"), wav, QStringLiteral("-o"), path(name)});
        QFile::remove(wav);
        return path(name);
    }
};

void damage(const QString& path, bool truncate) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 middle = file.size() / 2;
    if (truncate) {
        QVERIFY(file.resize(middle));
    } else {
        file.seek(middle);
        const char byte = static_cast<char>(~file.peek(1)[0]);
        QCOMPARE(file.write(&byte, 1), 1);
    }
}

} // namespace

class FlacRoadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodesAndDecodesBitExactly_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("bits");
        QTest::addColumn<QString>("format");
        row("16 bit WAV", "d1t01 Größe [live].wav", 16, "WAV");
        row("24 bit AIFF", "It's \"late\" %f (1).wav", 24, "AIFF");
        row("8 bit, leading dash", "-d 100%.WAV", 8, "WAV");
        row("newline, emoji", "a\nb \U0001F3B5.wav", 16, "WAV");
        row("250 bytes", QString(246, u'n') + QStringLiteral(".wav"), 16, "WAV");
    }
    void encodesAndDecodesBitExactly() {
        QFETCH(QString, name);
        QFETCH(int, bits);
        QFETCH(QString, format);
        Bench bench;
        const QString source = bench.path(name);
        QVERIFY(writeWav(source, {.frames = 50001, .bits = bits}));
        bench.encode.addFiles({source});
        bench.run(bench.encode);
        const QString flac = bench.out(baseName(name) + QStringLiteral(".flac"));
        QCOMPARE(test::run(QStringLiteral("flac"), {QStringLiteral("-ts"), flac}).status, 0);
        QCOMPARE(audioMd5(flac), audioMd5(source));

        bench.decode.addFiles({flac});
        bench.decode.setOutputFormat(format);
        bench.run(bench.decode);
        const QString back = bench.out(baseName(name) + u'.' + format.toLower());
        QVERIFY(!audioMd5(back).isEmpty());
        QCOMPARE(audioMd5(back), audioMd5(source));
        QCOMPARE(bench.encode.files().rowCount() + bench.decode.files().rowCount(), 0);
    }

    void tagsFollowTheAudio() {
        Bench bench;
        const QString flac = bench.flac(QStringLiteral("a.FLAC"));
        for (const QString& format : {QStringLiteral("WAV"), QStringLiteral("AIFF")}) {
            bench.decode.addFiles({flac});
            bench.decode.setOutputFormat(format);
            bench.run(bench.decode);
            const QString plain = bench.out(QStringLiteral("a.") + format.toLower());
            QVERIFY(
                test::run(QStringLiteral("ffprobe"), {QStringLiteral("-v"), QStringLiteral("error"),
                                                      QStringLiteral("-show_entries"),
                                                      QStringLiteral("format_tags=title"), plain})
                    .output.contains("Größe"));
            bench.encode.addFiles({plain});
            bench.prompts.answers = {true};
            bench.run(bench.encode);
            const QByteArray comments =
                test::run(QStringLiteral("metaflac"), {QStringLiteral("--export-tags-to=-"),
                                                       bench.out(QStringLiteral("a.flac"))})
                    .output;
            QVERIFY(comments.contains("TITLE=Größe"));
            QVERIFY(comments.contains("ENCODER=Quav "));
        }
    }

    void badInputFailsAndKeepsItsSource_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("says");
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
        const QString bad = bench.flac(QStringLiteral("bad.flac"));
        const QString good = bench.flac(QStringLiteral("good.flac"));
        bench.decode.addFiles({bad, good});
        if (kind == u"truncated" || kind == u"flipped") {
            damage(bad, kind == u"truncated");
        } else if (kind == u"deleted") {
            QFile::remove(bad);
        } else if (kind == u"clash") {
            QVERIFY(writeWav(bench.out(QStringLiteral("bad.wav")), {.frames = 5}));
        } else {
            QFile file(bad);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(kind == u"text" ? "no music at all\n" : "");
        }
        const QByteArray before = contents(bad);
        const QByteArray outputBefore = contents(bench.out(QStringLiteral("bad.wav")));
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        bench.decode.setDeleteOriginals(true);
        bench.run(bench.decode);
        QCOMPARE(bench.failed, QStringList{QStringLiteral("bad.flac")});
        QCOMPARE(contents(bad), before);
        QCOMPARE(contents(bench.out(QStringLiteral("bad.wav"))), outputBefore);
        QVERIFY(!QFile::exists(good) && QFile::exists(bench.out(QStringLiteral("good.wav"))));
        QCOMPARE(windows.count(), 1);
        QVERIFY2(windows[0][0].toString().contains(says), qPrintable(windows[0][0].toString()));
        QCOMPARE(bench.workbench.queue().rows().rowCount(), 1);
    }

    void aDamagedDecodeIsCompleteButWarnsAndKeepsItsSource() {
        Bench bench;
        const QString bad = bench.flac(QStringLiteral("bad.flac"));
        damage(bad, false);
        bench.decode.addFiles({bad});
        bench.decode.setDecodeFlacThroughErrors(true);
        bench.decode.setDeleteOriginals(true);
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        bench.run(bench.decode);
        QVERIFY(bench.failed.isEmpty());
        QCOMPARE(windows.count(), 0);
        QVERIFY(bench.workbench.queue().warnings().join(u'\n').contains(u"ERROR"));
        QVERIFY(QFile::exists(bad) && QFile::exists(bench.out(QStringLiteral("bad.wav"))));
    }

    void overwritingAsksAndAFailureBringsTheOldOutputBack_data() {
        QTest::addColumn<bool>("answer");
        QTest::addColumn<bool>("sourceIsAudio");
        row("no", false, true);
        row("yes", true, true);
        row("yes, but fails", true, false);
    }
    void overwritingAsksAndAFailureBringsTheOldOutputBack() {
        QFETCH(bool, answer);
        QFETCH(bool, sourceIsAudio);
        Bench bench;
        const QString source = bench.path(QStringLiteral("a.wav"));
        QVERIFY(writeWav(source));
        const QString old = bench.flac(QStringLiteral("out/a.flac"));
        if (!sourceIsAudio) {
            QFile::resize(source, 20);
        }
        const QByteArray before = contents(old);
        QVERIFY(writeWav(source + QStringLiteral(".keep")));
        bench.encode.addFiles({source});
        bench.encode.setFlacLevel(0);
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
        QCOMPARE(bench.outputs(), QStringList{QStringLiteral("a.flac")});
    }

    void encodingAFileOntoItselfNeverDeletesIt_data() {
        QTest::addColumn<bool>("throughLink");
        row("beside the source", false);
        row("through a linked folder", true);
    }
    void encodingAFileOntoItselfNeverDeletesIt() {
        QFETCH(bool, throughLink);
        Bench bench;
        const QString flac = bench.flac(QStringLiteral("out/x.flac"));
        const QByteArray audio = audioMd5(flac);
        const QString link = bench.path(QStringLiteral("link"));
        QVERIFY(QFile::link(bench.path(QStringLiteral("out")), link));
        bench.encode.addFiles({throughLink ? link + QStringLiteral("/x.flac") : flac});
        bench.encode.setDeleteOriginals(true);
        bench.prompts.answers = {true, true};
        bench.run(bench.encode);
        QVERIFY(bench.failed.isEmpty());
        QCOMPARE(audioMd5(flac), audio);
        QCOMPARE(bench.outputs(), QStringList{QStringLiteral("x.flac")});
    }

    void nothingStartsWhen_data() {
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<QString>("says");
        row("two sources share an output", "shared", "same output file");
        row("a tool is missing", "tool", "package “flac”");
        row("the output folder is gone", "folder", "does not exist");
        row("the output folder is a file", "file", "does not exist");
    }
    void nothingStartsWhen() {
        QFETCH(QString, obstacle);
        QFETCH(QString, says);
        Bench bench;
        QDir(bench.folder.path()).mkdir(QStringLiteral("b"));
        QVERIFY(writeWav(bench.path(QStringLiteral("a.wav"))));
        QVERIFY(writeWav(bench.path(QStringLiteral("b/a.wav"))));
        bench.encode.addFiles({bench.path(QStringLiteral("a.wav"))});
        if (obstacle == u"shared") {
            bench.encode.addFiles({bench.path(QStringLiteral("b/a.wav"))});
        } else if (obstacle == u"tool") {
            QFile::remove(bench.toolsDir.filePath(QStringLiteral("flac")));
        } else {
            QDir(bench.folder.path()).rmdir(QStringLiteral("out"));
        }
        if (obstacle == u"file") {
            QVERIFY(writeWav(bench.path(QStringLiteral("out"))));
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
        const QString out = bench.path(QStringLiteral("out"));
        if (test::run(QStringLiteral("mount"),
                      {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                       QStringLiteral("size=64k"), QStringLiteral("tmpfs"), out})
                .status != 0) {
            QSKIP("a small file system cannot be mounted here");
        }
        const QString source = bench.path(QStringLiteral("a.wav"));
        QVERIFY(writeWav(source));
        bench.encode.addFiles({source});
        bench.encode.setDeleteOriginals(true);
        bench.run(bench.encode);
        const QStringList left = bench.outputs();
        test::run(QStringLiteral("umount"), {out});
        QCOMPARE(bench.failed, QStringList{QStringLiteral("a.wav")});
        QVERIFY(left.isEmpty() && QFile::exists(source));
    }

    void aDiskThatFillsUpWithTagsLeavesNothingBehind() {
        Bench bench;
        const QString flac = bench.flac(QStringLiteral("a.flac"));
        const QString comment = bench.path(QStringLiteral("comment"));
        QFile text(comment);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write(QByteArray(90000, 'x')) == 90000);
        text.close();
        QCOMPARE(test::run(QStringLiteral("metaflac"),
                           {QStringLiteral("--set-tag-from-file=COMMENT=") + comment, flac})
                     .status,
                 0);
        const QString out = bench.path(QStringLiteral("out"));
        if (test::run(QStringLiteral("mount"),
                      {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                       QStringLiteral("size=420k"), QStringLiteral("tmpfs"), out})
                .status != 0) {
            QSKIP("a small file system cannot be mounted here");
        }
        bench.decode.addFiles({flac});
        bench.decode.setDeleteOriginals(true);
        bench.run(bench.decode);
        const QStringList left = bench.outputs();
        test::run(QStringLiteral("umount"), {out});
        QCOMPARE(bench.failed, QStringList{QStringLiteral("a.flac")});
        QVERIFY(left.isEmpty() && QFile::exists(flac));
    }

    void declinedQuestionsLeaveEverythingAsItIs() {
        Bench bench;
        QVERIFY(writeWav(bench.path(QStringLiteral("a.wav"))));
        bench.encode.addFiles({bench.path(QStringLiteral("a.wav"))});
        bench.encode.setDeleteOriginals(true);
        bench.prompts.answers = {false};
        QCOMPARE(bench.encode.executeCommand(), CommandOutcome::Declined);
        QCOMPARE(
            bench.prompts.questions[0].title,
            u"You have chosen to delete the original files.  Are you sure you want to continue?");
        bench.encode.setDeleteOriginals(false);
        QCOMPARE(bench.encode.executeCommand(), CommandOutcome::Declined);
        QCOMPARE(bench.encode.files().rowCount(), 1);
        bench.settings.set(keys::warnOnDelete, false);
        bench.encode.setDeleteOriginals(true);
        bench.run(bench.encode);
        QVERIFY(!QFile::exists(bench.path(QStringLiteral("a.wav"))));
    }

    void kindsWithoutATaskStayInTheList() {
        Bench bench;
        const QString tta = bench.path(QStringLiteral("b.tta"));
        const QString odd = bench.path(QStringLiteral("c.xyz"));
        QVERIFY(writeWav(tta) && writeWav(odd));
        bench.decode.addFiles({tta, odd, bench.flac(QStringLiteral("a.flac"))});
        bench.run(bench.decode);
        QCOMPARE(bench.decode.fileNames(), (QStringList{tta, odd}));
        QCOMPARE(bench.prompts.alertMessages, QStringList{QStringLiteral("b.tta\nc.xyz")});
    }

    void filesThatComeWhileAQuestionIsOpenStay() {
        Bench bench;
        const QString late = bench.path(QStringLiteral("late.wav"));
        QVERIFY(writeWav(bench.path(QStringLiteral("a.wav"))) && writeWav(late));
        bench.flac(QStringLiteral("out/a.flac"));
        bench.encode.addFiles({bench.path(QStringLiteral("a.wav"))});
        bench.prompts.answers = {true};
        bench.prompts.beforeAnswer = [&] { bench.encode.addFiles({late}); };
        bench.run(bench.encode);
        QCOMPARE(bench.encode.fileNames(), QStringList{late});
        QCOMPARE(bench.outputs(), QStringList{QStringLiteral("a.flac")});
    }

    void cancelledWaitingDecodesShowNoReport() {
        Bench bench;
        QSignalSpy windows(&bench.workbench.queue(), &QUAVTaskQueue::outputWindowRequested);
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        for (int i = 0; i < 5; ++i) {
            bench.decode.addFiles({bench.flac(QStringLiteral("%1.flac").arg(i))});
        }
        QCOMPARE(bench.press(bench.decode), CommandOutcome::Queued);
        bench.workbench.queue().cancelAllTasks();
        QTRY_COMPARE(idle.count(), 1);
        QCOMPARE(windows.count(), 0);
    }

    void aToolWithoutAnOutputHasFailed() {
        Bench bench;
        const QString tool = bench.toolsDir.filePath(QStringLiteral("flac"));
        QFile::remove(tool);
        QFile::link(QStandardPaths::findExecutable(QStringLiteral("true")), tool);
        bench.decode.addFiles({bench.flac(QStringLiteral("a.flac"))});
        bench.decode.setDeleteOriginals(true);
        bench.run(bench.decode);
        QCOMPARE(bench.failed, QStringList{QStringLiteral("a.flac")});
        QVERIFY(QFile::exists(bench.path(QStringLiteral("a.flac"))));
    }

    void foreignMetadataComesBackByteForByte() {
        Bench bench;
        const QString wav = bench.path(QStringLiteral("bext.wav"));
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
        bench.encode.addFiles({wav});
        bench.encode.setFlacKeepForeignMetadata(true);
        bench.run(bench.encode);
        bench.decode.addFiles({bench.out(QStringLiteral("bext.flac"))});
        bench.decode.setKeepForeignMetadata(true);
        bench.run(bench.decode);
        QVERIFY(contents(bench.out(QStringLiteral("bext.wav"))).contains(chunk));
    }
};

QTEST_GUILESS_MAIN(FlacRoadTest)
#include "FlacRoadTest.moc"
