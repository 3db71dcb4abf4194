#include "audio/tta/Stream.h"
#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QCryptographicHash>
#include <QTest>

#include <sys/socket.h>

#include <array>
#include <unistd.h>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

const QString program = QStringLiteral(QUAV_TTAENC);
const QString out = u"-o"_s;

struct Bench : ToolFolder {
    /// What the tool makes of a file, whose kind it has to see for itself.
    QByteArray converted(const QByteArray& input) const {
        QFile::remove(path(u"out"_s));
        test::run(program, {write(u"in"_s, input), out, path(u"out"_s)});
        return contents(path(u"out"_s));
    }
    QByteArray ffmpeg(const QByteArray& input, const QString& options) const {
        const QString line = u"-v error -y -i %1 -fflags +bitexact -bitexact %2 %3"_s;
        test::run(u"ffmpeg"_s, line.arg(write(u"in"_s, input), options, path(u"ff"_s)).split(u' '));
        return contents(path(u"ff"_s));
    }
};

/// The tool between pipes; it has nothing to say.
QByteArray piped(const QStringList& arguments, const QByteArray& input) {
    const Ran ran = pipe(program, arguments, input);
    return ran.errors + ran.output;
}

void seal(QByteArray& file, qsizetype from, qsizetype to) {
    tta::putChecksum(
        {reinterpret_cast<uint8_t*>(file.data()) + from, static_cast<size_t>(to - from)});
}

QByteArray withNumber(QByteArray file, qsizetype at, uint32_t number, int bytes) {
    QByteArray little;
    appendNumber(little, number, bytes);
    file.replace(at, bytes, little);
    seal(file, 0, tta::headerSize);
    return file;
}

QByteArray inverted(QByteArray file, qsizetype at) {
    file[at] = static_cast<char>(~file[at]);
    return file;
}

} // namespace

class TtaencTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encodesToTheKnownBytesAndBack_data() {
        QTest::addColumn<QString>("digest");
        row("one", "4951aa1c01b57a42e603ead6f2a4bba3");
        row("eight", "f2744a90ece94b395072adaa423803a0");
        row("waves", "cc0353b993e938f4bf20c34145f57388");
        row("mono", "b7bcc09d97f643d2b5d7f21ea843752a");
        row("eightbit", "926d5d97ba75b6b8e594f457c0ea73d7");
        row("mono8odd", "babf89b2ab7ac27f9a5f918fe39bae12");
        row("hires", "6e9ac74da81d32bcda0de74783316d1c");
        row("noise", "5fd514fb69a26114e977b20b6bc758d9");
        row("silence", "1b195c12785a9d9192cd8c73e414889d");
        row("same", "28b34b55bda9aa3a5b589a58b5ba9c55");
        row("pulse", "40fb062832e816b7d62b908d9dac92e7");
        row("chunks", "1e494ed7b8ca4e91391eea76e0e9e76e");
    }
    void encodesToTheKnownBytesAndBack() {
        QFETCH(QString, digest);
        const Bench bench;
        const QByteArrayView name = QTest::currentDataTag();
        const QByteArray wav = pcmFixture(name);
        const QByteArray tta = bench.converted(wav);
        QCOMPARE(QCryptographicHash::hash(tta, QCryptographicHash::Md5).toHex(), digest.toLatin1());
        // TTA has no place for chunks.
        const QByteArray plain = wavFile(waves(1000, 16, 2), 2, 16, 44100);
        QVERIFY(bench.converted(tta) == (name == "chunks" ? plain : wav));
    }

    void agreesWithFfmpegBothWays_data() {
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("blocks");
        for (const int bits : {8, 16, 24}) {
            for (const int channels : {1, 2, 3, 4, 6, 8}) {
                const QString name = u"%1 bits x %2"_s.arg(bits).arg(channels);
                row(qPrintable(name), channels, bits, 8359 + 5000); // 8359 blocks are a frame
            }
        }
        row("one sample", 1, 24, 1);
        row("short frame, 24 bits", 3, 24, 8359 + 300);
        row("short frame, 8 bits", 2, 8, 8359 + 5);
        row("a block less than a frame", 2, 24, 8358);
        row("a frame", 2, 16, 8359);
    }
    void agreesWithFfmpegBothWays() {
        QFETCH(int, channels);
        QFETCH(int, bits);
        QFETCH(int, blocks);
        const Bench bench;
        Noise noise;
        std::vector<int> samples;
        for (int i = 0; i < blocks * channels; ++i) {
            samples.push_back(i % 3000 < 1000 ? noise(bits) - (1 << (bits - 1)) : noise(bits / 2));
        }
        const QByteArray wav = wavFile(samples, channels, bits, 8000);
        const QByteArray tta = bench.converted(wav);
        const QString aiff = (bits == 8 ? u"-c pcm_s%1 -f aiff"_s : u"-c pcm_s%1be -f aiff"_s);
        const QString raw = u"-c pcm_s32le -f s32le"_s;
        QVERIFY(tta == bench.ffmpeg(wav, u"-f tta"_s));
        QVERIFY(tta == bench.converted(bench.ffmpeg(wav, aiff.arg(bits))));
        const QByteArray pcm = bench.ffmpeg(wav, raw);
        QCOMPARE(pcm.size(), blocks * channels * 4);
        QVERIFY(bench.ffmpeg(tta, raw) == pcm && bench.ffmpeg(bench.converted(tta), raw) == pcm);
    }

    // FFmpeg's encoder ends where clicks in silence take more room than it thinks, and its decoder
    // before five channels.
    void encodesWhatFfmpegDoesNot() {
        const Bench bench;
        const QString raw = u"-c pcm_s16le -f s16le"_s;
        Noise noise;
        std::vector<int> samples;
        for (int i = 0; i < 2 * 46080; ++i) {
            samples.push_back(i % 400 == 399 ? 32767 : noise(1));
        }
        const QByteArray clicks = wavFile(samples, 1, 16, 44100);
        const QByteArray tta = bench.converted(clicks);
        QVERIFY(tta.size() > clicks.size() && bench.converted(tta) == clicks);
        QVERIFY(bench.ffmpeg(tta, raw) == bench.ffmpeg(clicks, raw));
        const QByteArray five = wavFile(waves(5 * 3000, 16, 1), 5, 16, 8000);
        const QByteArray back = bench.converted(bench.converted(five));
        QCOMPARE(bench.ffmpeg(back, raw).size(), 5 * 3000 * 2);
        QVERIFY(bench.ffmpeg(back, raw) == bench.ffmpeg(five, raw));
        // On a pipe the header is the plainest.
        const QString file = bench.write(u"five"_s, bench.converted(five));
        QVERIFY(piped({u"-d"_s, out, u"-"_s, file}, {}) == five);
    }

    void pipesCarryNothingButAudio() {
        const Bench bench;
        const QByteArray wav = pcmFixture("waves");
        const QByteArray tta = bench.converted(wav);
        const QString output = bench.path(u"piped.tta"_s);
        QCOMPARE(piped({u"-e"_s, out, output, u"-"_s}, wav), QByteArray());
        QVERIFY(contents(output) == tta);
        const QByteArray endless = QByteArray(wav).replace(40, 4, "\xff\xff\xff\xff");
        QVERIFY(piped({u"-"_s, out, u"-"_s}, wav) == tta);
        QVERIFY(piped({u"-e"_s, u"-"_s, out, u"-"_s}, endless) == tta);
        QVERIFY(piped({u"-d"_s, out, u"-"_s, output}, {}) == wav);
        QVERIFY(piped({u"-"_s, out, u"-"_s}, tta) == wav);
        const QString line = u"\"$0\" -d -o - \"$1\" | head -c 44"_s;
        const Ran closed = test::run(u"sh"_s, {u"-c"_s, line, program, output});
        QCOMPARE(closed.errors + closed.output, wav.first(44));
    }

    void saysWhatIsWrong_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("says");
        const QByteArray file = Bench().converted(pcmFixture("waves"));
        const qsizetype frames = tta::headerSize + 4 * 3 + 4;
        const qsizetype second = frames + qFromLittleEndian<quint32>(&file.data()[tta::headerSize]);
        QByteArray sealed = QByteArray(file).replace(frames, 1000, QByteArray(1000, '\xff'));
        seal(sealed, frames, second);
        QByteArray wide = withNumber(file.first(100), 10, 0x7FFFFF, 4);
        wide = withNumber(wide, 14, 0x7FFFFF, 4).replace(22, 4, QByteArray("\x20\0\0\0", 4));
        seal(wide, 22, 30);
        row("frame", inverted(file, file.size() / 2),
            "frame 2 of 3, from 0:01.044 to 0:02.089, has a wrong checksum"_ba);
        row("its code", sealed, "frame 1 of 3, from 0:00.000 to 0:01.044, cannot be decoded"_ba);
        row("cut", file.chopped(1), "frame 3 of 3, from 0:02.089 to 0:02.267, is cut off"_ba);
        row("gone", file.first(second), "frame 2 of 3, from 0:01.044 to 0:02.089, is missing"_ba);
        row("hollow", wide, "frame 1 of 1, from 0:00.000 to 0:01.000, is too short"_ba);
        row("header", inverted(file, 6), "is damaged: the checksum of its header is wrong"_ba);
        row("table", inverted(file, 22), "is damaged: the checksum of its seek table is wrong"_ba);
        row("endless", withNumber(file, 14, ~0U, 4), "is damaged: it ends inside its seek"_ba);
        row("no samples", withNumber(file, 14, 0, 4), "holds no samples"_ba);
        row("high rate", withNumber(file, 10, 0x800000, 4), "2 channels of 16 bits at 8388608"_ba);
        row("channels", withNumber(file, 6, 17, 2), "17 channels of 16 bits"_ba);
        row("encrypted", withNumber(file, 4, 2, 2), "is encrypted"_ba);
        row("text", "no music at all"_ba, "is no TTA file"_ba);
        const QByteArray big = wavFile({1, 2}, 1, 32, 44100);
        row("WAV, 32 bits", big, "has samples of 32 bits; TTA holds 8, 16 or 24"_ba);
        row("floats", QByteArray(big).replace(20, 1, "\x03"), "holds floating-point samples"_ba);
        row("WAV, no samples", wavFile({}, 2, 16, 44100), "holds no samples"_ba);
        row("WAV, channels", wavFile(waves(17, 16, 1), 17, 16, 44100), "has 17 channels"_ba);
        row("WAV, rate", wavFile({1}, 1, 16, 0x800000), "has a sample rate of 8388608 Hz"_ba);
        row("WAV, cut", pcmFixture("eight").chopped(1), "is damaged: it ends"_ba);
    }
    void saysWhatIsWrong() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, says);
        const Bench bench;
        const QString input = bench.write(u"a.tta"_s, file);
        const QString output = bench.path(u"a.wav"_s);
        const QByteArray line = input.toUtf8() + ": " + says;
        const QString mode = file.startsWith("RIFF") ? u"-e"_s : u"-d"_s;
        const Ran ran = test::run(program, {mode, input, out, output});
        QVERIFY2(ran.errors.contains("ttaenc: " + line), ran.errors.data());
        QCOMPARE(ran.status, 1);
        const Ran tested = test::run(program, {u"-t"_s, input});
        QVERIFY2(mode == u"-e" || tested.errors.contains(line), tested.errors.data());
        QCOMPARE(tested.status, 1);
        QVERIFY(!QFile::exists(output));
    }

    void tagsAroundTheStreamAreSteppedOver() {
        const Bench bench;
        const QByteArray wav = pcmFixture("eight");
        const QByteArray id3v2("ID3\x04\0\0\0\0\x01\x10", 10); // and 144 bytes more
        const QByteArray front = id3v2 + QByteArray(144, 'x');
        QVERIFY(bench.converted(front + front + bench.converted(wav) + "APETAGEX") == wav);
        QVERIFY(bench.converted(front + wav) == bench.converted(wav));
    }

    void onlyAnEmptyFileIsWrittenOver() {
        const Bench bench;
        const QString wav = bench.write(u"a.wav"_s, pcmFixture("eight"));
        const QString output = bench.write(u"a.tta"_s, {});
        QCOMPARE(test::run(program, {wav, out, output}).status, 0);
        const QByteArray first = contents(output);
        const Ran second = test::run(program, {output, out, output});
        QVERIFY(second.status == 1 && second.errors.contains("is not written over"));
        QCOMPARE(contents(output), first);
    }

    void progressComesInWholePieces_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("pieces"); // each with a line through its end
        const QByteArray both = "\rPercent Progress: 0%|\rPercent Progress: 100%\n|";
        row("encode", QStringList{u"1% live.wav"_s, out, u"b.tta"_s}, both);
        row("decode", QStringList{u"1% live.tta"_s, out, u"b.wav"_s}, both);
        row("test", QStringList{u"-t"_s, u"1% live.tta"_s},
            "verifying 1\uFF05 live.tta,   0% done...|\b\b\b\b\b\b\b\b\b\b\b\b100% done...|"
            "\rverified 1\uFF05 live.tta: every frame is intact\n|"_ba);
    }
    void progressComesInWholePieces() {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, pieces);
        const Bench bench;
        bench.write(u"1% live.wav"_s, pcmFixture("eight"));
        bench.write(u"1% live.tta"_s, bench.converted(pcmFixture("eight")));
        std::array<int, 2> ends{};
        QCOMPARE(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), 0); // keeps writes apart
        QProcess process;
        process.setWorkingDirectory(bench.folder.path());
        process.setChildProcessModifier([&] { ::dup2(ends[1], STDERR_FILENO); });
        process.start(program, arguments);
        QVERIFY(process.waitForFinished(-1));
        ::close(ends[1]);
        QByteArray told;
        std::array<char, 1000> piece{};
        for (ssize_t n = 0; (n = ::recv(ends[0], piece.data(), piece.size(), 0)) > 0;) {
            told += QByteArray(piece.data(), n) + '|';
        }
        ::close(ends[0]);
        QCOMPARE(told, pieces);
    }
};

QTEST_GUILESS_MAIN(TtaencTest)
#include "TtaencTest.moc"
