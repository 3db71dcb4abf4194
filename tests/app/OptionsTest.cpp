#include "app/Presets.h"
#include "app/TabOptions.h"
#include "checksums/ChecksumOptions.h"
#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"
#include "platform/Settings.h"
#include "support/Table.h"

#include <QJsonDocument>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Control = OptionInfo::Control;

const std::vector<std::pair<QString, const OptionTable*>>& tables() {
    static const std::vector<std::pair<QString, const OptionTable*>> all{
        {u"decode"_s, &decodeOptions()},
        {u"encode"_s, &encodeOptions()},
        {u"checksum"_s, &checksumOptions()}};
    return all;
}

/// A value that an option has not at first, as the command line would have it.
QString otherText(const OptionInfo& option) {
    const QVariant first = option.initialValue();
    switch (option.control) {
    case Control::Switch:
        return first.toBool() ? u"false"_s : u"true"_s;
    case Control::Choice:
        return QString::fromLatin1(option.choices.back().word);
    case Control::Slider:
    case Control::Number:
        return QString::number(first == option.greatest() ? option.least() : option.greatest());
    case Control::Text:
        return u"a text"_s;
    }
    return {};
}

struct Place {
    QTemporaryDir folder;
    Settings settings{folder.filePath(u"quav.ini"_s)};
};

} // namespace

Q_DECLARE_METATYPE(const quav::OptionTable*)
Q_DECLARE_METATYPE(const quav::OptionInfo*)

class OptionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOptionKeepsItsPromises_data() {
        columns<const OptionTable*, const OptionInfo*>("table", "option");
        for (const auto& [tab, table] : tables()) {
            for (const OptionInfo& option : table->rows()) {
                row(qPrintable(tab + u' ' + QLatin1StringView(option.key)), table, &option);
            }
        }
    }
    void everyOptionKeepsItsPromises() {
        QFETCH(const OptionTable*, table);
        QFETCH(const OptionInfo*, option);
        QCOMPARE(table->row(QString::fromLatin1(option->key)), option);
        QVERIFY2(option->tip && (option->label || option->flag), "nobody can reach it");
        QVERIFY2(!option->label || option->group, "it stands in no box");
        QVERIFY2(option->setting.isEmpty() || Settings::definition(QString(option->setting)),
                 "there is no such setting");

        Place place;
        TabOptions options(*table, place.settings);
        const QSignalSpy changed(&options, &TabOptions::changed);
        const QVariant before = options.values().value(*option);
        const auto set = options.setForThisRun(*option, otherText(*option));
        QVERIFY2(set, qPrintable(set ? QString() : set.error()));
        QCOMPARE(options.values().text(*option), otherText(*option));
        QCOMPARE(TabOptions(*table, place.settings).values().value(*option), before);

        OptionValues read(*table);
        QVERIFY(read.setFromJson(options.values().json()));
        QCOMPARE(read, options.values());

        TabOptions user(*table, place.settings);
        user.choose(*option, read.value(*option));
        const QVariant stored = TabOptions(*table, place.settings).values().value(*option);
        QCOMPARE(stored == read.value(*option),
                 !option->setting.isEmpty() || before == read.value(*option));
        QCOMPARE(changed.count(), 1);
    }

    void aTextThatDoesNotFitChangesNothing_data() {
        columns<QByteArray, QString>("json", "error");
        row("no such option", QByteArray(R"({"flacSlider": 3, "colour": "red"})"), u"colour"_s);
        row("too much", QByteArray(R"({"flacLaxButton": true, "flacSlider": 9})"),
            u"“flacSlider” takes a whole number from 0 to 8, not “9”"_s);
        row("no word of it", QByteArray(R"({"outputFormatMatrix": "doc"})"), u"one of flac"_s);
        row("no boolean", QByteArray(R"({"flacVerifyButton": "perhaps"})"), u"true or false"_s);
    }
    void aTextThatDoesNotFitChangesNothing() {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        OptionValues values(encodeOptions());
        const auto set = values.setFromJson(QJsonDocument::fromJson(json).object());
        QVERIFY(!set);
        QVERIFY2(set.error().contains(error), qPrintable(set.error()));
        QCOMPARE(values, OptionValues(encodeOptions()));
    }

    void aSettingThatChangesIsFollowedUnlessThisRunHasItsOwn() {
        Place place;
        TabOptions options(encodeOptions(), place.settings);
        place.settings.set(keys::encodeFlacLevel, 1);
        QCOMPARE(options[encodeOptions().flacLevel], 1);
        options.setForThisRun(encodeOptions().flacLevel, 2);
        place.settings.set(keys::encodeFlacLevel, 3);
        QCOMPARE(options[encodeOptions().flacLevel], 2);
        options.set(encodeOptions().flacLevel, 4);
        QCOMPARE(place.settings.integer(keys::encodeFlacLevel), 4);
    }

    void presetsAreKeptRenamedAndCarriedOver() {
        Place place;
        const std::vector<StandardPreset> standard{{"Settings", {}},
                                                   {"Fast", {{u"flacSlider"_s, 3}}}};
        Presets presets(encodeOptions(), u"encode"_s, place.folder.path(), place.settings,
                        standard);
        place.settings.set(keys::encodeFlacLevel, 7);
        QCOMPARE((*presets.values(u"Settings"_s))[encodeOptions().flacLevel], 7);
        QCOMPARE((*presets.values(u"Fast"_s))[encodeOptions().flacLevel], 3);

        OptionValues values(encodeOptions());
        values.set(encodeOptions().flacLax, true);
        const QString name = u"../Größe “1/2”"_s;
        QVERIFY(presets.save(name, values));
        QCOMPARE(presets.names(), (QStringList{u"Settings"_s, u"Fast"_s, name}));
        QVERIFY(!presets.save(u"Fast"_s, values));
        QVERIFY(!presets.save(u" "_s, values));
        QVERIFY(presets.rename(name, u"other"_s));
        QVERIFY(!presets.values(name));
        QCOMPARE(*presets.values(u"other"_s), values);

        const QByteArray carried = *presets.exported(u"other"_s);
        QVERIFY(presets.remove(u"other"_s));
        QVERIFY(!presets.remove(u"Fast"_s));
        QCOMPARE(presets.import(carried).value_or(QString()), u"other"_s);
        QCOMPARE(*presets.values(u"other"_s), values);
        QVERIFY(!presets.import("no preset"));
        Presets others(decodeOptions(), u"decode"_s, place.folder.path(), place.settings, {});
        QVERIFY(others.import(carried).error().contains(u"another tab"_s));
    }
};

QTEST_MAIN(OptionsTest)
#include "OptionsTest.moc"
