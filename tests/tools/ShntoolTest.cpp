#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ShntoolFolder.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <unistd.h>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

/// Samples at the beginning that are silent, whole blocks of any number of channels in use.
constexpr int silent = 60;

QByteArray md5(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

/// A header of WAVE_FORMAT_EXTENSIBLE for the same samples.
QByteArray extensible(const QByteArray& wav, unsigned mask) {
    QByteArray file = wav;
    file.replace(20, 2, "\xFE\xFF").replace(16, 4, QByteArray("\x28\0\0\0", 4));
    QByteArray more("\x16\0", 2);
    more += wav.mid(34, 2); // all bits are valid
    appendNumber(more, mask, 4);
    more += QByteArray("\1\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 16);
    QByteArray size;
    appendNumber(size, uint32_t(file.size() - 8 + more.size()), 4);
    return file.replace(4, 4, size).insert(36, more);
}

} // namespace

/// What our shntool does beside what the packaged one does, too.
class ShntoolTest : public QObject, ShntoolFolder {
    Q_OBJECT

private Q_SLOTS:
    void init() { emptyOutputs(); }

    void everyModeTakesTodaysFormats_data() {
        QTest::addColumn<QByteArray>("wav");
        QTest::addColumn<QString>("encode"); // a.wav to the file
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("formats"); // that can hold it, too
        const auto sound = [](int blocks, int bits, int channels) {
            std::vector<int> samples = waves(blocks, bits, channels);
            std::fill_n(samples.begin(), silent, 0);
            return samples;
        };
        const QByteArray deep = wavFile(sound(30000, 24, 2), 2, 24, 96000);
        const QByteArray plain = wavFile(sound(30000, 16, 2), 2, 16, 44100);
        const QByteArray byte = wavFile(sound(30001, 8, 1), 1, 8, 22050);
        const QByteArray six = extensible(wavFile(sound(90000, 16, 2), 6, 16, 48000), 0x3F);
        const QByteArray full = wavFile(sound(30000, 24, 2), 2, 32, 48000);
        const QString stereo = u"wav aiff flac wv tta ape"_s;
        const QString many = u"wav aiff flac wv tta"_s;
        row("WAV, extensible", extensible(deep, 3), u"true"_s, u"a.wav"_s, stereo);
        row("WAV of 32 bits", full, u"true"_s, u"a.wav"_s, u"wav aiff wv"_s);
        row("WAV of six channels", six, u"true"_s, u"a.wav"_s, many);
        row("RF64", deep, u"ffmpeg -v error -i a.wav -c:a pcm_s24le -rf64 always -f wav a.rf64"_s,
            u"a.rf64"_s, stereo);
        row("AIFF", deep, u"ffmpeg -v error -i a.wav -c:a pcm_s24be a.aif"_s, u"a.aif"_s, stereo);
        row("FLAC", deep, u"flac -s a.wav"_s, u"a.flac"_s, stereo);
        row("FLAC of six channels", six, u"flac -s a.wav"_s, u"a.flac"_s, many);
        row("FLAC of 8 bits", byte, u"flac -s a.wav"_s, u"a.flac"_s, stereo + u" shn"_s);
        row("WavPack", plain, u"wavpack -q a.wav"_s, u"a.wv"_s, stereo + u" shn"_s);
        row("WavPack of 8 bits", byte, u"wavpack -q a.wav"_s, u"a.wv"_s, stereo);
        row("WavPack of 24 bits", deep, u"wavpack -q a.wav"_s, u"a.wv"_s, stereo);
        row("WavPack of six channels", six, u"wavpack -q a.wav"_s, u"a.wv"_s, many);
        const QString alac = u"ffmpeg -v error -i a.wav -c:a alac a.m4a"_s;
        row("ALAC", plain, alac, u"a.m4a"_s, stereo);
        row("ALAC of 24 bits", deep, alac, u"a.m4a"_s, stereo);
        row("ALAC of six channels", six, alac, u"a.m4a"_s, many);
        row("TTA", deep, u"ttaenc -e -o a.tta a.wav"_s, u"a.tta"_s, stereo);
        row("APE", deep, u"mac a.wav a.ape -c2000"_s, u"a.ape"_s, stereo);
    }
    void everyModeTakesTodaysFormats() {
        QFETCH(QByteArray, wav);
        QFETCH(QString, encode);
        QFETCH(QString, file);
        QFETCH(QString, formats);
        write(u"a.wav"_s, wav);
        if (file != u"a.wav") {
            QFile::remove(path(file));
        }
        QVERIFY(make(encode));
        const int bits = int(wav.at(34));
        const QByteArray samples = samplesOf(wav);
        const auto written = [&](const QString& name) {
            return samplesOf(contents(path(u"o/"_s + name)));
        };

        QCOMPARE(digestOf(file), md5(samples));
        // All but the container is the same in the tables.
        const QByteArray length = shntool(u"len -c -t a.wav"_s).output.first(13);
        QCOMPARE(shntool(u"len -c -t "_s + file).output.first(13), length);
        const auto rate = [&](const QString& of) {
            const QString told = QString::fromUtf8(shntool(u"info "_s + of).output);
            return told.split(u'\n').filter(u"Rate (calculated)"_s);
        };
        QCOMPARE(rate(file), rate(u"a.wav"_s));
        QCOMPARE(shntool(u"cmp a.wav "_s + file).status, 0);
        QCOMPARE(shntool(u"join -n -d o a.wav "_s + file).status, 0);
        QCOMPARE(md5(written(u"joined.wav"_s)), md5(samples + samples));
        QCOMPARE(shntool(u"split -d o -l 0:00.20 "_s + file).status, 0);
        QByteArray pieces;
        for (const QString& name : outputs().filter(u"split-track"_s)) {
            pieces += written(name);
        }
        QCOMPARE(md5(pieces), md5(samples));
        const bool isLonger = shntool(u"info "_s + file).output.contains("header:       yes");
        QCOMPARE(shntool(u"strip -d o "_s + file).status, isLonger ? 0 : 1);
        QCOMPARE(shntool(u"trim -d o -z -t "_s + file).status, 0);
        const QByteArray trimmed = written(u"a-t.wav"_s);
        QVERIFY(samples.endsWith(trimmed));
        QCOMPARE(samples.size() - trimmed.size(), silent * bits / 8);
        // Three modes are for CDs.
        const int status =
            wav.mid(22, 6) == QByteArray("\2\0\x44\xAC\0\0", 6) && bits == 16 ? 0 : 1;
        QCOMPARE(shntool(u"pad -d o -z -p "_s + file).status, status);
        QCOMPARE(shntool(u"fix -d o -z -f "_s + file).status, status);
        QCOMPARE(shntool(u"cue "_s + file).status, status);
        if (status == 0) {
            const QByteArray padded = samples + QByteArray(2352 - samples.size() % 2352, '\0');
            QCOMPARE(md5(written(u"a-p.wav"_s)), md5(padded));
            QCOMPARE(md5(written(u"a-f.wav"_s)), md5(padded));
        }
        for (const QString& format : formats.split(u' ')) {
            const Ran ran = shntool(u"conv -o %1 -d o -n %1 %2"_s.arg(format, file));
            QVERIFY2(ran.status == 0, ran.errors.constData());
            QCOMPARE(digestOf(u"o/"_s + format), md5(samples));
            QCOMPARE(md5(judged(path(u"o/"_s + format), bits)), md5(samples));
        }
    }

    void digestOfFlacIsItsOwn() {
        for (const int bits : {16, 24}) {
            write(u"a.wav"_s, wavFile(waves(50000, bits, 2), 2, bits, 44100));
            QVERIFY(make(u"flac -s -f a.wav"_s));
            const Ran own = run(u"metaflac"_s, {u"--show-md5sum"_s, path(u"a.flac"_s)});
            QCOMPARE(digestOf(u"a.flac"_s), own.output.trimmed());
        }
    }

    // Tracks may be shorter than a sector, and end anywhere.
    void fixedTracksHoldTheSameSound() {
        Noise noise;
        const auto upTo = [&](int limit) { return (noise(16) + 32768) % limit; };
        for (int set = 0; set < 100; ++set) {
            emptyOutputs();
            QByteArray all;
            QStringList names;
            const int tracks = 1 + upTo(6);
            for (int track = 0; track < tracks; ++track) {
                const int blocks = upTo(3) == 0 ? upTo(700) : 588 * upTo(8) + upTo(2) * upTo(588);
                names << u"t%1.wav"_s.arg(track);
                std::vector<int> samples(size_t(2 * blocks));
                std::generate(samples.begin(), samples.end(), [&] { return noise(16); });
                write(names.back(), wavFile(samples, 2, 16, 44100));
                all += samplesOf(contents(path(names.back())));
            }
            const QString direction = u"-%1"_s.arg("bfu"[set % 3]);
            const Ran ran =
                shntool(QStringList{u"fix"_s, u"-k"_s, direction, u"-d"_s, u"o"_s} + names);
            const qsizetype padding = (2352 - all.size() % 2352) % 2352;
            if (ran.errors.contains("everything seems fine")) {
                QCOMPARE(padding, 0);
                continue;
            }
            QVERIFY2(ran.status == 0, ran.errors.constData());
            QByteArray fixed;
            for (const QString& name : names) {
                const QByteArray samples = samplesOf(contents(path(u"o/"_s + name)));
                QCOMPARE(samples.size() % 2352, 0);
                fixed += samples;
            }
            QCOMPARE(md5(fixed), md5(all + QByteArray(padding, '\0')));
        }
    }

    void outputsAreNamedAsAsked_data() {
        columns<QString, QString>("command", "names");
        row("an encoder in braces",
            uR"(fix -P pct -O never -k -d o -o cust ext=flac { flac -s -4 -o %f - } "1 ä.wav" )"
            R"("2 'x' [y].WAV")"_s,
            u"1 ä.flac/2 'x' [y].flac"_s);
        row("fixed like their sources", uR"(fix -O never -o wav -d o "1 ä.wav" d.wav)"_s,
            u"1 ä.wav/d.wav"_s);
        row("another ending", uR"(fix -O never -d o -o wav -z -FIXED "1 ä.wav" d.wav)"_s,
            u"1 ä-FIXED.wav/d-FIXED.wav"_s);
        row("one name", uR"(conv -P pct -O always -o wav -n o/tmp.1 "2 'x' [y].WAV")"_s,
            u"tmp.1"_s);
        row("a dash in front", u"trim -d o -O never -o flac -- -dash.wav"_s,
            u"-dash-trimmed.flac"_s);
        row("extensions of any spelling", uR"(conv -d o -o aiff c.FLAC b.aif "2 'x' [y].WAV")"_s,
            u"2 'x' [y].aiff/b.aiff/c.aiff"_s);
        row("what looks like options of printf", uR"(conv -d o -o flac "100%% %f %s.wav")"_s,
            u"100%% %f %s.flac"_s);
        row("an encoder with the file inside a word",
            uR"(conv -d o -o "cust ext=flac flac -s --output-name=%f -" d.wav)"_s, u"d.flac"_s);
        row("names that a cue sheet may not have", u"split -d o -f evil.cue -t %t d.wav"_s,
            u"..-..-up.wav/01.wav"_s);
    }
    void outputsAreNamedAsAsked() {
        QFETCH(QString, command);
        QFETCH(QString, names);
        const QByteArray wav = wavFile(waves(5000, 16, 2), 2, 16, 44100);
        for (const char* name : {"1 ä.wav", "2 'x' [y].WAV", "d.wav", "100%% %f %s.wav"}) {
            write(QString::fromUtf8(name), wav);
        }
        write(u"-dash.wav"_s,
              wavFile(std::vector<int>(2000, 0), 2, 16, 44100).replace(100, 4, "\1\2\3\4"));
        write(u"evil.cue"_s, "TRACK 01 AUDIO\nTITLE \"\"\nINDEX 01 00:00:00\n"
                             "TRACK 02 AUDIO\nTITLE ../../up\nINDEX 01 00:00:01\n");
        QVERIFY(make(u"flac -s -f d.wav -o c.FLAC"_s));
        QVERIFY(make(u"ffmpeg -y -v error -i d.wav b.aif"_s));
        const Ran ran = shntool(command);
        QVERIFY2(ran.status == 0, ran.errors.constData());
        QCOMPARE(outputs().join(u'/'), names);
        for (const QString& name : outputs()) {
            QVERIFY2(!judged(path(u"o/"_s + name), 16).isEmpty(), qUtf8Printable(name));
        }
    }

    void anEncodersOutputStandsWhereItsPlaceLeads() {
        write(u"a.wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100));
        write(u"o/kept"_s, "old");
        QFile::setPermissions(path(u"o/kept"_s), QFile::ReadOwner);
        const QFile::Permissions mode = QFile::permissions(path(u"o/kept"_s));
        QFile::link(u"kept"_s, path(u"o/link"_s));
        QCOMPARE(shntool(u"conv -O always -o flac -n o/link a.wav"_s).status, 0);
        QVERIFY(QFileInfo(path(u"o/link"_s)).isSymLink());
        QVERIFY(contents(path(u"o/kept"_s)).startsWith("fLaC"));
        QCOMPARE(QFile::permissions(path(u"o/kept"_s)), mode);
        QDir(path({})).mkdir(u"-s"_s);
        QCOMPARE(shntool(u"conv -d -s -o flac a.wav"_s).status, 0);
        QCOMPARE(digestOf(u"-s/a.flac"_s), digestOf(u"a.wav"_s));
        // The last format counts, and what is behind it belongs to the files.
        QCOMPARE(shntool(u"conv -d o -o cust ext=x { false } -o wav a.wav"_s).status, 0);
        QVERIFY(QFile::exists(path(u"o/a.wav"_s)));
    }

    void longFilesAndWhatStandsBehindThem() {
        // More than 4 GiB, nearly all of it a hole, by a recorder that wrote to a pipe.
        const QByteArray wav = wavFile(waves(1000, 24, 2), 2, 24, 96000);
        const QByteArray unknown(4, '\xFF');
        write(u"long.wav"_s, QByteArray(wav).replace(4, 4, unknown).replace(40, 4, unknown));
        QVERIFY(QFile::resize(path(u"long.wav"_s), 44 + 6LL * 96000 * 60 * 130));
        QVERIFY(shntool(u"len -c -t long.wav"_s).output.startsWith("   130:00.000 "));

        // RF64 for the data alone; the file's own length is in the short field.
        std::vector<int> samples = waves(1000, 16, 2);
        std::fill_n(samples.begin(), 100, 0);
        const QByteArray after = listChunk("INAM", QByteArray("trailer\0", 8));
        QByteArray rf64 = wavFile(samples, 2, 16, 44100, {}, after);
        QByteArray ds64("ds64\x1C\0\0\0", 8);
        appendNumber(ds64, uint32_t(rf64.size() + 28), 4);
        appendNumber(ds64, 0, 4);
        appendNumber(ds64, 4000, 4);
        ds64 += QByteArray(16, '\0');
        rf64.replace(0, 8, "RF64" + unknown).replace(40, 4, unknown).insert(12, ds64);
        write(u"rf64.wav"_s, rf64);
        QCOMPARE(shntool(u"trim -d o rf64.wav"_s).status, 0);
        const QByteArray info = shntool(u"info o/rf64-trimmed.wav"_s).output;
        QVERIFY2(info.contains("Extra RIFF chunks:          yes (28 bytes)"), info.constData());
        QVERIFY(info.contains("Junk appended to file:      no"));
        QVERIFY(contents(path(u"o/rf64-trimmed.wav"_s)).endsWith(after));
    }

    // An edit list that lets two seconds of the file be heard, from the middle of a packet on.
    void editListsAreFollowed() {
        write(u"a.wav"_s, wavFile(waves(48000 * 3, 16, 2), 2, 16, 48000));
        QVERIFY(make(u"ffmpeg -y -v error -i a.wav -c:a alac a.m4a"_s));
        QByteArray file = contents(path(u"a.m4a"_s));
        const qsizetype list = file.indexOf("elst");
        QVERIFY(list > 0);
        const auto put = [&](qsizetype at, uint32_t number) {
            number = qToBigEndian(number);
            file.replace(at, 4, QByteArray(reinterpret_cast<const char*>(&number), 4));
        };
        put(list + 12, 2000); // in thousandths
        put(list + 16, 9600); // in samples
        const QByteArray heard = judged(write(u"a.m4a"_s, file), 16);
        QVERIFY(heard.size() < 4 * 48000 * 3);
        QCOMPARE(digestOf(u"a.m4a"_s), md5(heard));
        QCOMPARE(shntool(u"conv -d o a.m4a"_s).status, 0);
    }

    void theSpeakersOfFlacAreKept() {
        write(u"a.wav"_s, extensible(wavFile(waves(9000, 16, 2), 6, 16, 48000), 0x60F));
        QVERIFY(make(u"flac -s -f a.wav"_s));
        QCOMPARE(shntool(u"conv -d o a.flac"_s).status, 0);
        QCOMPARE(contents(path(u"o/a.wav"_s)).mid(40, 4), QByteArray("\x0F\x06\0\0", 4));
    }

    void aRecorderThatWroteToAPipeToldNoLength() {
        const QByteArray wav = wavFile(waves(60000, 16, 2), 2, 16, 44100);
        write(u"a.wav"_s, QByteArray(wav)
                              .replace(4, 4, QByteArray(4, '\xFF'))
                              .replace(40, 4, QByteArray(4, '\xFF')));
        QCOMPARE(digestOf(u"a.wav"_s), md5(samplesOf(wav)));
        QCOMPARE(shntool(u"conv -d o a.wav"_s).status, 0);
        QCOMPARE(contents(path(u"o/a.wav"_s)), wav);
    }

    void silenceOfEightBitsLiesInTheMiddle() {
        std::vector<int> samples = waves(20000, 8, 1);
        std::fill_n(samples.begin(), 300, 0);
        std::fill_n(samples.rbegin(), 500, 0);
        const auto sounds = [](int sample) { return sample != 0; };
        const auto first = std::find_if(samples.begin(), samples.end(), sounds);
        const auto last = std::find_if(samples.rbegin(), samples.rend(), sounds).base();
        write(u"a.wav"_s, wavFile(samples, 1, 8, 11025));
        QCOMPARE(shntool(u"trim -d o a.wav"_s).status, 0);
        QCOMPARE(contents(path(u"o/a-trimmed.wav"_s)), wavFile({first, last}, 1, 8, 11025));
    }

    // Two streams on one line of communication that keeps writes apart.
    void everyWriteIsAWholeLineOrStep() {
        write(u"a.wav"_s, wavFile(waves(60000, 16, 2), 2, 16, 44100));
        std::array<int, 2> ends{};
        QCOMPARE(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()), 0);
        QProcess process;
        process.setWorkingDirectory(path({}));
        process.setStandardInputFile(QProcess::nullDevice());
        process.setChildProcessModifier([&] {
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
        });
        process.start(program, {u"hash"_s, u"a.wav"_s, u"missing.wav"_s, u"a.wav"_s});
        QVERIFY(process.waitForFinished(quav::test::patience));
        ::close(ends[1]);
        QByteArrayList writes;
        std::array<char, 65536> piece{};
        static const QRegularExpression step(u"^\b{5} *[0-9]+% $"_s);
        for (ssize_t count = 0; (count = ::recv(ends[0], piece.data(), piece.size(), 0)) > 0;) {
            const QByteArray text(piece.data(), count);
            if (!step.match(QString::fromUtf8(text)).hasMatch()) {
                writes << text;
            }
        }
        ::close(ends[0]);
        const QByteArrayList one{"Hashing [a.wav] (0:01.27) :   0% ", "\b\b\b\b\b100% OK\n",
                                 digestOf(u"a.wav"_s) + "  [shntool]  a.wav\n"};
        const QByteArray warning =
            "shntool [hash]: warning: cannot open non-existent file: [missing.wav]\n";
        QCOMPARE(writes, one + QByteArrayList{warning} + one);
    }
};

QTEST_GUILESS_MAIN(ShntoolTest)
#include "ShntoolTest.moc"
