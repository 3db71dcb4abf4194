#include "platform/AudioProbe.h"
#include "platform/DirectoryWalk.h"
#include "platform/FlacFile.h"
#include "platform/MainThread.h"
#include "platform/NaturalOrder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/WorkPool.h"
#include "support/AudioFixtures.h"
#include "support/Table.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class PlatformTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pathsAreTakenApart_data() {
        columns<QString, QString, QString, QString>("path", "folder", "base", "word");
        row("plain", "/m/a b.Flac", "/m", "a b", "FLAC");
        row("two dots", "/m/a.tar.wav", "/m", "a.tar", "WAV");
        row("hidden", "/m/.bashrc", "/m", ".bashrc", "");
        row("dot at the end", "/m/a.", "/m", "a.", "");
        row("dot in the folder", "/m.x/a", "/m.x", "a", "");
        row("root", "/a.wv", "/", "a", "WV");
        row("bare", "a.wv", ".", "a", "WV");
    }
    void pathsAreTakenApart() {
        QFETCH(QString, path);
        QTEST(folderOf(path), "folder");
        QTEST(baseName(path), "base");
        QTEST(formatWord(path), "word");
    }

    void sameFileWhateverItsSpelling() {
        const QTemporaryDir dir;
        const QString file = dir.filePath(u"a"_s);
        write(file, "x");
        const QString link = dir.filePath(u"link"_s);
        QVERIFY(QFile::link(dir.path(), link));
        QVERIFY(isSameFile(file, link + u"/../%1/a"_s.arg(lastPathComponent(dir.path()))));
        QVERIFY(!isSameFile(file, dir.filePath(u"none"_s)));
        QCOMPARE(withRealFolder(link + u"/new.flac"_s),
                 joinPath(QFileInfo(dir.path()).canonicalFilePath(), u"new.flac"_s));
    }

    void namesSortAsInAFileBrowser() {
        const QStringList sorted{
            u"/a/Track 1.wav"_s, u"/a/track 2.wav"_s, u"/a/Track 10.wav"_s,
            u"/a/Ü.wav"_s,       u"/a/v.wav"_s,       u"/B/a.wav"_s,
        };
        QStringList shuffled{sorted.rbegin(), sorted.rend()};
        const NaturalOrder order;
        std::sort(shuffled.begin(), shuffled.end(), [&](const QString& a, const QString& b) {
            return order.sortKey(a) < order.sortKey(b);
        });
        QCOMPARE(shuffled, sorted);
    }

    void settingsHaveTheirTypes_data() {
        columns<QString, QString, bool, QString>("key", "value", "accepted", "read");
        row("integer", "maxThreads", "8", true, "8");
        row("whole, with decimals", "maxThreads", "8.0", true, "8");
        row("between two integers", "maxThreads", "2.5", false, "2");
        row("no number", "maxThreads", "many", false, "2");
        row("too low", "maxThreads", "0", false, "2");
        row("negative", "maxThreads", "-1", false, "2");
        row("beyond an integer", "maxThreads", "99999999999", false, "2");
        row("no integer but a word", "encodeFlacLevel", "true", false, "5");
        row("too high", "encodeFlacLevel", "9", false, "5");
        row("boolean", "warnOnDelete", "false", true, "false");
        row("boolean, another word", "keepModificationTime", "YES", true, "true");
        row("boolean as a number", "verifyBeforeDelete", "0", true, "false");
        row("no boolean", "warnOnDelete", "perhaps", false, "true");
        for (const char* key : {"flacVerifyButton", "flacKeepForeignMetadataButton",
                                "flacGenerateFFPButton", "encodeToSourceDirectory",
                                "decodeToSourceDirectory", "encodeLossyToSourceDirectory"}) {
            row(key, key, "2", true, "1");
        }
        for (const char* on : {"1", "2", "-1", "0.5", "99999999999", "true", "YES", "On"}) {
            row(on, "trashOrDelete", on, true, "1");
        }
        for (const char* off : {"0", "00", "-0", "0.0", "false", "NO"}) {
            row(off, "trashOrDelete", off, true, "0");
        }
        for (const char* doubtful : {"", "perhaps", "0 files", "0,0", "@Invalid()"}) {
            row(*doubtful ? doubtful : "empty", "trashOrDelete", doubtful, false, "1");
        }
        row("text", "ffpExtension", "größe, \"%f\"", true, "größe, \"%f\"");
        row("unknown", "noSuchKey", "1", false, "");
    }
    void settingsHaveTheirTypes() {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(bool, accepted);
        QFETCH(QString, read);
        const QTemporaryDir dir;
        const QString file = dir.filePath(u"quav.ini"_s);
        const SettingDefinition* known = Settings::definition(key);
        QCOMPARE(Settings(file).setFromText(key, value).has_value(), accepted);
        QCOMPARE(QFile::exists(file), accepted);
        if (!known) {
            return;
        }
        if (accepted) {
            QCOMPARE(Settings(file).text(known->key), read);
        }
        if (known->type != SettingType::Text) {
            write(file, u"[General]\n%1=%2\n"_s.arg(key, value).toUtf8());
            QCOMPARE(Settings(file).text(known->key), read);
        }
    }

    void defaultsAreNotWrittenAndResetForgets() {
        const QTemporaryDir dir;
        const QString file = dir.filePath(u"quav.ini"_s);
        {
            Settings settings(file);
            QCOMPARE(settings.integer(keys::maxThreads), 2);
            QCOMPARE(settings.boolean(keys::warnOnFilesSkipped), true);
            settings.set(keys::maxThreads, 5);
            settings.set(keys::trashOrDelete, 1);
            settings.reset(keys::maxThreads);
        }
        QVERIFY(!contents(file).contains("maxThreads"));
        QCOMPARE(Settings(file).integer(keys::trashOrDelete), 1);
    }

    void aDamagedSettingsFileIsKeptAside() {
        const QTemporaryDir dir;
        const QString file = dir.filePath(u"quav.ini"_s);
        const QByteArray damaged =
            QByteArrayLiteral("[General]\nencodeFlacLevel=eight\nmaxThreads=3\n\0\x01 torn line\n");
        write(file, damaged);
        Settings settings(file);
        QVERIFY(settings.damage().contains(file));
        QCOMPARE(settings.integer(keys::encodeFlacLevel), 5);
        settings.set(keys::maxThreads, 4);
        QCOMPARE(contents(file + u".damaged"_s), damaged);
        QVERIFY(Settings(dir.filePath(u"none.ini"_s)).damage().isEmpty());
    }

    void foldersAreWalkedToTheirEnd() {
        const QTemporaryDir dir;
        QDir(dir.path()).mkpath(u"a/[b]/ü"_s);
        write(dir.filePath(u"a/[b]/ü/x y.flac"_s), "x");
        write(dir.filePath(u"a/.hidden.flac"_s), "x");
        QVERIFY(QFile::link(dir.path(), dir.filePath(u"a/loop"_s)));
        QVERIFY(QFile::link(u"nowhere"_s, dir.filePath(u"a/dead.flac"_s)));
        const QByteArray notUtf8 = QFile::encodeName(dir.path()) + "/a/gr\xfc\xdf"
                                                                   "e.flac";
        QCOMPARE(
            test::run(u"sh"_s, {u"-c"_s, u"touch \"$(printf '%s/a/gr\\374\\337e.flac' \"$0\")\""_s,
                                dir.path()})
                .status,
            0);
        DirectoryContents walked = walkDirectory(dir.path());
        walked.files.sort();
        QCOMPARE(walked.files, (QStringList{dir.filePath(u"a/.hidden.flac"_s),
                                            dir.filePath(u"a/[b]/ü/x y.flac"_s),
                                            dir.filePath(u"a/dead.flac"_s)}));
        QCOMPARE(walked.undecodable, QStringList{QString::fromUtf8(notUtf8)});
        QCOMPARE(walkDirectory(dir.filePath(u"none"_s)).unreadable.size(), 1);
    }

    void audioIsProbedByContent_data() {
        columns<QString, bool, bool>("arguments", "plain", "lossless");
        row("WAV", "-f wav", true, false);
        row("RF64", "-f wav -rf64 always", true, false);
        row("AIFF", "-f aiff", true, false);
        row("FLAC", "-f flac", false, false);
        row("ALAC", "-c:a alac -f ipod", false, true);
        row("AAC", "-c:a aac -f ipod", false, false);
    }
    void audioIsProbedByContent() {
        QFETCH(QString, arguments);
        const QTemporaryDir dir;
        const QString wav = dir.filePath(u"a.wav"_s);
        const QString probed = dir.filePath(u"a: b.m4a"_s);
        QVERIFY(writeWav(wav, {.frames = 5000}));
        const auto made =
            test::run(u"ffmpeg"_s, QStringList{u"-v"_s, u"error"_s, u"-i"_s, wav} +
                                       arguments.split(u' ') + QStringList{u"file:"_s + probed});
        QVERIFY2(made.status == 0, made.errors.constData());
        QTEST(isAiffOrWav(probed), "plain");
        QTEST(isAppleLossless(probed), "lossless");
        QVERIFY(!isAiffOrWav(dir.path()) && !isAppleLossless(u"/no/such.m4a"_s));
    }

    void aFlacFileIsAsLongAsItsLastFrameSays_data() {
        columns<int, int, int, int, QByteArray, QByteArray>("block", "frames", "channels", "bits",
                                                            "before", "behind");
        const QByteArray id3 = QByteArray("ID3\x04\0\0\0\0\0\x0a", 10) + QByteArray(10, 'x');
        const QByteArray ape = "APETAGEX" +
                               QByteArray("\xd0\7\0\0\x28\0\0\0\0\0\0\0\0\0\0\x80", 16) +
                               QByteArray(8, '\0');
        const QByteArray apeTag = QByteArray(40, 'x') + ape;
        const QByteArray none;
        row("one sample", 4096, 1, 1, 16, none, none);
        row("one block", 4096, 4096, 2, 16, none, none);
        row("and one more", 4096, 4097, 2, 24, none, none);
        row("smallest blocks", 16, 40000, 2, 16, none, none);
        row("largest blocks", 65535, 200001, 8, 24, none, none);
        row("192", 192, 1000, 1, 8, none, none);
        row("576", 576, 99999, 6, 16, none, none);
        row("odd", 9999, 99999, 2, 32, none, none);
        row("tags", 1152, 99999, 2, 16, id3 + id3, apeTag + "TAG" + QByteArray(125, ' '));
        row("tags, too", 4608, 70000, 2, 16, none, "TAG" + QByteArray(125, ' ') + apeTag);
    }
    void aFlacFileIsAsLongAsItsLastFrameSays() {
        QFETCH(int, block);
        QFETCH(int, frames);
        QFETCH(int, channels);
        QFETCH(int, bits);
        const QTemporaryDir dir;
        const QString raw = dir.filePath(u"a.raw"_s);
        const QString flac = dir.filePath(u"a.flac"_s);
        QByteArray noise(qsizetype(frames) * channels * bits / 8, Qt::Uninitialized);
        std::minstd_rand random(7);
        std::generate(noise.begin(), noise.end(), [&] { return char(random() >> 8); });
        write(raw, noise);
        const auto ran = quav::test::run(
            u"flac"_s, QStringList{u"-s"_s, u"--lax"_s, u"--force-raw-format"_s, u"--sign=signed"_s,
                                   u"--endian=little"_s, u"--sample-rate=44056"_s,
                                   u"--channels=%1"_s.arg(channels), u"--bps=%1"_s.arg(bits),
                                   u"-b"_s, QString::number(block), raw, u"-o"_s, flac});
        QVERIFY2(ran.status == 0, ran.errors.constData());
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, behind);
        write(flac, before + contents(flac) + behind);
        const auto count = flacCount(flac);
        QVERIFY(count);
        QCOMPARE(count->told, quint64(frames));
        QCOMPARE(count->held, quint64(frames));
        // A byte of the last frame, and there is no such frame.
        QFile file(flac);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() - behind.size() - 1));
        const char byte = char(~file.peek(1)[0]);
        file.write(&byte, 1);
        file.close();
        const auto damaged = flacCount(flac);
        QVERIFY(!damaged || damaged->held != quint64(frames));
    }

    void postedWorkRunsInOrderFromEveryThread() {
        MainThread mainThread;
        std::vector<std::vector<int>> seen(4);
        std::vector<std::thread> threads;
        int waited = 0;
        for (size_t id = 0; id < seen.size(); ++id) {
            threads.emplace_back([&, id] {
                for (int i = 0; i < 1000; ++i) {
                    mainThread.post([&seen, id, i] { seen[id].push_back(i); });
                }
                mainThread.runAndWait([&] { ++waited; });
            });
        }
        QTRY_COMPARE(waited, 4);
        for (auto& thread : threads) {
            thread.join();
        }
        for (const auto& order : seen) {
            QCOMPARE(order.size(), 1000U);
            QVERIFY(std::is_sorted(order.begin(), order.end()));
        }
        mainThread.runAndWait([&] { ++waited; });
        QCOMPARE(waited, 5);
    }

    void aPoolDoesAllInTheOrderOfGivingBeforeItGoes() {
        std::vector<int> done;
        {
            WorkPool pool(1);
            for (int i = 0; i < 1000; ++i) {
                pool.run([&done, i] { done.push_back(i); });
            }
        }
        QCOMPARE(done.size(), 1000U);
        QVERIFY(std::is_sorted(done.begin(), done.end()));
    }
};

QTEST_GUILESS_MAIN(PlatformTest)
#include "PlatformTest.moc"
