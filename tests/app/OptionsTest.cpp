#include "app/PresetChooser.h"
#include "cli/OptionFlags.h"
#include "support/OptionCases.h"
#include "support/ScriptedPrompts.h"
#include "support/Table.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Control = OptionInfo::Control;

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

/// What the command line reads for an option that is given so; empty when it does not take it.
QString readByFlag(const OptionTable& table, const OptionInfo& option, const QString& text) {
    CLI::App app;
    OptionFlags flags;
    const OptionFlags::Flags added = flags.addTo(app, table);
    for (const auto& [one, flag] : added) {
        flag->required(false);
    }
    const std::string help = app.help();
    const bool isSwitch = option.control == Control::Switch;
    const QString name =
        (isSwitch && text == u"false" ? u"--no-"_s : u"--"_s) + QLatin1StringView(option.flag);
    if (!added.contains(&option) || help.find(name.toStdString()) == std::string::npos ||
        help.find(option.tipText().toStdString()) == std::string::npos) {
        return {};
    }
    std::vector<std::string> arguments{name.toStdString()};
    if (!isSwitch) {
        arguments.insert(arguments.begin(), text.toStdString()); // the last one comes first
    }
    app.parse(arguments);
    return flags.given().size() == 1 ? flags.given().at(&option) : QString();
}

} // namespace

class OptionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOptionKeepsItsPromises_data() {
        columns<const OptionTable*, const OptionInfo*>("table", "option");
        for (const auto& [tab, table] : optionTables()) {
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

        if (option->flag) {
            QCOMPARE(readByFlag(*table, *option, otherText(*option)), otherText(*option));
        }

        OptionPlace place;
        TabOptions options(*table, place.settings);
        QVERIFY(makeApply(options, *option, true));
        QCOMPARE(makeApply(options, *option, false), option->applies != nullptr);
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
        OptionPlace place;
        TabOptions options(encodeOptions(), place.settings);
        place.settings.set(keys::encodeFlacLevel, 1);
        QCOMPARE(options[encodeOptions().flacLevel], 1);
        options.setForThisRun(encodeOptions().flacLevel, 2);
        place.settings.set(keys::encodeFlacLevel, 3);
        QCOMPARE(options[encodeOptions().flacLevel], 2);
        options.set(encodeOptions().flacLevel, 4);
        QCOMPARE(place.settings.integer(keys::encodeFlacLevel), 4);
    }

    void aNewOptionIsOneRowAndOneUse() {
        OptionPlace place;
        TabOptions options(demoOptions(), place.settings);
        QVERIFY(options.setForThisRun(demoOptions().depth.info(), u"7"_s));
        QCOMPARE(demoCommand(options.values()), (QStringList{u"demo"_s, u"-d"_s, u"7"_s}));
        Presets presets(demoOptions(), u"demo"_s, place.settings);
        QVERIFY(presets.save(u"deep"_s, options.values()));
        QCOMPARE(demoCommand(presets.read(u"deep"_s)->values), demoCommand(options.values()));
    }

    void presetsAreKeptRenamedAndCarriedOver() {
        OptionPlace place;
        Presets presets(encodeOptions(), u"encode"_s, place.settings);
        place.settings.set(keys::encodeFlacLevel, 7);
        QCOMPARE(presets.read(u"settings"_s)->values[encodeOptions().flacLevel], 7);
        QCOMPARE(presets.read(u"Fast"_s)->values[encodeOptions().flacLevel], 3);
        const OptionValues archive = presets.read(u"archive"_s)->values;
        QCOMPARE(archive[encodeOptions().flacLevel], 8);
        QVERIFY(archive[encodeOptions().flacVerify] && archive[encodeOptions().generateFFP]);

        OptionValues values(encodeOptions());
        values.set(encodeOptions().flacLax, true);
        const QString name = u"../Größe “1/2”"_s;
        QVERIFY(presets.save(name, values));
        QCOMPARE(presets.names().back().name, name);
        QVERIFY(presets.read(u"nobody"_s).error().contains(u"“archive”, “fast”, “"_s + name));
        QVERIFY(presets.rename(name, u"other"_s));
        QVERIFY(!presets.read(name));
        QCOMPARE(presets.read(u"other"_s)->values, values);
        for (const QString& taken : {u"FAST"_s, u" "_s, QString(300, u'x')}) {
            QVERIFY(!presets.save(taken, values));
        }

        const QString file = place.folder.filePath(u"carried"_s);
        QVERIFY(presets.exportTo(file, u"other"_s));
        QVERIFY(!presets.import(file, u"other"_s));
        QVERIFY(presets.remove(u"other"_s));
        QVERIFY(!presets.remove(u"fast"_s));
        QVERIFY(presets.import(file, *presets.nameIn(file)));
        QCOMPARE(presets.read(u"other"_s)->values, values);
        QVERIFY(presets.nameIn(place.settings.file()).error().contains(place.settings.file()));
        Presets others(decodeOptions(), u"decode"_s, place.settings);
        QVERIFY(others.import(file, u"x"_s).error().contains(u"another tab"_s));
    }

    void whatANewerVersionWroteStaysInAPreset() {
        OptionPlace place;
        const QString file = place.folder.filePath(u"newer.json"_s);
        QFile newer(file);
        QVERIFY(newer.open(QIODevice::WriteOnly));
        newer.write(R"({"tab": "encode", "name": "newer", "options":
                        {"colour": "red", "flacSlider": 12, "flacVerifyButton": true}})");
        newer.close();
        Presets presets(encodeOptions(), u"encode"_s, place.settings);
        QVERIFY(presets.import(file, u"newer"_s));
        const Preset preset = *presets.read(u"newer"_s);
        QVERIFY(preset.values[encodeOptions().flacVerify]);
        QCOMPARE(preset.unknown, QStringList{u"colour"_s});
        QCOMPARE(preset.unfit.keys(), QStringList{u"flacSlider"_s});
        QVERIFY(presets.rename(u"newer"_s, u"renamed"_s));
        QVERIFY(presets.exported(u"renamed"_s)->contains("12"));
        QVERIFY(presets.save(u"renamed"_s, preset.values));
        QCOMPARE(presets.read(u"renamed"_s)->unknown, preset.unknown);
        QVERIFY(presets.read(u"renamed"_s)->unfit.isEmpty());
    }

    void whatCannotBeWrittenNamesTheFolderOrFile() {
        OptionPlace place;
        const QString inTheWay = place.folder.filePath(u"presets"_s);
        QVERIFY(QFile(inTheWay).open(QIODevice::WriteOnly));
        Presets presets(encodeOptions(), u"encode"_s, place.settings);
        const OptionValues values(encodeOptions());
        QVERIFY(presets.save(u"mine"_s, values).error().contains(inTheWay));
        const QString nowhere = place.folder.filePath(u"no folder/x.json"_s);
        QVERIFY(presets.exportTo(nowhere, u"fast"_s).error().contains(nowhere));
        QVERIFY(QFile::remove(inTheWay));
        QVERIFY(presets.save(u"mine"_s, values));
    }

    void theUserChoosesSavesAndImports() {
        OptionPlace place;
        ScriptedPrompts prompts;
        TabOptions options(encodeOptions(), place.settings);
        PresetChooser chooser(options, u"encode"_s, place.settings, prompts);
        QVERIFY(!chooser.differs());
        options.set(encodeOptions().flacLax, true);
        QVERIFY(chooser.differs());
        chooser.choose(u"archive"_s);
        QVERIFY(!chooser.differs());
        QCOMPARE(options[encodeOptions().flacLevel], 8);
        QVERIFY(!options[encodeOptions().flacLax]);
        chooser.choose(u"settings"_s);
        QCOMPARE(options[encodeOptions().flacLevel], 5); // what was stored is there to come back
        chooser.choose(u"archive"_s);
        chooser.remove();
        QCOMPARE(chooser.chosen().name, u"archive"_s);

        options.set(encodeOptions().flacLevel, 2);
        prompts.line = u" mine "_s;
        chooser.saveAs();
        QCOMPARE(chooser.chosen().name, u"mine"_s);
        QVERIFY(!chooser.differs());
        options.set(encodeOptions().flacLevel, 6);
        chooser.saveAs(); // the answer is no
        QCOMPARE(chooser.presets().read(u"mine"_s)->values[encodeOptions().flacLevel], 2);
        QVERIFY(chooser.differs());

        prompts.savePath = place.folder.filePath(u"x.json"_s);
        chooser.exportToFile();
        prompts.files = QStringList{*prompts.savePath};
        prompts.line = u"again"_s;
        chooser.importFromFile();
        QCOMPARE(chooser.chosen().name, u"again"_s);
        QCOMPARE(options[encodeOptions().flacLevel], 2);
        prompts.line = u"fast"_s;
        chooser.rename();
        QCOMPARE(prompts.alerts.size(), 1);
        prompts.answers = {true};
        chooser.remove();
        QCOMPARE(chooser.chosen().name, u"settings"_s);
        QVERIFY(!chooser.presets().find(u"again"_s));
    }
};

QTEST_MAIN(OptionsTest)
#include "OptionsTest.moc"
