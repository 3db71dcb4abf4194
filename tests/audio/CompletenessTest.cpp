#include "audio/file/Completeness.h"

#include "audio/file/AudioFile.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/PcmReader.h"
#include "support/AudioFixtures.h"
#include "support/Table.h"
#include "tools/PcmFixtures.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace quav;
using namespace Qt::StringLiterals;
using audio::ReadBy;
using test::appendNumber;
using test::contents;
using test::row;
using test::wavFile;

namespace {

constexpr std::uint64_t lap = std::uint64_t{1} << 32;

QByteArray number(uint32_t value) {
    QByteArray bytes;
    appendNumber(bytes, value, 4);
    return bytes;
}

QByteArray bigEndian(uint32_t value) {
    QByteArray bytes = number(value);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

/// The same file with another size in front of its samples, which are the last chunk.
QByteArray claiming(QByteArray wav, uint32_t size) {
    const auto at = wav.indexOf("data") + 4;
    return wav.replace(at, 4, number(size));
}

QByteArray id3v1() {
    return QByteArray("TAGtitle").leftJustified(128, '\0');
}

QByteArray apeTag() {
    const QByteArray size = number(5032);
    const QByteArray version = number(2000);
    return "APETAGEX" + version + size + number(9) + number(0xA0000000) + QByteArray(8, '\0') +
           QByteArray(5000, 'x') + "APETAGEX" + version + size + number(9) + number(0x80000000) +
           QByteArray(8, '\0');
}

QByteArray id3v2() {
    return QByteArray("ID3\4\0\0\0\0\x07\x68", 10) + QByteArray(1000, 'y');
}

QByteArray withTotal(QByteArray flac, int64_t total) {
    // The low 32 of 36 bits; the files here are short.
    const auto at = flac.indexOf("fLaC") + 8 + 14;
    return flac.replace(at, 4, bigEndian(uint32_t(total)));
}

} // namespace

class CompletenessTest : public QObject {
    Q_OBJECT

    QTemporaryDir folder_;
    QString path(const QString& name) const { return folder_.filePath(name); }

    QString write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? path(name)
                                                                                        : QString();
    }
    QByteArray converted(const QString& program, QStringList arguments, const QString& name) const {
        QFile::remove(path(name));
        const test::Ran ran = test::run(program, arguments << path(name));
        return ran.status == 0 ? contents(path(name)) : QByteArray();
    }
    static QByteArray leftOut(const QString& file, ReadBy reader) {
        const auto what = audio::soundLeftOut(file.toStdString(), reader);
        return QByteArray::fromStdString(what.value_or(""));
    }

    void wavRows() const {
        const auto rows = [](const char* name, const QByteArray& file, const QByteArray& says) {
            row(name, file, says);
        };
        const QByteArray wav = wavFile(test::waves(9000, 16, 2), 2, 16, 44100);
        const QByteArray odd = wavFile(test::waves(3001, 8, 1), 1, 8, 11025);
        const QByteArray list = test::listChunk("INAM", QByteArray("trailer\0", 8));
        const QByteArray fine;
        rows("WAV", wav, fine);
        rows("chunk behind", wav + list, fine);
        rows("chunk behind odd samples", odd + list, fine);
        rows("no pad byte", odd.chopped(1), fine);
        rows("chunk in place of the pad byte", odd.chopped(1) + list, fine);
        rows("unknown chunk", wav + QByteArray("abcd\3\0\0\0xyz\0", 12) + list, fine);
        rows("known chunk cut short", wav + list.chopped(9), fine);
        rows("RIFF size 0", QByteArray(wav).replace(4, 4, number(0)), fine);
        rows("RIFF size unknown", QByteArray(wav).replace(4, 4, number(0xFFFFFFFF)), fine);
        rows("zeros behind", wav + QByteArray(70000, '\0'), fine);
        rows("zeros and a chunk", wav + QByteArray(500, '\0') + list, fine);
        rows("a few bytes behind", wav + QByteArray(77, 'x'), fine);
        rows("tags behind", wav + id3v2() + apeTag() + id3v1(), fine);
        rows("tag in front", id3v2() + wav, fine);
        rows("size unknown", claiming(wav, 0xFFFFFFFF), fine);
        rows("size unknown in a pipe of sox", claiming(wav, 0x7FFFFFFF), fine);
        rows("empty second chunk", wav + QByteArray("data\0\0\0\0", 8), fine);
        rows("size too small", claiming(wav, 16000),
             "20.0 kB of sound stand behind its data chunk");
        rows("size too small, odd", claiming(wav, 16001),
             "20.0 kB of sound stand behind its data chunk");
        rows("size too small, with a chunk", claiming(wav, 16000) + list,
             "20.0 kB of sound stand behind its data chunk");
        rows("size 0", claiming(wav, 0), "36.0 kB of sound stand behind its data chunk");
        rows("much silence", wav + QByteArray(300000, '\0'),
             "300 kB of sound stand behind its data chunk");
        rows("second chunk", wav + "data" + number(2000) + QByteArray(2000, 's'),
             "a second data chunk with 2.00 kB of sound stands behind the first");
        rows("second chunk behind another", wav + list + "data" + number(99) + QByteArray(60, 's'),
             "a second data chunk with 60 bytes of sound stands behind the first");
        rows("joined", wav + odd, "another WAV file stands behind its sound");
        rows("joined behind a chunk", wav + list + wav, "another WAV file stands behind its sound");
    }

    void aiffRows() {
        const QString wav = write(u"s.wav"_s, wavFile(test::waves(9000, 16, 2), 2, 16, 44100));
        const QByteArray aiff = converted(u"sox"_s, {wav}, u"s.aiff"_s);
        const auto frames = aiff.indexOf("COMM") + 10;
        const auto ssnd = aiff.indexOf("SSND") + 4;
        const QByteArray fewer = QByteArray(aiff).replace(frames, 4, bigEndian(4000));
        row("AIFF", aiff, QByteArray());
        row("AIFF with chunks", aiff + QByteArray("ANNO\0\0\0\3abc\0", 12), QByteArray());
        row("AIFF with a tag", aiff + id3v2(), QByteArray());
        row("AIFF with fewer frames", fewer,
            "its SSND chunk holds 20.0 kB more than its COMM chunk tells"_ba);
        row("AIFF with a small chunk", QByteArray(fewer).replace(ssnd, 4, bigEndian(16008)),
            "20.0 kB of sound stand behind its SSND chunk"_ba);
        row("second SSND",
            aiff + "SSND" + bigEndian(1008) + QByteArray(8, '\0') + QByteArray(1000, 'x'),
            "a second SSND chunk with 1.01 kB of sound stands behind the first"_ba);
        row("joined AIFF", aiff + aiff, "another AIFF file stands behind its sound"_ba);
    }

    void flacRows() {
        // Long enough that its streams are not searched from end to end.
        const QString wav = write(u"f.wav"_s, wavFile(test::waves(500000, 16, 2), 2, 16, 44100));
        const QByteArray flac = converted(u"flac"_s, {u"-s"_s, wav, u"-o"_s}, u"f.flac"_s);
        const QByteArray small = converted(
            u"flac"_s, {u"-s"_s, u"-b576"_s, u"--no-seektable"_s, wav, u"-o"_s}, u"g.flac"_s);
        const QByteArray other =
            converted(u"flac"_s, {u"-s"_s, u"--until=100000"_s, wav, u"-o"_s}, u"h.flac"_s);
        const QByteArray otherStream = "another FLAC stream stands behind its end";
        row("FLAC", flac, QByteArray());
        row("FLAC in short frames", small, QByteArray());
        row("FLAC with tags", id3v2() + flac + apeTag() + id3v1(), QByteArray());
        row("FLAC of unknown length", withTotal(flac, 0), QByteArray());
        row("FLAC with too large a total", withTotal(flac, 600000), QByteArray());
        row("FLAC cut short", flac.chopped(20000), QByteArray());
        row("FLAC with too small a total", withTotal(flac, 400000),
            "100000 samples stand behind the number of samples that its STREAMINFO tells"_ba);
        row("joined FLAC, shorter", flac + other, otherStream);
        row("joined FLAC, longer", other + flac, otherStream);
        row("joined FLAC of the same length", flac + small, otherStream);
        row("joined FLAC with tags", flac + id3v1() + id3v2() + flac + id3v1(), otherStream);
    }

private Q_SLOTS:
    void tellsWhatIsLeftOut_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("says");
        wavRows();
        aiffRows();
        flacRows();
    }
    void tellsWhatIsLeftOut() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, says);
        QVERIFY(!file.isEmpty());
        const QString name = write(u"file"_s, file);
        QCOMPARE(leftOut(name, ReadBy::Others), says);
        QCOMPARE(leftOut(name, ReadBy::Ourselves), says);
    }

    void readsAllWhereTheLengthIsBeyondDoubt_data() {
        QTest::addColumn<uint32_t>("told");
        QTest::addColumn<quint64>("size");
        QTest::addColumn<QByteArray>("behind");
        QTest::addColumn<bool>("isRead");
        const QByteArray list = test::listChunk("INAM", QByteArray("trailer\0", 8));
        row("wrapped", uint32_t(4000), quint64(lap + 4000), QByteArray(), true);
        row("wrapped twice", uint32_t(4000), quint64(2 * lap + 4000), QByteArray(), true);
        row("wrapped, with a chunk", uint32_t(4000), quint64(lap + 4000), list, true);
        row("no whole blocks", uint32_t(4001), quint64(lap + 4001), QByteArray(), false);
        row("unknown", uint32_t(0xFFFFFFFF), quint64(lap + 4000), QByteArray(), true);
        row("another size", uint32_t(4000), quint64(lap + 4004), QByteArray(), false);
    }
    void readsAllWhereTheLengthIsBeyondDoubt() {
        QFETCH(uint32_t, told);
        QFETCH(quint64, size);
        QFETCH(QByteArray, behind);
        QFETCH(bool, isRead);
        const QByteArray start = claiming(wavFile(test::waves(9000, 16, 2), 2, 16, 44100), told);
        const std::string name = write(u"large.wav"_s, start).toStdString();
        QFile file(QString::fromStdString(name));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(qint64(44 + size - 4)) &&
                file.write("last" + behind) > 0);
        file.close();

        QVERIFY(
            leftOut(file.fileName(), ReadBy::Others).contains(" of sound stand behind its data"));
        QCOMPARE(leftOut(file.fileName(), ReadBy::Ourselves).isEmpty(), isRead);
        const quint64 bytes = isRead ? size : told;
        pcm::InputFile input = pcm::InputFile::open(name);
        QCOMPARE(*pcm::PcmReader(input).blocks(), bytes / 4);
        const audio::AudioFile whole = audio::AudioFile::open(name);
        QCOMPARE(whole.wave().dataSize, bytes);
        QCOMPARE(whole.behindData(), isRead ? quint64(behind.size()) : whole.behindData());
        file.remove();
    }
};

QTEST_GUILESS_MAIN(CompletenessTest)
#include "CompletenessTest.moc"
