#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QCryptographicHash>
#include <QTest>
#include <QtEndian>

using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

const auto shntool = QStringLiteral(QUAV_SHNTOOL);

quint32 sizeAt(const QByteArray& file, qsizetype at) {
    return qFromBigEndian<quint32>(file.constData() + at);
}

} // namespace

/// AIFF files as our shntool makes and reads them, held against what others read: a chunk with an
/// odd number of bytes is followed by one that its size does not count.
class AiffOutputTest : public QObject, ToolFolder {
    Q_OBJECT

private Q_SLOTS:
    void theChunkOfTheSoundIsPadded_data() {
        columns<int, int, int>("channels", "bits", "blocks");
        row("8 bits, odd", 1, 8, 3001);
        row("8 bits, even", 1, 8, 3002);
        row("8 bits, one", 1, 8, 1);
        row("8 bits stereo", 2, 8, 3001);
        row("24 bits, odd", 1, 24, 3001);
        row("24 bits, even", 1, 24, 3002);
        row("24 bits stereo", 2, 24, 3001);
        row("16 bits", 1, 16, 3001);
    }
    void theChunkOfTheSoundIsPadded() {
        QFETCH(int, channels);
        QFETCH(int, bits);
        QFETCH(int, blocks);
        const std::vector<int> waveform = waves(blocks, bits, channels);
        const QByteArray wav = wavFile(waveform, channels, bits, 44100);
        const qsizetype count = qsizetype(waveform.size()) * (bits / 8);
        const QByteArray samples = wav.sliced(44, count);
        write(u"a.wav"_s, wav);
        QCOMPARE(pipe(shntool, {u"conv"_s, u"-q"_s, u"-O"_s, u"always"_s, u"-d"_s, path({}),
                                u"-o"_s, u"aiff"_s, path(u"a.wav"_s)})
                     .status,
                 0);
        const QString aiff = path(u"a.aiff"_s);
        const QByteArray file = contents(aiff);
        constexpr qsizetype ssnd = 38; // behind FORM and COMM
        constexpr qsizetype sound = ssnd + 16;
        QCOMPARE(file.size(), sound + count + count % 2);
        QCOMPARE(sizeAt(file, 4), file.size() - 8);
        QCOMPARE(file.sliced(ssnd, 4), "SSND");
        QCOMPARE(sizeAt(file, ssnd + 4), 8 + count);
        QVERIFY(count % 2 == 0 || file.back() == '\0');

        // Three others and our own reader have the same samples, also between odd chunks.
        const QByteArray name("NAME\0\0\0\5tests\0", 14);
        QByteArray more = file.first(ssnd) + name + file.sliced(ssnd) + name;
        qToBigEndian(quint32(more.size() - 8), more.data() + 4);
        write(u"more.aiff"_s, more);
        const QString digest =
            QString::fromLatin1(QCryptographicHash::hash(samples, QCryptographicHash::Md5).toHex());
        const QString sign = bits == 8 ? u"unsigned-integer"_s : u"signed-integer"_s;
        for (const QString& one : {aiff, path(u"more.aiff"_s)}) {
            QCOMPARE(judged(one, bits), samples);
            QCOMPARE(
                pipe(u"sox"_s, {one, u"-t"_s, u"raw"_s, u"-e"_s, sign, u"-L"_s, u"-"_s}).output,
                samples);
            const QString flac = path(u"a.flac"_s);
            QCOMPARE(pipe(u"flac"_s, {u"-s"_s, u"-f"_s, one, u"-o"_s, flac}).status, 0);
            QCOMPARE(judged(flac, bits), samples);
            const Ran hashed = pipe(shntool, {u"hash"_s, u"-q"_s, one});
            QCOMPARE(QString::fromUtf8(hashed.output), digest + u"  [shntool]  "_s + one + u'\n');
            QCOMPARE(hashed.errors, "");
        }
    }
};

QTEST_GUILESS_MAIN(AiffOutputTest)
#include "AiffOutputTest.moc"
