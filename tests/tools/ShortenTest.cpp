#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QCryptographicHash>
#include <QTest>

#include <array>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

Ran tool(const QStringList& arguments, const QByteArray& input = {}) {
    return pipe(QStringLiteral(QUAV_SHORTEN), arguments, input);
}

/// Writes streams such as our own encoder never does, one character a bit.
struct Foreign {
    unsigned version = 2;
    QByteArray bits = {};

    Foreign& code(unsigned number, unsigned lowBits) {
        const QByteArray low = QByteArray::number(number | 1U << 31, 2).right(qsizetype(lowBits));
        bits += QByteArray(qsizetype(number >> lowBits), '0') + '1' + low;
        return *this;
    }
    Foreign& signedCode(int number, unsigned k) {
        return code(unsigned(number < 0 ? -2 * number - 1 : 2 * number), k + 1);
    }
    Foreign& number(unsigned value) { return code(20, 2).code(value, 20); }
    Foreign& settings(unsigned type, unsigned channels, unsigned blockSize, unsigned means = 4) {
        number(type).number(channels).number(blockSize).number(8); // the predictor's order
        return number(means).number(1).code(77, 7);                // and a byte to be skipped
    }
    Foreign& verbatim(const QByteArray& bytes) {
        code(9, 2).code(unsigned(bytes.size()), 5);
        for (const char byte : bytes) {
            code(uint8_t(byte), 8);
        }
        return *this;
    }
    QByteArray stream() const {
        QByteArray bytes = QByteArray("ajkg") + char(version);
        const QByteArray padded = bits + '1' + QByteArray(31 - bits.size() % 32, '0');
        for (qsizetype i = 0; i < padded.size(); i += 8) {
            bytes += char(padded.mid(i, 8).toInt(nullptr, 2));
        }
        return bytes;
    }
};

} // namespace

class ShortenTest : public QObject, ToolFolder {
    Q_OBJECT

private Q_SLOTS:
    void init() { folder = QTemporaryDir(); }

    // The digests say that every block takes the fewest bits there are. The judge knows no signed
    // bytes, takes every AIFF file for big-endian, and wants samples.
    void givesEveryByteBack_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("md5");
        QTest::addColumn<bool>("judge");
        const auto vector = [](const char* name, const char* md5) {
            row(name, pcmFixture(name), QByteArray(md5), true);
        };
        vector("one", "06019fba8b852f986c2c14d319d2cc23");
        vector("eight", "f024269770f95acb17399209e0b50c29");
        vector("waves", "125ecfd21df6573c1fd32869cd57da30");
        vector("mono", "bcf9440f8ae38550f7e35df27af2d36d");
        vector("eightbit", "1182bedf2ef5212031277163f0f46ee0");
        vector("mono8odd", "6fda04200d09fc4695a709a645f0cfa2");
        vector("noise", "a721a05a67ebc8fcf1e2761cee26382a");
        vector("silence", "5fd0f23e738cce57146021c83b2e2594");
        vector("same", "9aba05a0d491940e08e317dbc8707010");
        vector("pulse", "20bbd41578ce128b635e3ad4aa3e44d5");
        vector("chunks", "a2d6db5a987033537d622cb9f962a8c7");
        QByteArray half = pcmFixture("chunks");
        row("junk behind", half + "junk\n", QByteArray(), true);
        row("half a block", half.replace(68, 4, QByteArray("\x9d\x0f\0\0", 4)), QByteArray(), true);
        row("of no size", half.replace(68, 4, "\xff\xff\xff\xff"), QByteArray(), true);
        const QByteArray large = QByteArray("LIST\x28\x23\0\0", 8) + QByteArray(9000, 'x');
        const std::vector<int> samples = waves(8000, 16, 1);
        row("much before", wavFile(samples, 1, 16, 8000, large), QByteArray(), true);
        row("8 channels", wavFile(samples, 8, 16, 8000), QByteArray(), true);
        row("no samples", wavFile({}, 2, 16, 8000), QByteArray(), false);
        const QString wav = write(u"a.wav"_s, pcmFixture("waves"));
        for (const char* codec : {"pcm_s16be", "pcm_s16le", "pcm_s8"}) {
            run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-y"_s, u"-i"_s, wav, u"-c:a"_s,
                              QString::fromLatin1(codec), path(u"a.aiff"_s)});
            row(codec, contents(path(u"a.aiff"_s)), QByteArray(), "pcm_s16be"_ba == codec);
        }
    }
    void givesEveryByteBack() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, md5);
        QFETCH(bool, judge);
        const QString out = path(u"out.shn"_s);
        QCOMPARE(tool({u"-"_s, out}, file).errors, QByteArray());
        const Ran back = tool({u"-x"_s, out, u"-"_s});
        QCOMPARE(back.errors, QByteArray());
        QCOMPARE(back.status, 0);
        QVERIFY(!file.isEmpty() && back.output == file);
        const auto hash = QCryptographicHash::hash(contents(out), QCryptographicHash::Md5);
        QVERIFY(md5.isEmpty() || hash.toHex() == md5);
        if (judge) {
            const int bits = file.at(34) == 8 ? 8 : 16;
            const QByteArray wanted = judged(write(u"in"_s, file), bits);
            QVERIFY(!wanted.isEmpty() && judged(out, bits) == wanted);
        }
    }

    void readsWhatOthersWrite_data() {
        QTest::addColumn<unsigned>("version");
        QTest::addColumn<unsigned>("type");
        QTest::addColumn<unsigned>("means");
        row("version 1", 1U, 5U, 4U);
        row("version 2, no mean", 2U, 5U, 0U);
        row("version 3", 3U, 5U, 3U);
        row("8 bit", 2U, 2U, 4U);
        row("8 bit, version 1", 1U, 2U, 5U);
    }
    void readsWhatOthersWrite() {
        QFETCH(unsigned, version);
        QFETCH(unsigned, type);
        QFETCH(unsigned, means);
        Noise random;
        Foreign foreign{.version = version};
        foreign.settings(type, 2, 64, means);
        foreign.verbatim(pcmFixture(type == 2 ? "eightbit" : "eight").first(44));
        for (int block = 0; block < 1000; ++block) {
            if (block % 16 == 0) {
                foreign.code(6, 2).code(unsigned(random(2)), 2);
            }
            const int size = block < 800 ? 64 : 3; // the last ones are shorter than the predictor
            if (block == 800) {
                foreign.code(5, 2).number(3);
            }
            const unsigned function = std::array{0U, 1U, 2U, 3U, 7U, 7U, 7U, 8U}[size_t(random(3))];
            const unsigned k = 2 + unsigned(random(2));
            foreign.code(function, 2);
            if (function != 8) {
                foreign.code(k, 3);
            }
            const int order = function == 7 ? random(3) : 0;
            if (function == 7) {
                foreign.code(unsigned(order), 2);
            }
            for (int i = 0; i < order; ++i) {
                foreign.signedCode(random(3) - 4, 5);
            }
            for (int i = 0; i < size && function != 8; ++i) {
                foreign.signedCode(random(6) - 32, k);
            }
        }
        const QString name = write(u"a.shn"_s, foreign.code(4, 2).stream() + "a seek table");
        const QByteArray samples = judged(name, type == 2 ? 8 : 16);
        QVERIFY(samples.size() > 40000);
        const QByteArray tagged = QByteArray("ID3\4\0\0\0\0\0\1x", 11) + contents(name);
        QVERIFY(tool({u"-x"_s, u"-"_s, u"-"_s}, tagged).output.mid(44) == samples);
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("error");
        row("24 bit", pcmFixture("hires"), u"samples of 24 bits"_s);
        row("9 channels", wavFile({}, 9, 16, 8000), u"9 channels"_s);
        row("no WAV", "RIFX"_ba, u"no WAV"_s);
        row("cut short", pcmFixture("waves").chopped(1), u"damaged"_s);
        const auto sound = [] { return Foreign().settings(5, 2, 256); };
        row("version 0", Foreign{.version = 0}.stream(), u"version 0"_s);
        row("A-law", Foreign().settings(8, 2, 256).stream(), u"type 8 (μ-law, A-law"_s);
        row("channels", Foreign().settings(5, 9, 256).stream(), u"9 channels"_s);
        row("large blocks", Foreign().settings(5, 2, 65536).stream(), u"block size"_s);
        row("function", sound().code(10, 2).stream(), u"no function 10"_s);
        row("growing", sound().code(5, 2).number(257).stream(), u"block size changes"_s);
        row("between", sound().code(8, 2).code(5, 2).number(9).stream(), u"block size changes"_s);
        row("half", sound().code(8, 2).code(4, 2).stream(), u"between the channels"_s);
        row("shift", sound().code(6, 2).code(32, 2).stream(), u"shifted"_s);
        row("k", sound().code(1, 2).code(31, 3).stream(), u"numbers are too large"_s);
        row("looks back", sound().code(7, 2).code(1, 3).code(9, 2).stream(), u"looks back"_s);
        row("verbatim", sound().code(9, 2).code(1U << 24, 20).stream(), u"cut short"_s);
    }
    void refuses() {
        QFETCH(QByteArray, input);
        QFETCH(QString, error);
        QStringList arguments{u"-"_s, path(u"out"_s)};
        if (input.startsWith("ajkg")) {
            arguments.prepend(u"-x"_s);
        }
        const Ran ran = tool(arguments, input);
        QCOMPARE(ran.status, 1);
        const QString line = QString::fromUtf8(ran.errors);
        QVERIFY2(line.startsWith(u"shorten: standard input: ") && line.contains(error) &&
                     line.indexOf(u'\n') == line.size() - 1,
                 ran.errors.constData());
        QCOMPARE(files(), QStringList());
    }

    // There is no checksum: what is changed may be taken, what is cut off may not.
    void survivesDamage() {
        const QString name = path(u"a.shn"_s);
        QCOMPARE(tool({u"-"_s, name}, pcmFixture("chunks")).status, 0);
        const QByteArray stream = contents(name);
        Noise random;
        int taken = 0;
        for (int i = 0; i < 1000; ++i) {
            QByteArray broken = stream;
            char& byte = broken[random(16) % broken.size()];
            byte = char(byte ^ 1 << random(3));
            const int status = tool({u"-x"_s, u"-"_s, path(u"out"_s)}, broken).status;
            QVERIFY(status == 0 || status == 1);
            taken += QFile::remove(path(u"out"_s)) ? 1 : 0;
            QCOMPARE(files(), {u"a.shn"_s});
        }
        QVERIFY(taken > 0 && taken < 1000);
        for (qsizetype size = stream.size() - 5; size >= 0; size -= 50) {
            QCOMPARE(tool({u"-x"_s, u"-"_s, path(u"out"_s)}, stream.first(size)).status, 1);
        }
    }

    void namesItsOutput() {
        const QString wav = write(u"a.WAV"_s, pcmFixture("eight"));
        const QString shn = write(u"a.shn"_s, {}); // what is empty may be replaced
        QCOMPARE(tool({wav}).errors, QByteArray());
        QCOMPARE(contents(shn).size(), 101);
        QCOMPARE(tool({u"-x"_s, shn}).errors, QByteArray());
        QCOMPARE(contents(path(u"a.wav"_s)), contents(wav));
        const QByteArray aiff = Foreign().settings(3, 1, 9).verbatim("FORM?").code(4, 2).stream();
        QCOMPARE(tool({u"-x"_s, write(u"b"_s, aiff)}).errors, QByteArray());
        QCOMPARE(contents(path(u"b.aiff"_s)), "FORM?");
        QCOMPARE(tool({wav}).status, 1); // and what is full may not
        QCOMPARE(files().size(), 5);     // and every source is still there
    }

    // A program may look at the header only, and make us ignore the signal of a closed pipe.
    void givesTheHeaderAtOnceAndStopsQuietly() {
        const QString name = path(u"a.shn"_s);
        QCOMPARE(tool({u"-"_s, name}, pcmFixture("noise")).status, 0);
        const QByteArray header = pcmFixture("noise").first(44);
        const Ran cut = tool({u"-x"_s, u"-"_s, u"-"_s}, contents(name).first(9999));
        QCOMPARE(cut.output, header); // it came before the samples' end was seen to be missing
        const QString script = u"trap '' PIPE; { '%1' -x '%2' -; echo $? >&2; } | head -c 44"_s;
        const Ran ran = run(u"sh"_s, {u"-c"_s, script.arg(QStringLiteral(QUAV_SHORTEN), name)});
        QCOMPARE(ran.output, header);
        QCOMPARE(ran.errors, "1\n");
    }
};

QTEST_GUILESS_MAIN(ShortenTest)
#include "ShortenTest.moc"
