#include "codecs/WavpackTool.h"
#include "engine/QUAVTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/Util.h"
#include "support/Bench.h"
#include "support/FileSizeLimit.h"
#include "support/Table.h"
#include "tags/Losses.h"
#include "tags/TagLibTagsHelper.h"

#include <QTest>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

/// The digest of all bits of the sound, by an independent decoder.
QByteArray soundOf(const QString& path) {
    return test::run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, u"file:"_s + path, u"-c:a"_s,
                                   u"pcm_s32le"_s, u"-f"_s, u"md5"_s, u"-"_s})
        .output;
}

/// A file made by somebody else.
QString source(const Bench& bench, const QString& name, int bits, int channels) {
    const QString plain = bench.wav(u"plain.wav"_s, {.channels = channels, .bits = bits});
    const QString path = bench.path(name);
    if (name.endsWith(u".shn")) {
        test::run(bench.toolsDir.filePath(u"shorten"_s), {plain, path});
        QFile::remove(plain);
        return path;
    }
    QStringList arguments{u"-v"_s, u"error"_s, u"-i"_s, plain};
    if (name.endsWith(u".m4a")) {
        arguments << u"-c:a"_s << u"alac"_s;
    } else if (!name.endsWith(u".flac")) {
        arguments << u"-c:a"_s
                  << u"pcm_s%1%2"_s.arg(bits).arg(name.endsWith(u".wav") ? u"le"_s : u"be"_s);
    }
    if (name.endsWith(u".wav")) {
        arguments << u"-metadata"_s << u"copyright=wir"_s;
    }
    test::run(u"ffmpeg"_s, arguments << path);
    QFile::remove(plain);
    return path;
}

void encodeTo(Bench& bench, const QString& path, const QString& mode) {
    TabOptions& options = bench.encode.options();
    options.set(encodeOptions().outputFormat, EncodeTarget::Wavpack);
    QVERIFY(options.setForThisRun(encodeOptions().wavepackFormat.info(), mode));
    test::addFiles(bench.encode, {path});
    bench.run(bench.encode);
}

void decodeTo(Bench& bench, const QString& path, const QString& target) {
    QVERIFY(bench.decode.options().setForThisRun(decodeOptions().outputFormat.info(), target));
    test::addFiles(bench.decode, {path});
    bench.run(bench.decode);
}

/// Lets a tool wait until it is told to go on; it says when it is there.
QString waiting(const Bench& bench, const QString& tool) {
    return u"touch '%1'; while [ ! -e '%2' ]; do sleep 0.05; done; exec %3 \"$@\""_s.arg(
        bench.path(u"there"_s), bench.path(u"go"_s), QStandardPaths::findExecutable(tool));
}

} // namespace

class WavpackRoadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyBitComesBack_data() {
        columns<QString, int, int, QString, QString>("kind", "bits", "channels", "mode", "target");
        row("WAV, 16 bit stereo", "wav", 16, 2, "fast", "wav");
        row("WAV, 24 bit 5.1", "wav", 24, 6, "high", "aiff");
        row("AIFF, 16 bit 5.1", "aiff", 16, 6, "high", "aiff");
        row("AIFF, 24 bit stereo", "aiff", 24, 2, "fast", "wav");
        row("FLAC, 16 bit stereo", "flac", 16, 2, "high", "aiff");
        row("FLAC, 24 bit 5.1", "flac", 24, 6, "fast", "wav");
        row("Apple Lossless, 16 bit stereo", "m4a", 16, 2, "high", "wav");
        row("Apple Lossless, 24 bit mono", "m4a", 24, 1, "fast", "aiff");
        row("Shorten, 16 bit stereo", "shn", 16, 2, "fast", "wav");
    }
    void everyBitComesBack() {
        QFETCH(QString, kind);
        QFETCH(int, bits);
        QFETCH(int, channels);
        QFETCH(QString, mode);
        QFETCH(QString, target);
        Bench bench;
        const QString from = source(bench, u"a b."_s + kind, bits, channels);
        bench.encode.options().set(bench.encode.rows().deleteOriginals, true);
        bench.encode.options().set(bench.encode.rows().acceptLosses, true);
        const QByteArray sound = soundOf(from);
        QVERIFY(sound.startsWith("MD5="));
        encodeTo(bench, from, mode);
        QCOMPARE(bench.failed, QStringList());
        QVERIFY2(!QFile::exists(from), qPrintable(bench.workbench.queue().warnings().join(u'\n')));
        const QString packed = bench.out(u"a b.wv"_s);
        QCOMPARE(bench.outputs(), QStringList(u"a b.wv"_s));
        QCOMPARE(soundOf(packed), sound);
        QCOMPARE(test::run(u"wvunpack"_s, {u"-q"_s, u"-v"_s, packed}).status, 0);

        bench.decode.options().set(bench.decode.rows().deleteOriginals, true);
        bench.decode.options().set(bench.decode.rows().acceptLosses, true);
        decodeTo(bench, packed, target);
        QCOMPARE(bench.failed, QStringList());
        QCOMPARE(bench.outputs(), QStringList(u"a b."_s + target));
        QCOMPARE(soundOf(bench.out(u"a b."_s + target)), sound);
    }

    void aWavFileIsWhatADecodedOneIsCalled() {
        Bench bench;
        const QString aiff = source(bench, u"s.aiff"_s, 24, 2);
        const QString packed = bench.path(u"s.wv"_s);
        test::run(u"wavpack"_s, {u"-q"_s, aiff, u"-o"_s, packed});
        decodeTo(bench, packed, u"wav"_s);
        QVERIFY(contents(bench.out(u"s.wav"_s)).startsWith("RIFF"));
        QCOMPARE(soundOf(bench.out(u"s.wav"_s)), soundOf(aiff));
    }

    void whatCannotBeDoneLeavesNothing_data() {
        columns<QString, QString, int, QString>("from", "trouble", "limit", "says");
        row("killed encoder", "flac", "kill wavpack", 0, "wavpack");
        row("killed decoder in front", "flac", "kill flac", 0, "flac");
        row("killed decoder", "wv", "kill wvunpack", 0, "wvunpack");
        row("encoder's disk full", "wav", "", 60000, "wavpack");
        row("disk full in front, by a tool", "flac", "", 60000, "");
        row("disk full in front, by ourselves", "aiff", "", 60000, "");
        row("disk full behind", "wv", "", 60000, "");
        row("cancelled in front", "flac", "cancel flac", 0, "");
        row("cancelled behind", "wv", "cancel wvunpack", 0, "");
        row("a kind that nobody reads", "ape", "", 0, "Unknown file extension APE");
        row("an output that is there", "wav", "exists", 0, "overwrite");
    }
    void whatCannotBeDoneLeavesNothing() {
        QFETCH(QString, from);
        QFETCH(QString, trouble);
        QFETCH(int, limit);
        QFETCH(QString, says);
        Bench bench;
        const QString path = bench.path(u"s."_s + from);
        if (from == u"wv") {
            test::run(u"wavpack"_s, {u"-q"_s, bench.wav(u"s.wav"_s), u"-o"_s, path});
        } else {
            source(bench, from == u"ape" ? u"s.wav"_s : u"s."_s + from, 16, 2);
            QFile::rename(bench.path(u"s.wav"_s), path);
        }
        QStringList left;
        if (trouble == u"exists") {
            bench.written(u"out/s.wv"_s, "old");
            left << u"s.wv"_s;
        }
        const QString tool = trouble.section(u' ', 1);
        if (trouble.startsWith(u"kill")) {
            bench.replaceTool(tool, u"echo half > \"$4\"; kill -9 $$"_s);
        } else if (trouble.startsWith(u"cancel")) {
            bench.replaceTool(tool, waiting(bench, tool));
        }
        bool wasCancelled = false;
        QString reason;
        QObject::connect(&bench.workbench.queue(), &QUAVTaskQueue::taskFinished, &bench.encode,
                         [&](const auto& task) {
                             wasCancelled = task->cancelled();
                             reason = task->error() ? task->reason() : QString();
                         });
        ConversionTab& tab =
            from == u"wv" ? static_cast<ConversionTab&>(bench.decode) : bench.encode;
        bench.encode.options().set(encodeOptions().outputFormat, EncodeTarget::Wavpack);
        bench.decode.options().set(decodeOptions().outputFormat, DecodeTarget::Aiff);
        tab.options().set(tab.rows().deleteOriginals, true);
        tab.options().set(tab.rows().acceptLosses, true);
        test::addFiles(tab, {path});
        {
            const FileSizeLimit limited(limit);
            QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
            QCOMPARE(bench.press(tab), CommandOutcome::Queued);
            if (trouble.startsWith(u"cancel")) {
                QTRY_VERIFY(QFile::exists(bench.path(u"there"_s)));
                bench.workbench.queue().cancelAllTasks();
                bench.written(u"go"_s, "x");
            }
            QTRY_VERIFY(idle.count() > 0 && bench.workbench.queue().taskCount() == 0);
        }
        QCOMPARE(wasCancelled, trouble.startsWith(u"cancel"));
        QCOMPARE(bench.failed.isEmpty(), wasCancelled);
        QCOMPARE(bench.outputs(), left);
        QVERIFY(QFile::exists(path));
        QVERIFY2(reason.contains(says), qPrintable(reason));
        if (trouble == u"exists") {
            QCOMPARE(contents(bench.out(u"s.wv"_s)), "old"_ba);
        }
    }

    void aSourceThatWouldBeWrittenOverStopsEverything() {
        Bench bench;
        const QString packed = bench.written(u"out/s.wv"_s, "x");
        bench.encode.options().set(encodeOptions().outputFormat, EncodeTarget::Wavpack);
        test::addFiles(bench.encode, {bench.wav(u"s.wav"_s), packed});
        QCOMPARE(bench.press(bench.encode), CommandOutcome::Refused);
        QVERIFY(bench.prompts.alerts.back().startsWith(u"One of the output files already"));
    }

    void tagsComeAlongAndWhatDoesNotIsTold_data() {
        columns<QString, QString>("road", "lost");
        row("from FLAC", "flac wv", "the tag MOOD");
        row("from WAV", "wav wv", "");
        row("from AIFF", "aiff wv", "");
        row("to WAV", "wv wav", "the tag Mood");
        row("to AIFF", "wv aiff", "the INFO entry ICOP");
    }
    void tagsComeAlongAndWhatDoesNotIsTold() {
        QFETCH(QString, road);
        QFETCH(QString, lost);
        const QString from = road.section(u' ', 0, 0);
        const QString to = road.section(u' ', 1);
        Bench bench;
        TagsObject tags;
        tags.titleText = u"Größe"_s;
        tags.artistText = u"Wir"_s;
        tags.trackText = u"7"_s;
        const QString path = bench.path(u"s."_s + from);
        TagLibTagsHelper helper;
        if (from == u"wv") {
            // With a chunk that the packer keeps, and a tag that the record has no place for.
            const QString wav = source(bench, u"s.wav"_s, 16, 2);
            test::run(u"wavpack"_s, {u"-q"_s, u"-w"_s, u"Mood=calm"_s, wav, u"-o"_s, path});
            QVERIFY(helper.writeTagsForWavpackFile(path, tags, false));
        } else {
            source(bench, u"s."_s + from, 16, 2);
            QVERIFY(from == u"flac"  ? helper.writeTagsForFLACFile(path, tags, true)
                    : from == u"wav" ? helper.writeTagsForWAVEFile(path, tags)
                                     : helper.writeTagsForAIFFFile(path, tags));
            if (from == u"flac") {
                test::run(u"metaflac"_s, {u"--set-tag=MOOD=calm"_s, path});
            }
        }
        if (to == u"wv") {
            encodeTo(bench, path, u"fast"_s);
        } else {
            decodeTo(bench, path, to);
        }
        QCOMPARE(bench.failed, QStringList());
        const QString output = bench.out(u"s."_s + to);
        const TagsObject there = to == u"wv"    ? helper.tagsForWavpackFile(output)
                                 : to == u"wav" ? helper.tagsForWAVEFile(output)
                                                : helper.tagsForAIFFFile(output);
        QCOMPARE(there.titleText, tags.titleText);
        QCOMPARE(there.artistText, tags.artistText);
        QCOMPARE(there.trackText, tags.trackText);
        const QString told = bench.workbench.queue().warnings().join(u'\n');
        QVERIFY2(told.contains(lost, Qt::CaseInsensitive) && told.isEmpty() == lost.isEmpty(),
                 qPrintable(told));
    }

    void whatTheToolSays_data() {
        columns<QString, double, bool>("piece", "percent", "failed"); // below zero: none
        row("update", u"\b\b\b\b 42% done..."_s, 42.0, false);
        row("title", u"\x1b]0;42% done..."_s, 42.0, false);
        row("end", u"\rcreated a.wv in 1.98 secs (lossless, 41.92%)"_s, -1.0, false);
        row("question", u"overwrite o/a.wv (yes/no/all)? "_s, -1.0, true);
        row("short", u"couldn't read all samples, file may be corrupt!!"_s, -1.0, true);
    }
    void whatTheToolSays() {
        QFETCH(QString, piece);
        const ToolReport said = wavpack::read(piece);
        QTEST(said.percent.value_or(-1), "percent");
        QTEST(said.failed, "failed");
    }
};

QTEST_GUILESS_MAIN(WavpackRoadTest)
#include "WavpackRoadTest.moc"
