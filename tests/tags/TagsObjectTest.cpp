#include "tags/TagsObject.h"

#include "support/Table.h"
#include "tags/TagDates.h"

#include <QTest>

#include <functional>

using namespace quav;
using namespace Qt::StringLiterals;

namespace {

using Change = std::function<void(TagsObject&)>;

TagsObject record() {
    TagsObject tags;
    tags.titleText = u"Größe"_s;
    tags.albumArt = QImage(3, 2, QImage::Format_RGB32);
    tags.albumArt.fill(Qt::red);
    return tags;
}

} // namespace

class TagsObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equality_data() {
        quav::test::columns<Change, bool>("change", "equal");
        const auto row = [](const char* name, bool equal, Change change) {
            QTest::newRow(name) << change << equal;
        };
        row("nothing", true, [](auto&) {});
        row("custom tags", true, [](auto& t) { t.customTagsDictionary[u"A"_s] = u"b"_s; });
        row("encoder", true, [](auto& t) { t.encoderSettings = u"x"_s; });
        row("pixel format", true, [](auto& t) { t.albumArt.convertTo(QImage::Format_ARGB32); });
        row("composer", false, [](auto& t) { t.composerText = u"x"_s; });
        row("no picture", false, [](auto& t) { t.albumArt = QImage(); });
        row("other pixel", false, [](auto& t) { t.albumArt.setPixel(1, 1, 0); });
    }
    void equality() {
        QFETCH(Change, change);
        auto changed = record();
        change(changed);
        QTEST(record().isEqualToTagsObject(changed), "equal");
    }
    void absentTextIsNotEmptyText() {
        QVERIFY(TagsObject::stringTagsEqual({}, {}));
        QVERIFY(TagsObject::stringTagsEqual(u""_s, u""_s));
        QVERIFY(!TagsObject::stringTagsEqual({}, u""_s));
    }

    void dates_data() {
        quav::test::columns<QString, QString>("id3", "flac");
        const auto row = [](const char* text, const char* id3, const char* flac) {
            QTest::newRow(text) << QString::fromLatin1(id3) << QString::fromLatin1(flac);
        };
        row("2004", "2004//", "2004//");
        row("2004-03-09", "2004/03/09", "2004/03/09");
        row("2004/03/09", "2004/03/09", "2004/03/09");
        row("2004-3-9", "none", "2004/03/09");
        row("2004-25-12", "2004/12/25", "2004/12/25");
        row("2004/25/12", "2004/12/25", "2004/12/25");
        row("12/25/2004", "2004/12/25", "2004/12/25");
        row("03-09-2004", "2004/03/09", "2004/03/09");
        row("25-12-2004", "2004/12/25", "2004/12/25");
        row("25/12/2004", "2004/12/25", "2004/12/25");
        for (const char* text : {"2004-02-30", "2010-0-0", "2004-03-09T10:00", "2004abc", ""}) {
            row(text, "none", "none");
        }
    }
    void dates() {
        const auto print = [](DateSource source) {
            const auto date = parseTagDate(QString::fromLatin1(QTest::currentDataTag()), source);
            return date ? QStringList{date->year, date->month, date->day}.join(u'/') : u"none"_s;
        };
        QTEST(print(DateSource::Id3v2), "id3");
        QTEST(print(DateSource::VorbisComment), "flac");
    }
};

QTEST_GUILESS_MAIN(TagsObjectTest)
#include "TagsObjectTest.moc"
