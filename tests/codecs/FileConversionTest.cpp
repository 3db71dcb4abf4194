#include "engine/ClaimedFolders.h"
#include "engine/OutputGuard.h"
#include "platform/FileIdentity.h"
#include "platform/OwnerAccess.h"
#include "support/Bench.h"
#include "support/FileSizeLimit.h"
#include "support/Table.h"
#include "tags/TagLibTagsHelper.h"

#include <QDateTime>
#include <QTest>

#include <sys/wait.h>

#include <csignal>
#include <unistd.h>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

using Existing = OutputGuard::Existing;

void flipBit(const QString& path, qint64 byte, int bit) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(byte));
    const char flipped = static_cast<char>(file.peek(1)[0] ^ (1 << bit));
    QCOMPARE(file.write(&flipped, 1), 1);
}

void append(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append) && file.write(bytes) == bytes.size());
}

/// What a program that is killed leaves behind: `work` happens in a process that ends at once.
void inAProcessThatIsKilled(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    QVERIFY(waitpid(child, &status, 0) == child && WIFSIGNALED(status));
}

} // namespace

class FileConversionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSourceGoesOnlyWhenAllOfItIsInTheOutput_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<QString>("says"); ///< empty: the source goes
        row("sound WAV", "wav", false, "");
        row("sound FLAC", "flac", false, "");
        row("a bit of the rate in STREAMINFO", "bit 19 0", true, "damaged");
        row("a bit of the channels in STREAMINFO", "bit 20 1", true, "damaged");
        row("a bit of the length in STREAMINFO", "bit 24 4", true, "");
        row("a bit of the digest in STREAMINFO", "bit 30 2", true, "MD5");
        row("a bit of the number of comments", "bit -8 0", true, "is not whole");
        row("a second data chunk", "second data", true, "data chunk");
        row("joined WAV files", "joined wav", true, "WAV");
        row("a data size too small", "small", true, "behind");
        row("joined FLAC files", "joined flac", true, "FLAC");
        row("a tool that leaves off the end", "short tool", true, "samples long instead of");
        row("a tool that changes samples", "wrong tool", true, "its samples are others");
        row("appended to meanwhile", "append", false, "has changed");
        row("replaced meanwhile", "replace", false, "has changed");
        row("a trash that takes nothing", "trash", false, "still there");
    }
    void aSourceGoesOnlyWhenAllOfItIsInTheOutput() {
        QFETCH(QString, kind);
        QFETCH(bool, fails);
        QFETCH(QString, says);
        Bench bench;
        const bool isFlac = kind.contains(u"flac") || kind.startsWith(u"bit");
        const QString source = isFlac ? bench.flac(u"s.flac"_s) : bench.wav(u"s.wav"_s);
        const QString other = bench.wav(u"other.wav"_s, {.seed = 2});
        const QString tool = QStandardPaths::findExecutable(u"flac"_s);
        if (kind.startsWith(u"bit")) {
            const qint64 byte = kind.section(u' ', 1, 1).toLongLong();
            const qint64 from = byte < 0 ? contents(source).indexOf("TITLE=") : 0;
            flipBit(source, from + byte, kind.section(u' ', 2).toInt());
        } else if (kind == u"second data") {
            append(source, "data" + QByteArray::fromHex("10270000") + QByteArray(10000, 'x'));
        } else if (kind.startsWith(u"joined")) {
            append(source, contents(source));
        } else if (kind == u"small") {
            flipBit(source, 42, 1); // of the third byte of the data chunk's size
        } else if (kind == u"short tool") {
            bench.replaceTool(u"flac"_s, tool + u" --until=5000 \"$@\""_s);
        } else if (kind == u"wrong tool") {
            bench.replaceTool(u"flac"_s, u"cp %1 %2; "_s.arg(other, bench.path(u"fake.wav"_s)) +
                                             tool +
                                             u" -s %1 -o %2"_s.arg(bench.path(u"fake.wav"_s),
                                                                   bench.out(u"s.flac"_s)));
        } else if (kind == u"append") {
            bench.replaceTool(u"flac"_s, tool + u" \"$@\"; echo more >> "_s + source);
        } else if (kind == u"replace") {
            bench.replaceTool(u"flac"_s, tool + u" \"$@\"; mv %1 %2"_s.arg(other, source));
        } else if (kind == u"trash") {
            bench.settings.set(keys::trashOrDelete, 1);
            bench.desktop.trashWorks = false;
        }
        const bool decodes = kind.endsWith(u"flac");
        quav::ConversionTab& tab =
            decodes ? static_cast<ConversionTab&>(bench.decode) : bench.encode;
        addFiles(tab, {source});
        tab.options().set(tab.rows().deleteOriginals, true);
        bench.run(tab);

        const QString told =
            bench.reports.join(u'\n') + bench.workbench.queue().warnings().join(u'\n');
        QCOMPARE(!bench.failed.isEmpty(), fails);
        QVERIFY2(told.contains(says), qPrintable(told));
        QCOMPARE(QFile::exists(source), fails || !says.isEmpty());
    }

    void tagsThatCannotBeWrittenCostNoSoundAndNoSource_data() {
        test::columns<QString, int, QString>("target", "limit", "says");
        row("too large for the target", "flac", 0, "The tags are too large for a FLAC file.");
        row("torn by the writing, WAV", "wav", 430000, "");
        row("torn by the writing, AIFF", "aiff", 430000, "");
    }
    void tagsThatCannotBeWrittenCostNoSoundAndNoSource() {
        QFETCH(QString, target);
        QFETCH(int, limit);
        QFETCH(QString, says);
        Bench bench;
        const QString source = bench.path(limit == 0 ? u"s.wav"_s : u"s.flac"_s);
        TagsObject tags;
        tags.titleText = u"Lied"_s;
        tags.commentText = QString(limit == 0 ? 9'000'000 : 90'000, u'x');
        QVERIFY(limit == 0
                    ? TagLibTagsHelper().writeTagsForWAVEFile(bench.wav(u"s.wav"_s), tags)
                    : TagLibTagsHelper().writeTagsForFLACFile(bench.flac(u"s.flac"_s), tags, true));
        bench.decode.options().set(decodeOptions().outputFormat,
                                   target == u"aiff" ? DecodeTarget::Aiff : DecodeTarget::Wav);
        quav::ConversionTab& tab =
            limit == 0 ? static_cast<ConversionTab&>(bench.encode) : bench.decode;
        addFiles(tab, {source});
        tab.options().set(tab.rows().deleteOriginals, true);
        tab.options().set(tab.rows().acceptLosses, true);
        {
            const FileSizeLimit limited(limit);
            bench.run(tab);
        }
        QVERIFY(QFile::exists(source));
        const QString output = bench.out(u"s."_s + target);
        QCOMPARE(bench.outputs(), limit == 0 ? QStringList(u"s.flac"_s) : QStringList());
        QCOMPARE(bench.failed.isEmpty(), limit == 0);
        if (limit == 0) {
            QCOMPARE(audioMd5(output), audioMd5(source));
            const QString told = bench.workbench.queue().warnings().join(u'\n');
            QVERIFY2(told.contains(u"s.wav: the tags could not be written: "_s + says),
                     qPrintable(told));
            QVERIFY2(told.contains(u"s.wav: the original was kept"), qPrintable(told));
            QVERIFY(bench.prompts.questions.size() == 1); // whether to delete at all
        } else {
            QVERIFY(
                bench.reports.join(u'\n').contains(u"Error writing tags to file:\n"_s + output));
        }
    }

    void whatTheOutputLacksIsAskedAboutOnce_data() {
        columns<bool, int, bool, QString, int>("accepts", "questions", "answer", "meanwhile",
                                               "left");
        row("keep", false, 1, false, "", 2);
        row("delete", false, 1, true, "", 0);
        row("delete, but one has changed", false, 1, true, "changed", 1);
        row("delete, but one's output has gone", false, 1, true, "gone", 1);
        row("accepted beforehand", true, 0, false, "", 0);
    }
    void whatTheOutputLacksIsAskedAboutOnce() {
        QFETCH(bool, accepts);
        QFETCH(bool, answer);
        QFETCH(QString, meanwhile);
        Bench bench;
        const QStringList sources{bench.flac(u"a.flac"_s), bench.flac(u"b.flac"_s)};
        for (const QString& source : sources) {
            test::run(u"metaflac"_s, {u"--set-tag=MOOD=blue"_s, source});
        }
        bench.settings.set(keys::warnOnDelete, false);
        addFiles(bench.decode, sources);
        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.decode.options().set(bench.decode.rows().acceptLosses, accepts);
        bench.prompts.answers = {answer};
        bench.prompts.beforeAnswer = [&] {
            if (meanwhile == u"changed") {
                append(sources[1], "more");
            } else if (meanwhile == u"gone") {
                QFile::remove(bench.out(u"b.wav"_s));
            }
        };
        bench.run(bench.decode);
        QTEST(static_cast<int>(bench.prompts.questions.size()), "questions");
        QCOMPARE(bench.workbench.queue().warnings().filter(u"MOOD"_s).size(), 2);
        QTEST(QFile::exists(sources[0]) + QFile::exists(sources[1]), "left");
        QVERIFY(bench.failed.isEmpty());
    }

    void recodingInPlaceKeepsTheSourceUntilItsSoundIsThere_data() {
        QTest::addColumn<bool>("isDamaged");
        row("sound", false);
        row("a bit of the channels", true);
    }
    void recodingInPlaceKeepsTheSourceUntilItsSoundIsThere() {
        QFETCH(bool, isDamaged);
        Bench bench;
        const QString source = bench.flac(u"out/s.flac"_s);
        if (isDamaged) {
            flipBit(source, 20, 1);
        }
        const QByteArray before = contents(source);
        bench.encode.options().set(encodeOptions().flacLevel, 0);
        addFiles(bench.encode, {source});
        bench.prompts.answers = {true};
        bench.run(bench.encode);
        QCOMPARE(contents(source) == before, isDamaged);
        QCOMPARE(!bench.failed.isEmpty(), isDamaged);
        QCOMPARE(bench.outputs(), QStringList{u"s.flac"_s});
    }

    void anOutputBelongsToOneRun_data() {
        QTest::addColumn<QString>("claimed");
        row("the output", "out/s.flac");
        row("the source, which is not whole yet", "s.wav");
    }
    void anOutputBelongsToOneRun() {
        QFETCH(QString, claimed);
        Bench bench;
        const QString source = bench.wav(u"s.wav"_s);
        {
            auto other = OutputClaim::take(bench.path(claimed));
            QVERIFY(other && other->note(OutputClaim::State::Making));
            addFiles(bench.encode, {source});
            bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
            bench.run(bench.encode);
            QCOMPARE(bench.failed, QStringList{u"s.wav"_s});
            QVERIFY2(bench.reports.join(u' ').contains(u"is being written by"),
                     qPrintable(bench.reports.join(u' ')));
            QVERIFY(QFile::exists(source) && !QFile::exists(bench.out(u"s.flac"_s)));
        }
        addFiles(bench.encode, {source});
        bench.run(bench.encode);
        QVERIFY(!QFile::exists(source));
        QCOMPARE(bench.outputs(), QStringList{u"s.flac"_s});
    }

    void theNextStartCleansUpAfterAKilledOne_data() {
        columns<bool, QString, QByteArray, bool>("existed", "state", "left", "tells");
        row("half an output", false, "half", QByteArray(), true);
        row("half an output over another", true, "half", QByteArray("old"), true);
        row("before anything was written", true, "begun", QByteArray("old"), true);
        row("nothing was begun", false, "begun", QByteArray(), false);
        row("the source itself, half", true, "in place", QByteArray("old"), true);
        row("a whole one", false, "whole", QByteArray("new"), false);
        row("a whole one over another", true, "whole", QByteArray("new"), false);
        row("another program's", true, "foreign", QByteArray("old"), false);
        row("replaced by the user since", false, "later", QByteArray("later"), true);
    }
    void theNextStartCleansUpAfterAKilledOne() {
        QFETCH(bool, existed);
        QFETCH(QString, state);
        const QTemporaryDir folder;
        const QString output = folder.filePath(u"out.flac"_s);
        const auto write = [&](const char* text) {
            QFile file(output);
            return file.open(QIODevice::WriteOnly) && file.write(text) > 0;
        };
        QVERIFY(!existed || write("old"));
        inAProcessThatIsKilled([&] {
            auto* claims = new ClaimedFolders(folder.filePath(u"state"_s));
            auto* guard = new OutputGuard(
                output, state == u"in place" ? output : folder.filePath(u"source.wav"_s),
                state == u"foreign" ? Existing::Keep : Existing::Overwrite, *claims);
            if (state == u"in place") {
                QFile::remove(output); // as a tool does that renames its output there
            }
            if (state != u"begun" && state != u"foreign") {
                write("new");
            }
            if (state == u"whole") {
                guard->commit();
            }
        });
        const QStringList claim =
            QDir(folder.path()).entryList({u"*.claim"_s}, QDir::Files | QDir::Hidden);
        QCOMPARE(claim.size(), 1);
        if (state == u"later") {
            write("later");
            QFile file(folder.filePath(claim[0]));
            QVERIFY(file.open(QIODevice::ReadWrite));
            file.setFileTime(QDateTime::currentDateTime().addSecs(-120),
                             QFileDevice::FileModificationTime);
        }
        const QStringList told = ClaimedFolders(folder.filePath(u"state"_s)).recover();
        QTEST(!told.isEmpty(), "tells");
        QTEST(contents(output), "left");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(),
                 contents(output).isEmpty() ? 0 : 1);
        QVERIFY(QDir(folder.filePath(u"state"_s)).isEmpty(QDir::Files));
    }

    void aClaimHasNothingRemovedButItsOwnOutput() {
        const QTemporaryDir folder;
        const auto write = [&](const QString& name, const QByteArray& text) {
            QFile file(folder.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
        };
        QVERIFY(write(u"precious"_s, "x") && write(u"other"_s, "x"));
        QVERIFY(write(u".quav-0123456789abcdef.claim"_s,
                      "process 1\nprogram x\noutput precious\naside \nleftover other\n"
                      "state making\n"));
        QVERIFY(OutputClaim::recover(folder.path()).isEmpty());
        QVERIFY(QFile::exists(folder.filePath(u"precious"_s)));
        QVERIFY(QFile::exists(folder.filePath(u"other"_s)));
    }

    void writeProtectionIsLiftedForAMoment_data() {
        columns<QString, bool>("name", "lifted");
        row("a file", "file", true);
        row("a link to it", "link", false);
    }
    void writeProtectionIsLiftedForAMoment() {
        QFETCH(QString, name);
        const Bench bench;
        const QString file = bench.written(u"file"_s, "x");
        QVERIFY(QFile::link(file, bench.path(u"link"_s)));
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        {
            const OwnerAccess access(bench.path(name));
            QTEST(QFile::permissions(file).testFlag(QFile::WriteOwner), "lifted");
            QVERIFY(QFile::rename(file, bench.path(u"renamed"_s)));
        }
        QVERIFY(!QFile::permissions(bench.path(u"renamed"_s)).testFlag(QFile::WriteOwner));
    }

    void whatStandsAtTheOutputsPlaceIsRespected_data() {
        QTest::addColumn<QString>("what");
        row("a link that leads nowhere", "dangling");
        row("a write-protected file", "locked");
    }
    void whatStandsAtTheOutputsPlaceIsRespected() {
        QFETCH(QString, what);
        Bench bench;
        const QString output = bench.out(u"s.flac"_s);
        addFiles(bench.encode, {bench.wav(u"s.wav"_s)});
        if (what == u"dangling") {
            QVERIFY(QFile::link(bench.path(u"nowhere.flac"_s), output));
            bench.prompts.answers = {true};
            bench.run(bench.encode);
            QVERIFY(bench.reports.join(u' ').contains(u"leads nowhere"));
            QVERIFY(!QFile::exists(bench.path(u"nowhere.flac"_s)) && isDanglingLink(output));
        } else {
            QVERIFY(QFile::copy(bench.path(u"s.wav"_s), output));
            QVERIFY(QFile::setPermissions(output, QFile::ReadOwner));
            QCOMPARE(bench.press(bench.encode), CommandOutcome::Declined);
            const QString details = bench.prompts.questions.back().message;
            QVERIFY2(details.contains(u"write-protected") && details.contains(u"s.flac"),
                     qPrintable(details));
        }
    }

    void theOutputGetsTheSourcesTimeWhereThatIsWanted_data() {
        QTest::addColumn<bool>("wanted");
        row("wanted", true);
        row("not wanted", false);
    }
    void theOutputGetsTheSourcesTimeWhereThatIsWanted() {
        QFETCH(bool, wanted);
        Bench bench;
        const QString source = bench.flac(u"s.flac"_s);
        const QDateTime time(QDate(1999, 12, 31), QTime(23, 59));
        {
            QFile file(source);
            QVERIFY(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(time, QFileDevice::FileModificationTime));
        }
        bench.settings.set(keys::keepModificationTime, wanted);
        addFiles(bench.decode, {source});
        bench.run(bench.decode);
        QCOMPARE(QFileInfo(bench.out(u"s.wav"_s)).lastModified() == time, wanted);
    }
};

QTEST_GUILESS_MAIN(FileConversionTest)
#include "FileConversionTest.moc"
