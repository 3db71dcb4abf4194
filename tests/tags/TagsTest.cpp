#include "platform/Version.h"
#include "support/Table.h"
#include "tags/TagError.h"
#include "tags/TagsFolder.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/mount.h>

#include <algorithm>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Text = TagsObject::Text;

QStringList vorbisComments(const QString& path) {
    const auto text = run("metaflac --no-utf8-convert --export-tags-to=-", {path});
    return QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts);
}

QString pictureBlocks(const QString& path) {
    return QString::fromUtf8(run("metaflac --list --block-type=PICTURE", {path}));
}

QString ourEncoder() {
    return u"ENCODER=Quav "_s + shortVersion();
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

class TagsTest : public QObject, TagsFolder {
    Q_OBJECT

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

private Q_SLOTS:
    void initTestCase() { QVERIFY(isValid()); }

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

    void notTaggable_data() {
        QTest::addColumn<QByteArray>("extension");
        row("AIFF", "aiff"_ba);
        row("WAV", "wav"_ba);
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
