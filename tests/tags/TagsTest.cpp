#include "platform/Version.h"
#include "support/AudioFixtures.h"
#include "support/Table.h"
#include "tags/TagError.h"
#include "tags/TagLibTagsHelper.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <sys/mount.h>

#include <algorithm>
#include <stdexcept>

using namespace quav;
using quav::test::audioMd5;
using quav::test::contents;
using quav::test::row;
using namespace Qt::StringLiterals;

namespace {

using Text = TagsObject::Text;

TagsObject readTags(const QString& path) {
    const TagLibTagsHelper helper;
    return path.endsWith(u".wav"_s)    ? helper.tagsForWAVEFile(path)
           : path.endsWith(u".aiff"_s) ? helper.tagsForAIFFFile(path)
                                       : helper.tagsForFlacFile(path);
}

TagResult writeTags(const QString& path, const TagsObject& tags) {
    TagLibTagsHelper helper;
    return path.endsWith(u".wav"_s)    ? helper.writeTagsForWAVEFile(path, tags)
           : path.endsWith(u".aiff"_s) ? helper.writeTagsForAIFFFile(path, tags)
                                       : helper.writeTagsForFLACFile(path, tags, false);
}

/// Runs a command line (its words, then paths and other arguments that may hold blanks).
QByteArray run(const char* command, const QStringList& rest) {
    const QStringList words = QString::fromLatin1(command).split(u' ');
    QProcess process;
    process.start(words.first(), words.mid(1) + rest);
    const bool ended = process.waitForFinished(quav::test::patience) &&
                       process.exitStatus() == QProcess::NormalExit;
    if (!ended || process.exitCode() != 0) {
        throw std::runtime_error(process.readAllStandardError().prepend(command).toStdString());
    }
    return process.readAllStandardOutput() + process.readAllStandardError();
}

bool putBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QStringList vorbisComments(const QString& path) {
    const auto text = run("metaflac --no-utf8-convert --export-tags-to=-", {path});
    return QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
}

QString pictureBlocks(const QString& path) {
    return QString::fromUtf8(run("metaflac --list --block-type=PICTURE", {path}));
}

/// What ffprobe says of the file's tags, names in capitals.
QMap<QString, QString> probed(const QString& path) {
    const auto text = run("ffprobe -v error -show_entries format_tags -of default=nw=1", {path});
    QMap<QString, QString> fields;
    for (const auto& line : QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts)) {
        fields.insert(line.section(u'=', 0, 0).mid(4).toUpper(), line.section(u'=', 1));
    }
    return fields;
}

QString ourEncoder() {
    return u"ENCODER=Quav "_s + shortVersion();
}

QByteArray littleEndian(qsizetype number) {
    QByteArray bytes(4, '\0');
    qToLittleEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

/// Sizes below 128 look like this in an ID3v2.4 tag.
QByteArray bigEndian(qsizetype number) {
    QByteArray bytes(4, '\0');
    bytes[3] = static_cast<char>(number);
    return bytes;
}

QByteArray id3Frame(const char* id, const QByteArray& content) {
    return id + bigEndian(content.size()) + QByteArray(2, '\0') + content;
}

TagsObject fullRecord() {
    TagsObject tags;
    int number = 0;
    for (const auto field : TagsObject::textFields()) {
        tags.*field = u"%1 Größe \"日本\" 🎵"_s.arg(++number);
    }
    tags.yearText = u"2001"_s;
    tags.monthText = u"05"_s;
    tags.dayText = u"07"_s;
    tags.trackText = u"3"_s;
    tags.trackTotalText = u"12"_s;
    tags.discText = u"1"_s;
    tags.discTotalText = u"2"_s;
    tags.albumArt = QImage(31, 17, QImage::Format_RGB32);
    tags.albumArt.fill(Qt::red);
    return tags;
}

/// A picture that does not get smaller as a PNG file.
QImage noise(int width, int height) {
    QImage picture(width, height, QImage::Format_RGB888);
    QRandomGenerator generator(1);
    for (int y = 0; y < height; ++y) {
        auto* line = picture.scanLine(y);
        std::generate(line, line + picture.bytesPerLine(),
                      [&generator] { return static_cast<uchar>(generator.generate()); });
    }
    return picture;
}

/// A small file system in memory that is gone with the object.
class SmallDisk {
public:
    SmallDisk(const QString& path, const char* options) : path_(QFile::encodeName(path)) {
        mounted_ = mount("tmpfs", path_.constData(), "tmpfs", 0, options) == 0;
    }
    ~SmallDisk() {
        if (mounted_) {
            umount(path_.constData());
        }
    }
    Q_DISABLE_COPY_MOVE(SmallDisk)

    bool isMounted() const { return mounted_; }

private:
    QByteArray path_;
    bool mounted_;
};

} // namespace

class TagsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir dir_;
    int count_ = 0;

    QString path(const char* extension) {
        return dir_.filePath(u"%1 Größe [live] \"x\" 'y' 100%.%2"_s.arg(
            QString::number(++count_), QString::fromLatin1(extension)));
    }

    /// A short file made by ffmpeg, without any tag but those in `metadata`.
    QString audioFile(const char* extension, const char* metadata = "-bitexact") {
        const auto file = path(extension);
        const auto command = QByteArray("ffmpeg -v error -f lavfi -i sine=duration=0.1 -bitexact ");
        run((command + metadata).constData(), {file});
        return file;
    }

    QString flacFile(std::initializer_list<const char*> metaflacOptions) {
        const auto file = audioFile("flac");
        run("metaflac --remove-all-tags", {file});
        for (const QByteArray option : metaflacOptions) {
            run(("metaflac " + option).constData(), {file});
        }
        return file;
    }

    /// A FLAC file with a blue picture besides.
    QString flacFileWithPicture(std::initializer_list<const char*> metaflacOptions) {
        const auto file = flacFile(metaflacOptions);
        const auto png = path("png");
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        picture.save(png);
        run("metaflac", {u"--import-picture-from="_s + png, file});
        return file;
    }

    /// A WAV file with an ID3v2.4 tag of these frames at its end.
    QString waveFile(const QByteArray& frames) {
        const auto file = audioFile("wav");
        const auto tag = QByteArray("ID3\4\0\0", 6) + bigEndian(frames.size()) + frames;
        auto bytes = contents(file) + "ID3 " + littleEndian(tag.size()) + tag;
        bytes.append(bytes.size() % 2, '\0');
        bytes.replace(4, 4, littleEndian(bytes.size() - 8));
        return putBytes(file, bytes) ? file : QString();
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(dir_.isValid());
        TagLibTagsHelper::initialise();
    }

    void flacHoldsEveryField() {
        const auto file = flacFile({});
        const auto audio = audioMd5(file);
        const auto record = fullRecord();
        QVERIFY(writeTags(file, record));
        const QStringList expected = {u"ALBUM="_s + *record.albumText,
                                      u"ALBUMARTIST="_s + *record.albumArtistText,
                                      u"ARTIST="_s + *record.artistText,
                                      u"COMMENT="_s + *record.commentText,
                                      u"COMPOSER="_s + *record.composerText,
                                      u"DATE=2001-05-07"_s,
                                      u"DESCRIPTION="_s + *record.commentText,
                                      u"DISCNUMBER=1"_s,
                                      u"DISCTOTAL=2"_s,
                                      ourEncoder(),
                                      u"GENRE="_s + *record.genreText,
                                      u"TITLE="_s + *record.titleText,
                                      u"TRACKNUMBER=3"_s,
                                      u"TRACKTOTAL=12"_s};
        QCOMPARE(vorbisComments(file), expected);
        for (const auto& line : {u"type: 3 (Cover (front))"_s, u"MIME type: image/png"_s,
                                 u"width: 31"_s, u"height: 17"_s, u"depth: 24"_s}) {
            QVERIFY2(pictureBlocks(file).contains(line), qPrintable(line));
        }
        QCOMPARE(run("flac -ts", {file}), QByteArray());
        QCOMPARE(audioMd5(file), audio);
        QVERIFY(readTags(file).isEqualToTagsObject(record));
    }

    void flacDate_data() {
        QTest::addColumn<QString>("written");
        row("2010/05/07", u"2010-05-07"_s);
        row("2010/0/07", u"2010"_s);
        row("2010/05/0", u"2010"_s);
        row("2010/05/", u"2010"_s);
        row("2010//", u"2010"_s);
        row("/05/07", u"1999-12-31"_s);
    }
    void flacDate() {
        const auto file = flacFile({"--set-tag=DATE=1999-12-31"});
        const auto date = QString::fromLatin1(QTest::currentDataTag()).split(u'/');
        TagsObject tags;
        tags.yearText = date[0];
        tags.monthText = date[1];
        tags.dayText = date[2];
        QVERIFY(writeTags(file, tags));
        const auto lines = vorbisComments(file).filter(u"DATE="_s);
        QCOMPARE(lines.size(), 1);
        QTEST(lines.first().mid(5), "written");
    }

    void flacKeepsWhatTheRecordDoesNotHold() {
        const auto file = flacFileWithPicture({"--set-tag=ARTIST=old", "--set-tag=Mood=calm"});
        TagsObject tags;
        tags.titleText = u"new"_s;
        tags.artistText = u""_s;
        QVERIFY(writeTags(file, tags));
        QCOMPARE(vorbisComments(file),
                 (QStringList{u"ARTIST=old"_s, ourEncoder(), u"MOOD=calm"_s, u"TITLE=new"_s}));
        QCOMPARE(pictureBlocks(file).count(u"type: 6 (PICTURE)"_s), 1);
        tags.albumArt = fullRecord().albumArt;
        QVERIFY(writeTags(file, tags));
        QCOMPARE(pictureBlocks(file).count(u"type: 6 (PICTURE)"_s), 2);
        QCOMPARE(readTags(file).albumArt.size(), QSize(8, 8));
    }

    void writeEmptyTagsReplacesEverything() {
        const auto file = flacFileWithPicture({"--set-tag=ARTIST=old", "--set-tag=DATE=1999"});
        const auto block = "\0\0\0\3\0\0\0\11image/png"_ba + QByteArray(23, '\0') + "\1x";
        run("metaflac",
            {u"--set-tag=METADATA_BLOCK_PICTURE="_s + QString::fromLatin1(block.toBase64()), file});
        TagsObject tags;
        tags.titleText = u"new"_s;
        QVERIFY(TagLibTagsHelper().writeTagsForFLACFile(file, tags, true));
        QCOMPARE(vorbisComments(file), (QStringList{ourEncoder(), u"TITLE=new"_s}));
        QCOMPARE(pictureBlocks(file), QString());
        QCOMPARE(run("flac -ts", {file}), QByteArray());
    }

    void aPictureThatNoFlacBlockHoldsIsLeftOutAndTold() {
        const auto file = flacFileWithPicture({});
        TagsObject tags;
        tags.titleText = u"new"_s;
        tags.albumArt = noise(2500, 2500);
        TagLibTagsHelper helper;
        QVERIFY(helper.writeTagsForFLACFile(file, tags, true));
        QCOMPARE(helper.problems().size(), 1);
        QCOMPARE(run("flac -ts", {file}), QByteArray());
        QCOMPARE(vorbisComments(file), (QStringList{ourEncoder(), u"TITLE=new"_s}));
        QCOMPARE(pictureBlocks(file), QString());
        tags.albumArt = noise(2000, 2000);
        QVERIFY(helper.writeTagsForFLACFile(file, tags, true) && helper.problems().isEmpty());
        QCOMPARE(run("flac -ts", {file}), QByteArray());
        QCOMPARE(readTags(file).albumArt.width(), 2000);
    }

    void flacCommentBlockHasItsLimit() {
        const auto file = flacFileWithPicture({"--set-tag=ARTIST=old"});
        const auto before = contents(file);
        TagsObject tags;
        tags.commentText = QString(0x800000, u'x'); // it is written twice
        for (const bool writeEmptyTags : {true, false}) {
            TagLibTagsHelper helper;
            const auto written = helper.writeTagsForFLACFile(file, tags, writeEmptyTags);
            QCOMPARE(written.error(), u"The tags are too large for a FLAC file."_s);
            QVERIFY(contents(file) == before);
        }
        tags.commentText->chop(100);
        QVERIFY(writeTags(file, tags));
        QCOMPARE(run("flac -ts", {file}), QByteArray());
    }

    void fullDisk_data() { notTaggable_data(); }
    void fullDisk() {
        QFETCH(QByteArray, extension);
        const auto folder = path("mount");
        QVERIFY(QDir().mkdir(folder));
        const SmallDisk disk(folder, "size=64k");
        if (!disk.isMounted()) {
            QSKIP("a small file system cannot be mounted here");
        }
        const auto file = folder + u"/file."_s + QString::fromLatin1(extension);
        QVERIFY(QFile::copy(audioFile(extension.constData()), file));
        TagsObject tags;
        tags.titleText = u"fits"_s;
        QVERIFY(writeTags(file, tags));
        tags.commentText = QString(80'000, u'x');
        QCOMPARE(writeTags(file, tags).error(), u"No space left on device."_s);
    }

    void customTagsWithForbiddenNamesAreLoggedAndSkipped() {
        const auto file = flacFile({"--set-tag=MOOD=calm", "--set-tag=MOOD=mild"});
        TagsObject tags;
        tags.customTagsDictionary = {{u"A=B"_s, u"x"_s},       {u"Größe"_s, u"x"_s},
                                     {u"mood"_s, u"wild"_s},   {u"Empty"_s, u""_s},
                                     {u"Two Words"_s, u"ü"_s}, {u""_s, u"x"_s}};
        QTest::ignoreMessage(QtWarningMsg, "Error setting custom tag: A=B");
        QTest::ignoreMessage(QtWarningMsg, "Error setting custom tag: Größe");
        QTest::ignoreMessage(QtInfoMsg, "setting custom tag: mood wild");
        QVERIFY(writeTags(file, tags));
        QCOMPARE(vorbisComments(file),
                 (QStringList{ourEncoder(), u"MOOD=wild"_s, u"TWO WORDS=ü"_s}));
    }

    void flacReaderJoinsSeveralValues() {
        const auto tags = readTags(flacFile(
            {"--set-tag=ARTIST=A", "--set-tag=ARTIST=B", "--set-tag=ARTIST=A",
             "--set-tag=COMMENT=c", "--set-tag=mood=calm", "--set-tag=MOOD=mild",
             "--set-tag=TRACKNUMBER=1", "--set-tag=TRACKNUMBER=2", "--set-tag=ENCODER=e"}));
        QCOMPARE(tags.artistText, Text(u"A; B"_s));
        QCOMPARE(tags.trackText, Text(u"1"_s));
        QCOMPARE(tags.commentText, Text(u"c"_s));
        QCOMPARE(tags.titleText, Text(u""_s));
        QCOMPARE(tags.customTagsDictionary, (QMap<QString, QString>{{u"MOOD"_s, u"calm; mild"_s}}));
    }

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
            readTags(waveFile(id3Frame("TYER", "\0002010"_ba) + id3Frame("TDAT", "\0000705"_ba)));
        QCOMPARE(tags.yearText, Text(u"2010"_s));
        QCOMPARE(tags.dayText, Text(u"07"_s));
        QCOMPARE(tags.monthText, Text(u"05"_s));
    }

    void riffCommentGoesBesideOtherProgramsData() {
        const auto soundCheck = id3Frame("COMM", "\3engiTunNORM\0 00000123"_ba);
        const auto file = waveFile(soundCheck);
        TagsObject tags;
        tags.commentText = u"Größe"_s;
        QVERIFY(writeTags(file, tags) && writeTags(file, tags));
        QCOMPARE(readTags(file).commentText, tags.commentText);
        QVERIFY(contents(file).contains(soundCheck));
        QCOMPARE(contents(file).count("COMM"), 2);
    }

    void riffNumberAndTotal_data() {
        QTest::addColumn<QByteArray>("old");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("total");
        QTest::addColumn<QString>("written");
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

    void notTaggable_data() {
        roundTripThroughRiff_data();
        row("FLAC", "flac"_ba);
    }
    void notTaggable() {
        QFETCH(QByteArray, extension);
        const auto file = path(extension.constData());
        TagsObject blank;
        TagLibTagsHelper::setBlankTags(blank);
        QCOMPARE(writeTags(file, fullRecord()).error(),
                 u"The file cannot be opened for writing: No such file or directory."_s);
        QVERIFY(!QFile::exists(file));
        QVERIFY(readTags(file).isEqualToTagsObject(blank));
        const auto flacWithoutAudio = "fLaC\200\0\0\42"_ba + QByteArray(34, '\0');
        for (const auto& content : {""_ba, "Only words.\n"_ba, flacWithoutAudio}) {
            QVERIFY(putBytes(file, content));
            QVERIFY_THROWS_EXCEPTION(TagError, writeTags(file, fullRecord()));
            QCOMPARE(contents(file), content);
            QVERIFY(readTags(file).isEqualToTagsObject(blank));
        }
        QVERIFY(QFile::remove(file) && QDir().mkdir(file));
        QVERIFY_THROWS_EXCEPTION(TagError, writeTags(file, fullRecord()));
    }
};

QTEST_GUILESS_MAIN(TagsTest)
#include "TagsTest.moc"
