#include "support/Table.h"
#include "tags/Id3Bytes.h"
#include "tags/TagsFolder.h"

#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Text = TagsObject::Text;

/// What ffprobe says of the file's tags, names in capitals.
QMap<QString, QString> probed(const QString& path) {
    const auto text = run("ffprobe -v error -show_entries format_tags -of default=nw=1", {path});
    QMap<QString, QString> fields;
    for (const auto& line : QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts)) {
        fields.insert(line.section(u'=', 0, 0).mid(4).toUpper(), line.section(u'=', 1));
    }
    return fields;
}

} // namespace

/// The tags of WAV and AIFF files.
class RiffTagsTest : public QObject, TagsFolder {
    Q_OBJECT

    /// A WAV file with an ID3v2.4 tag of these frames at its end.
    QString waveFile(const QByteArray& frames) {
        const auto file = audioFile("wav");
        const QByteArray id3 = tag(frames);
        auto bytes = contents(file) + "ID3 " + little(id3.size()) + id3;
        bytes.append(bytes.size() % 2, '\0');
        bytes.replace(4, 4, little(bytes.size() - 8));
        return putBytes(file, bytes) ? file : QString();
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(isValid()); }

    void roundTripThroughRiff_data() {
        QTest::addColumn<QByteArray>("extension");
        row("AIFF", "aiff"_ba);
        row("WAV", "wav"_ba);
    }
    void roundTripThroughRiff() {
        QFETCH(QByteArray, extension);
        const auto riff = audioFile(extension.constData());
        const auto before = contents(riff);
        const auto audio = audioMd5(riff);
        auto record = fullRecord();
        const auto first = flacFile({});

        QVERIFY(writeTags(riff, readTags(first)));
        QCOMPARE(contents(riff), before); // nothing to write, nothing written

        QVERIFY(writeTags(first, record) && writeTags(riff, readTags(first)));
        QCOMPARE(audioMd5(riff), audio);
        const auto fields = probed(riff);
        QCOMPARE(fields[u"TITLE"_s], *record.titleText);
        QCOMPARE(fields[u"ALBUM_ARTIST"_s], *record.albumArtistText);
        QCOMPARE(fields[u"COMPOSER"_s], *record.composerText);
        QCOMPARE(fields[u"TRACK"_s], u"3/12"_s);
        QCOMPARE(fields[u"DISC"_s], u"1/2"_s);
        QCOMPARE(fields[u"DATE"_s], u"2001"_s);
        QCOMPARE(fields[u"TDAT"_s], u"072001"_s);

        const auto second = flacFile({});
        QVERIFY(writeTags(second, readTags(riff)));
        // The day and year of TDAT are no day and month, so the year alone comes back.
        record.monthText = record.dayText = u""_s;
        QVERIFY(readTags(second).isEqualToTagsObject(record));
    }

    void waveInfoChunkStays() {
        const auto file = audioFile("wav", "-metadata title=Info");
        const auto before = contents(file);
        QVERIFY(before.contains("LIST") && before.contains("Info"));
        QVERIFY(writeTags(file, fullRecord()));
        // The tag follows everything that was there; only the size in the header changes.
        QCOMPARE(contents(file).mid(8, before.size() - 8), before.mid(8));
        QCOMPARE(contents(file).count("LIST"), 1);
    }

    void riffYearReplacesForeignDate() {
        const auto file =
            audioFile("aiff", "-write_id3v2 1 -id3v2_version 3 -metadata date=1999-12-31");
        TagsObject tags;
        tags.yearText = u"2001"_s;
        QVERIFY(writeTags(file, tags));
        QVERIFY(!contents(file).contains("TDRC"));
        QCOMPARE(probed(file).value(u"DATE"_s), u"2001"_s);
        QCOMPARE(readTags(file).yearText, tags.yearText);
    }

    void riffReadsDayAndMonthFromFourCharacters() {
        const auto tags =
            readTags(waveFile(frame("TYER", "\0002010"_ba) + frame("TDAT", "\0000705"_ba)));
        QCOMPARE(tags.yearText, Text(u"2010"_s));
        QCOMPARE(tags.dayText, Text(u"07"_s));
        QCOMPARE(tags.monthText, Text(u"05"_s));
    }

    void riffCommentGoesBesideOtherProgramsData() {
        const auto soundCheck = frame("COMM", "\3engiTunNORM\0 00000123"_ba);
        const auto file = waveFile(soundCheck);
        TagsObject tags;
        tags.commentText = u"Größe"_s;
        QVERIFY(writeTags(file, tags) && writeTags(file, tags));
        QCOMPARE(readTags(file).commentText, tags.commentText);
        QVERIFY(contents(file).contains(soundCheck));
        QCOMPARE(contents(file).count("COMM"), 2);
    }

    void riffNumberAndTotal_data() {
        columns<QByteArray, QString, QString, QString>("old", "number", "total", "written");
        row("both", "3/10"_ba, u"4"_s, u"12"_s, u"4/12"_s);
        row("number", "3/10"_ba, u"4"_s, u""_s, u"4"_s);
        row("total", "3/10"_ba, u""_s, u"12"_s, u"3/12"_s);
        row("total of no number", ""_ba, u""_s, u"12"_s, u"/12"_s);
        row("neither", "3/10"_ba, u""_s, u""_s, u"3/10"_s);
    }
    void riffNumberAndTotal() {
        QFETCH(QByteArray, old);
        QFETCH(QString, number);
        QFETCH(QString, total);
        const auto file = audioFile("aiff", ("-write_id3v2 1 -metadata track=" + old).constData());
        TagsObject tags;
        tags.trackText = number;
        tags.trackTotalText = total;
        QVERIFY(writeTags(file, tags));
        QTEST(probed(file).value(u"TRACK"_s), "written");
    }
};

QTEST_GUILESS_MAIN(RiffTagsTest)
#include "RiffTagsTest.moc"
