#include "audio/ape/AdaptiveFilter.h"
#include "audio/ape/ApeFile.h"
#include "audio/ape/ApeWriter.h"
#include "audio/ape/FilterChain.h"
#include "audio/ape/Level.h"
#include "audio/ape/OldVersions.h"
#include "audio/ape/Predictor.h"
#include "audio/ape/Residuals.h"
#include "audio/pcm/Samples.h"
#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QTest>

#include <array>
#include <zlib.h>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

Ran mac(const QStringList& arguments, const QByteArray& input = {}) {
    return pipe(QStringLiteral(QUAV_MAC), arguments, input);
}

QByteArray numberBytes(uint32_t number, int bytes = 4) {
    QByteArray all;
    appendNumber(all, number, bytes);
    return all;
}

/// Loud noise of 24 bits: the sums of the higher levels do not hold it.
QByteArray noise24() {
    Noise noise;
    std::vector<int> samples(60000);
    std::generate(samples.begin(), samples.end(), [&] { return noise(24); });
    return wavFile(samples, 2, 24, 44100);
}

} // namespace

class MacTest : public QObject, ToolFolder {
    Q_OBJECT

    /// A Monkey's Audio file of one of the fixtures.
    QByteArray encoded(const char* name, int level = 1000) const {
        const QString out = path(u"encoded"_s);
        mac({write(u"wav"_s, pcmFixture(name)), out, u"-c%1"_s.arg(level)});
        const QByteArray content = contents(out);
        QFile::remove(out);
        QFile::remove(path(u"wav"_s));
        return content;
    }

private Q_SLOTS:
    void init() { folder = QTemporaryDir(); }

    // The digests are over the files of the five levels, back to back.
    void givesEveryByteBack_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("md5");
        const auto vector = [](const char* name, const char* md5) {
            row(name, pcmFixture(name), QByteArray(md5));
        };
        vector("one", "c8ff5fe6ead81f7207388944382a3787");
        vector("eight", "698b393917e7365906d7769e5dc5bce2");
        vector("waves", "bc3422d8517b983b34478a14120bbacc");
        vector("mono", "bcf49bbadc0767461c7943697aec6e2b");
        vector("eightbit", "753e0399e014de2889631bce0bab7e3e");
        vector("mono8odd", "9d92ea29163e2801bae72023d74b66a9");
        vector("hires", "cb9cc9e6eca2a9e68f6aeda9ea751c5c");
        vector("noise", "d74b742eae18edd2a0017138d59e589c");
        vector("silence", "7cf8d8a736aae5f38746673098926a9d");
        vector("same", "0591a564a5bb6a7e60ec95e8a37d2d2a");
        vector("pulse", "e27e4a6cb86c3d87914e4cf07ca75ee1");
        vector("chunks", "e9866eccdd2063cdee746185a7fcdd0b");
        row("junk for a pad byte", pcmFixture("mono8odd").chopped(1) + "junk", QByteArray());
        QByteArray half = pcmFixture("chunks");
        row("half a block", half.replace(68, 4, numberBytes(3997)), QByteArray());
    }
    void givesEveryByteBack() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, md5);
        const QString wav = write(u"a b%.wav"_s, file);
        const int bits = file.at(34);
        const QByteArray samples = judged(wav, bits);
        QVERIFY(!samples.isEmpty());
        QCryptographicHash hash(QCryptographicHash::Md5);
        for (int level = 1000; level <= 5000; level += 1000) {
            const QString ape = path(u"ä%1.ape"_s.arg(level));
            const QString option = u"-c%1"_s.arg(level);
            QCOMPARE(mac({wav, ape, option}).status, 0);
            hash.addData(contents(ape));
            QVERIFY(judged(ape, bits) == samples);
            QCOMPARE(mac({ape, u"-v"_s}).status, 0);

            const QString other = path(u"other%1"_s.arg(level));
            const Ran piped = mac({u"-"_s, other, option, u"-j2"_s}, file);
            QVERIFY(piped.errors.isEmpty() && contents(other) == contents(ape));
            const Ran back = mac({other, u"-"_s, u"-d"_s, u"-j3"_s});
            QVERIFY(back.status == 0 && back.errors.isEmpty() && back.output == file);
        }
        QVERIFY(md5.isEmpty() || hash.result().toHex() == md5);
    }

    // FFmpeg reads all versions; here it gets the newest, so that both ways can be compared.
    void framesThroughFFmpegAreTheSame() {
        for (const char* name : {"waves", "mono", "eightbit", "mono8odd", "hires"}) {
            QByteArray stream = encoded(name, 3000);
            for (const bool damaged : {false, true}) {
                stream[stream.size() - 40] = char(stream[stream.size() - 40] ^ damaged);
                const auto input = pcm::InputFile::open(write(u"ape"_s, stream).toStdString());
                QByteArray samples;
                bool sound = true;
                const auto take = [&](uint32_t, const ape::DecodedFrame* frame) {
                    sound = frame != nullptr;
                    samples += sound ? QByteArrayView(frame->bytes).first(qsizetype(frame->size))
                                     : QByteArrayView();
                };
                ape::decodeOldFrames(ape::ApeFile(input), {}, take);
                QCOMPARE(sound, !damaged);
                QVERIFY(damaged ||
                        (samples.size() > 3000 && pcmFixture(name).mid(44).startsWith(samples)));
            }
        }
    }

    void aPipeOfUnknownLengthIsCounted() {
        QByteArray wav = pcmFixture("waves");
        wav.replace(40, 4, numberBytes(0xFFFFFFFF));
        QCOMPARE(mac({u"-"_s, path(u"ape"_s), u"-c1000"_s}, wav).errors, QByteArray());
        mac({path(u"ape"_s), path(u"back"_s), u"-d"_s});
        QVERIFY(contents(path(u"back"_s)) == wav);
        // Who reads a pipe believes the size, and knows no longer format chunk.
        const QByteArray plain = pcmFixture("waves");
        QVERIFY(mac({u"-"_s, u"-"_s, u"-d"_s}, contents(path(u"ape"_s))).output == plain);
        const QByteArray longer = QByteArray(plain).replace(16, 1, "\x12").insert(36, 2, '\0');
        mac({write(u"wav"_s, longer), path(u"longer"_s), u"-c1000"_s});
        QVERIFY(mac({path(u"longer"_s), u"-"_s, u"-d"_s}).output == plain);
    }

    void foreignSurroundingsAreNoObstacle() {
        const QByteArray id3v2("ID3\4\0\0\0\0\0\5hello", 15);
        const QByteArray apev2 = "APETAGEX" + numberBytes(2000) + numberBytes(32) +
                                 QByteArray(16, '\0') + "TAG" + QByteArray(125, ' ');
        for (const QByteArray& before : {QByteArray(), id3v2, id3v2 + id3v2}) {
            const QString name = write(u"a"_s, before + encoded("chunks", 3000) + apev2);
            QCOMPARE(mac({name, u"-v"_s}).status, 0);
            QVERIFY(mac({name, u"-"_s, u"-d"_s}).output == pcmFixture("chunks"));
        }
    }

    void aHeaderThatIsNotStoredIsMade() {
        QByteArray file = encoded("mono8odd");
        file.remove(80, 44).chop(1); // the header, and the byte that pads the samples
        file.replace(20, 4, numberBytes(0)).replace(32, 20, QByteArray(20, '\0'));
        file.replace(54, 2, numberBytes(32, 2)).replace(76, 4, numberBytes(80));
        const QString name = write(u"a"_s, file);
        QVERIFY(mac({name, u"-"_s, u"-d"_s}).output == pcmFixture("mono8odd"));
        QCOMPARE(mac({name, u"-v"_s}).status, 0); // the digest of zeros stands for none
    }

    void damageIsNamed_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<bool>("cut");
        QTest::addColumn<QByteArray>("frames");
        // The file: 84 bytes, 44 of WAV header, two frames, and 28 bytes behind them.
        const QByteArray first = "  frame 1 of 2 (0:00.000 to 0:01.671)\n";
        const QByteArray second = "  frame 2 of 2 (0:01.671 to 0:02.267)\n";
        const QByteArray both = "  frames 1 to 2 of 2 (0:00.000 to 0:02.267)\n";
        row("digest", 40, false, QByteArray());
        row("seek table", 82, false, both);
        row("WAV header", 100, false, QByteArray());
        row("checksum of frame 1", 130, false, first);
        row("frame 1", 9000, false, first);
        row("frame 2", 200000, false, second);
        row("trailer", -3, false, QByteArray());
        row("cut in frame 1", 9000, true, both);
        row("cut in frame 2", 200000, true, second);
        row("cut in the trailer", -3, true, QByteArray());
    }
    void damageIsNamed() {
        QFETCH(int, place);
        QFETCH(bool, cut);
        QFETCH(QByteArray, frames);
        const QByteArray wav =
            wavFile(waves(100000, 16, 2), 2, 16, 44100, {}, listChunk("INAM", "somebody"));
        const QString name = path(u"a.ape"_s);
        QCOMPARE(mac({write(u"wav"_s, wav), name, u"-c1000"_s}).status, 0);
        QByteArray file = contents(name);
        place += place < 0 ? int(file.size()) : 0;
        file[place] = char(file[place] ^ 4);
        write(u"a.ape"_s, cut ? file.first(place) : file);
        for (const QString& jobs : {u"-j1"_s, u"-j2"_s}) {
            const Ran ran = mac({name, u"-v"_s, jobs});
            QCOMPARE(ran.status, 1);
            const QByteArray report = ran.errors.mid(ran.errors.lastIndexOf("Progress: "));
            QVERIFY2(report.contains("\nDamaged:\n" + frames +
                                     "  the digest over the whole file is wrong\nError: 1002 "),
                     report.constData());
        }
        const Ran ran = mac({name, path(u"out"_s), u"-d"_s});
        QVERIFY(ran.status == 1 && ran.errors.contains("\nError: 1002 "));
        QCOMPARE(files(), (QStringList{u"a.ape"_s, u"wav"_s}));
    }

    void hostileHeadersAreRefused() {
        const QByteArray file = encoded("eight");
        const auto refused = [&](int place, const QByteArray& bytes) {
            const QString name =
                write(u"a"_s, QByteArray(file).replace(place, bytes.size(), bytes));
            for (const QStringList& how : {QStringList{u"-v"_s}, {u"-"_s, u"-d"_s}}) {
                const Ran ran = mac(QStringList{name} + how);
                QVERIFY2(ran.status == 1 && ran.errors.contains("Error: 1002 "),
                         qPrintable(u"at %1: "_s.arg(place) + QString::fromUtf8(ran.errors)));
            }
        };
        for (const int place : {0, 4, 8, 12, 16, 20, 24, 28, 32, 56, 60, 64, 68, 70, 76}) {
            refused(place, numberBytes(0xFFFFFFFF));
        }
        for (const int place : {56, 60, 64, 68, 70, 72}) {
            refused(place, numberBytes(0));
        }
        refused(64, numberBytes(0x40000001));
        refused(4, numberBytes(4000, 2));
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("more");
        QTest::addColumn<QByteArray>("error");
        const QByteArray wav = pcmFixture("eight");
        const QByteArray aiff = "FORM\0\0\0\x38"
                                "AIFFCOMM\0\0\0\x12\0\2\0\0\0\1\0\x10\x40\x0e\xac\x44"
                                "\0\0\0\0\0\0SSND\0\0\0\x0c\0\0\0\0\0\0\0\0abcd"_ba;
        row("AIFF", aiff, u"out -c2000"_s, "Error: 1002 "_ba);
        row("3 channels", wavFile({1, 2, 3}, 3, 16, 8000), u"out -c2000"_s, "Error: 1002 "_ba);
        row("32 bits", wavFile({1, 2}, 2, 32, 8000), u"out -c2000"_s, "Error: 1002 "_ba);
        row("no samples", wavFile({}, 2, 16, 8000), u"out -c2000"_s, "Error: 1002 "_ba);
        row("no WAV", "junk"_ba, u"out -c2000"_s, "Error: 1002 "_ba);
        row("cut short", pcmFixture("waves").chopped(1), u"out -c2000"_s, "Error: 1002 "_ba);
        row("no APE", wav, u"out -d"_s, "Error: 1002 "_ba);
        row("empty", QByteArray(), u"out -d"_s, "Error: 1002 "_ba);
        row("output is there", wav, u"in -c1000"_s, "Error: 1001 "_ba);
        row("no such folder", wav, u"no/out -c1000"_s, "Error: 1001 "_ba);
        row("to a pipe", wav, u"- -c1000"_s, "Error: 1001 "_ba);
        row("level", wav, u"out -c1500"_s, "Error: 1002 -c"_ba);
        row("no output", wav, u"-c1000"_s, "Error: 1002 OUTPUT"_ba);
        row("nothing to do", wav, u"out"_s, "Error: 1002 One of -c, -d and -v"_ba);
    }
    void refuses() {
        QFETCH(QByteArray, input);
        QFETCH(QString, more);
        QFETCH(QByteArray, error);
        write(u"in"_s, input);
        const QDir before = QDir::current();
        QDir::setCurrent(folder.path());
        const Ran ran = mac(QStringList{u"in"_s} + more.split(u' '));
        QDir::setCurrent(before.path());
        QCOMPARE(ran.status, 1);
        QVERIFY2(ran.errors.startsWith(error), ran.errors.constData());
        QVERIFY(ran.output.isEmpty() && contents(path(u"in"_s)) == input);
        QCOMPARE(files(), QStringList{u"in"_s});
    }

    void progressComesFirst() {
        const QString wav = path(u"1.wav"_s);
        QVERIFY(writeWav(wav, {.frames = 3000000}));
        const QString ape = path(u"2.ape"_s);
        const QRegularExpression shape(
            u"^(\\rProgress: \\d+\\.\\d% \\(\\d+\\.\\d seconds remaining, \\d+\\.\\d seconds "
            u"total\\) {3}){2,}\\n[A-Z][^\\d]*\\n$"_s);
        for (const QStringList& arguments :
             {QStringList{wav, ape, u"-c3000"_s}, {ape, u"-v"_s}, {ape, path(u"3"_s), u"-d"_s}}) {
            const QString errors = QString::fromUtf8(mac(arguments).errors);
            QVERIFY2(shape.match(errors).hasMatch(), qPrintable(errors));
            QVERIFY(errors.lastIndexOf(u"Progress: 100.0%") == errors.lastIndexOf(u"Progress: "));
        }
    }

    void stopsWhenTheReaderHasGone() {
        QVERIFY(writeWav(path(u"wav"_s), {.frames = 1000000}));
        QCOMPARE(mac({path(u"wav"_s), path(u"ape"_s), u"-c5000"_s}).status, 0);
        const Ran ran =
            run(u"bash"_s, {u"-c"_s, u"\"$0\" \"$1\" - -d | head -c 44; exit ${PIPESTATUS[0]}"_s,
                            QStringLiteral(QUAV_MAC), path(u"ape"_s)});
        QVERIFY(ran.output == contents(path(u"wav"_s)).first(44));
        QVERIFY(ran.status == 1 && ran.errors.isEmpty());
    }

    void samplesTooLoudForALevelGoToTheNext() {
        const QString wav = write(u"wav"_s, noise24());
        const QString ape = path(u"ape"_s);
        QCOMPARE(mac({wav, ape, u"-c5000"_s, u"-j2"_s}).status, 0);
        QCOMPARE(contents(ape).mid(52, 2), numberBytes(4000, 2));
        QVERIFY(judged(ape, 24) == judged(wav, 24) && !judged(wav, 24).isEmpty());
        QVERIFY(mac({ape, u"-"_s, u"-d"_s}).output == noise24());
    }

    // Some encoders have 64 bits for the sums of level 5000, where others wrap at 32.
    void otherWidthsOfSumsAreTried() {
        const QByteArray wav = noise24();
        const std::vector<uint8_t> bytes(wav.begin() + 44, wav.end());
        const pcm::PcmFormat pcm{
            .channels = 2, .bitsPerSample = 24, .bytesPerSample = 3, .sampleRate = 44100};
        std::vector<int32_t> samples(bytes.size() / 3);
        pcm::unpackSamples(pcm, bytes, samples);
        samples.resize(2 * 1500); // before the first filter's sums are too large, too
        const ape::Level* const level = ape::findLevel(5000);
        std::array<std::vector<int32_t>, 2> residuals;
        std::array<ape::Predictor<true>, 2> predictors;
        bool alike = true;
        int32_t middle = 0;
        for (size_t i = 0; i < samples.size(); i += 2) {
            const int32_t difference = samples[i + 1] - samples[i];
            std::array values{difference, samples[i] + difference / 2};
            std::array others{middle, difference};
            middle = values[1];
            for (size_t c = 0; c < 2; ++c) {
                predictors[c].observe(others[c]);
                const int32_t prediction = predictors[c].predicted<int64_t>();
                alike &= prediction == predictors[c].predicted<int32_t>();
                residuals[c].push_back(predictors[c].encode(values[c], prediction));
            }
        }
        QVERIFY(!alike && ape::FilterChain(*level, 2).encode(residuals[0], residuals[1]));
        const auto crc = uint32_t(::crc32(0, bytes.data(), unsigned(3 * samples.size())) >> 1);
        std::vector<uint8_t> frame{uint8_t(crc >> 24), uint8_t(crc >> 16), uint8_t(crc >> 8),
                                   uint8_t(crc)};
        ape::RangeEncoder coder(frame, frame.size());
        coder.reserve(samples.size() * ape::Residuals::valueBytes);
        std::array<ape::Residuals, 2> states;
        for (size_t i = 0; i < samples.size(); ++i) {
            states[i % 2].encode(residuals[i % 2][i / 2], coder);
        }
        frame.resize(coder.finish());
        ape::ApeWriter writer(path(u"ape"_s).toStdString(), {level, pcm}, 1500, bytes);
        writer.addFrame(frame);
        writer.endFrames();
        writer.commit();
        const QByteArray sound = wav.mid(44, 3 * qsizetype(samples.size()));
        QVERIFY(judged(path(u"ape"_s), 24) == sound);
        mac({path(u"ape"_s), path(u"back"_s), u"-d"_s});
        QVERIFY(contents(path(u"back"_s)) == wav.mid(44) + sound);
    }

    void allInstructionsGiveTheSame_data() {
        QTest::addColumn<unsigned>("taps");
        QTest::addColumn<unsigned>("shift");
        for (const unsigned level : {2000U, 3000U, 4000U, 5000U}) {
            for (const ape::FilterShape shape : ape::findLevel(level)->filters) {
                const QString name = u"%1 taps at level %2"_s.arg(shape.taps).arg(level);
                row(qPrintable(name), shape.taps, shape.shift);
            }
        }
    }
    void allInstructionsGiveTheSame() {
        QFETCH(unsigned, taps);
        QFETCH(unsigned, shift);
        std::vector<std::unique_ptr<ape::AdaptiveFilter>> filters;
        for (const auto instructions : {ape::Instructions::Portable, ape::bestInstructions()}) {
            for (const unsigned channels : {1U, 1U, 2U, 2U}) { // one to encode, one to decode
                filters.push_back(ape::makeFilter({taps, shift}, channels, instructions));
            }
        }
        Noise noise;
        for (int call = 0; call < 80; ++call) {
            // Noise of every loudness up to what 16 bits do not hold, and their two ends.
            std::array<std::vector<int32_t>, 2> sound;
            sound[0].resize(1 + size_t(noise(11)));
            sound[1].resize(sound[0].size());
            const int bits = call % 18;
            for (auto& samples : sound) {
                std::generate(samples.begin(), samples.end(), [&] {
                    return call % 5 == 4 ? noise(1) * 65535 - 32768 : noise(bits + 1) - (1 << bits);
                });
            }
            const size_t stereo = size_t(call) % 2 * 2;
            std::array coded{sound, sound};
            const bool alike = filters[stereo]->encode(coded[0][0], coded[0][1]);
            QCOMPARE(filters[4 + stereo]->encode(coded[1][0], coded[1][1]), alike);
            QVERIFY(coded[0] == coded[1]);
            for (size_t way = 0; way < 2; ++way) {
                ape::AdaptiveFilter& decoder = *filters[4 * way + stereo + 1];
                QCOMPARE(decoder.decode(coded[way][0], coded[way][1], false), alike);
                QVERIFY(coded[way] == sound);
            }
        }
    }
};

QTEST_GUILESS_MAIN(MacTest)
#include "MacTest.moc"
