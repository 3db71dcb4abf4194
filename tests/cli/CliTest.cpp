#include "cli/Cli.h"

#include "support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

const QStringList strangeNames{u"two  blanks"_s, u"It's \"late\""_s, u"d1t01 [live] {x}"_s,
                               u"Größe"_s,       u"100%f %s"_s,      u"-d"_s,
                               u"a\nb"_s,        u"\x1b[31mred\r"_s, u"$(touch x) `y` \\"_s,
                               u"\U0001F3B5"_s,  QString(245, u'n')};

} // namespace

class CliTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void strangeNamesGoThereAndBackAgain_data() {
        QTest::addColumn<QString>("arguments");
        row("the program itself", "--verify --output new in");
        row("a shell with the lines of the dry run", "--dry-run --output new in");
    }
    void strangeNamesGoThereAndBackAgain() {
        QFETCH(QString, arguments);
        const Cli cli;
        unsigned seed = 0;
        for (const QString& name : strangeNames) {
            cli.wav(name + u".wav"_s, ++seed);
        }
        Ran encoded = cli.encode(arguments);
        QVERIFY2(encoded.status == 0, encoded.errors.constData());
        QVERIFY(!(encoded.output + encoded.errors).contains('\x1b'));
        if (arguments.contains(u"--dry-run"_s)) {
            QVERIFY(!QFile::exists(cli.path(u"new"_s)));
            encoded = cli.shell(QString::fromUtf8(encoded.output));
            QVERIFY2(encoded.status == 0, encoded.errors.constData());
        }
        const Ran decoded = cli.decode(u"--jobs 3 --output back new"_s);
        QVERIFY2(decoded.status == 0, decoded.errors.constData());
        for (const QString& name : strangeNames) {
            const QString flac = cli.path(u"new/%1.flac"_s.arg(name));
            QVERIFY2(isSoundFlac(flac), qPrintable(name));
            const QByteArray samples = audioMd5(cli.in(name + u".wav"_s));
            QCOMPARE(audioMd5(flac), samples);
            QCOMPARE(audioMd5(cli.path(u"back/%1.wav"_s.arg(name))), samples);
        }
    }

    void optionsReachTheTool_data() {
        columns<QString, QString, QString>("setting", "arguments", "expected");
        const QString verify = u"flacVerifyButton 1"_s;
        const QString chunks = u"flacKeepForeignMetadataButton 1"_s;
        const QString with = u" --keep-foreign-metadata"_s;
        row("level", "", "encode --to FLAC --level 8 --verify", "-8 -V");
        row("lax", "", u"encode --to flac --lax"_s + with, "--lax --keep-foreign-metadata");
        row("mode", "", "encode --to wv --mode high", "-h");
        row("aiff", "", u"decode --to aiff --through-errors"_s + with,
            "-d --keep-foreign-metadata -F --force-aiff-format");
        row("verify set", verify, "encode --to flac", "-5 -V");
        row("verify set, not now", verify, "encode --to flac --no-verify", "-5");
        row("chunks set", chunks, "encode --to flac", "-5 --keep-foreign-metadata");
        row("chunks set, not now", chunks, "encode --to flac --no-keep-foreign-metadata", "-5");
    }
    void optionsReachTheTool() {
        QFETCH(QString, setting);
        QFETCH(QString, arguments);
        QFETCH(QString, expected);
        const Cli cli;
        cli.flac(u"a.flac"_s);
        if (!setting.isEmpty()) {
            QCOMPARE(cli.run(u"settings set "_s + setting).status, 0);
        }
        const Ran ran = cli.run(arguments + u" --dry-run --output out in"_s);
        QCOMPARE(ran.status, 0);
        const QRegularExpression command(u"/(flac|wavpack) "_s +
                                         QRegularExpression::escape(expected) + u" /"_s);
        QVERIFY2(QString::fromUtf8(ran.output).contains(command), ran.output.constData());
    }

    void aScriptNeverTakesOneFileForAnother() {
        const Cli cli;
        cli.flac(u"a.flac"_s);
        quav::test::run(u"ffmpeg"_s,
                        {u"-v"_s, u"error"_s, u"-i"_s, cli.in(u"a.flac"_s), cli.in(u"b.aiff"_s)});
        QFile broken(cli.in(u"c.flac"_s));
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("fLaC, but no more") > 0);
        broken.close();
        const Ran plan = cli.run(u"encode --to wv --mode fast --dry-run --output out in"_s);
        QCOMPARE(plan.status, 0);
        quav::test::run(u"sh"_s, {u"-c"_s, QString::fromUtf8(plan.output)});
        const QStringList packed = cli.namesIn(u"out"_s).filter(u".wv"_s);
        QCOMPARE(packed, QStringList(u"a.wv"_s));
    }

    void aRunObeysTheSettingsAndNeverChangesThem() {
        const Cli cli;
        cli.wav(u"a.wav"_s);
        QCOMPARE(cli.run(u"settings set encodeFlacLevel 2"_s).status, 0);
        QCOMPARE(cli.run(u"settings set encodeToSourceDirectory 1"_s).status, 0);
        const QByteArray before = contents(cli.settingsFile());
        QCOMPARE(cli.encode(u"--level 7 --verify --jobs 5 --output out in"_s).status, 0);
        QCOMPARE(cli.namesIn(u"in"_s) + cli.namesIn(u"out"_s), words(u"a.wav a.flac"_s));
        QCOMPARE(contents(cli.settingsFile()), before);
        const Ran plan = cli.encode(u"--dry-run in"_s);
        QVERIFY2(plan.output.contains("flac -2 /"), plan.output.constData());
        QCOMPARE(cli.encode(u"in"_s).status, 0);
        QVERIFY(isSoundFlac(cli.in(u"a.flac"_s)));
    }

    void jsonTellsWhatBecameOfEachFile_data() {
        columns<QString, QString>("arguments", "told");
        row("run", "encode --to flac --output out in", "finished done finished done summary");
        row("plan", "encode --to flac --output new --dry-run in", "folder plan plan");
        row("failure", "decode --to wav --output out bad", "report finished failed summary");
    }
    void jsonTellsWhatBecameOfEachFile() {
        QFETCH(QString, arguments);
        QFETCH(QString, told);
        const Cli cli;
        cli.wav(u"a\nb.wav"_s);
        cli.wav(u"ü.wav"_s);
        QVERIFY(writeFile(cli.path(u"bad/x.flac"_s), {}));
        QStringList seen;
        for (const QJsonObject& object : jsonLines(cli.run(arguments + u" --json"_s).output)) {
            seen << object[u"event"_s].toString() << words(object[u"status"_s].toString());
            if (seen.last() == u"done"_s) {
                const QFileInfo source(object[u"source"_s].toString());
                QVERIFY2(source.exists(), qPrintable(source.filePath()));
                const QString output = cli.out(source.completeBaseName() + u".flac"_s);
                QCOMPARE(object[u"output"_s].toString(), output);
                QVERIFY(isSoundFlac(output));
            }
        }
        QCOMPARE(seen, words(told));
    }

    void aLongReportIsPrintedWhole_data() {
        columns<QString>("option");
        row("text", "");
        row("JSON", " --json");
    }
    void aLongReportIsPrintedWhole() {
        QFETCH(QString, option);
        const Cli cli;
        const QByteArray line = "said \"ä€\"\t\\ and so on\n"; // no piece ends with it
        QFile::remove(cli.tool());
        QVERIFY(writeFile(cli.path(u"line"_s), line));
        QVERIFY(writeFile(cli.tool(), "#!/bin/sh\nyes \"$(cat line)\" | head -n 20000\nexit 1\n"));
        QFile(cli.tool()).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        cli.wav(u"a.wav"_s);
        QByteArray output = cli.encode(u"--output out in"_s + option).output;
        if (!option.isEmpty()) {
            const QJsonObject event = jsonLines(output).front();
            QCOMPARE(event[u"title"_s].toString(), u"a.wav");
            output = event[u"text"_s].toString().toUtf8();
        }
        QVERIFY(output == line.repeated(20000) + '\n' || output == line.repeated(20000));
    }

    void aRunThatGoesWellMayBeQuietAndDeleteOriginals() {
        const Cli cli;
        cli.wav(u"a.wav"_s);
        const Ran ran = cli.encode(u"--quiet --delete-originals --yes --output out in"_s);
        QCOMPARE(ran.status, 0);
        QCOMPARE(ran.output + ran.errors, QByteArray());
        QVERIFY(cli.namesIn(u"in"_s).isEmpty());
        QVERIFY(isSoundFlac(cli.out(u"a.flac"_s)));
    }

    void toolsAreListedOrTheirPackageNamed() {
        const Cli cli;
        QVERIFY(QFile::remove(cli.tool(u"lame"_s)));
        const Ran ran = cli.run(u"tools"_s);
        QCOMPARE(ran.status, 0);
        QVERIFY2(ran.output.contains(cli.tool().toUtf8()), ran.output.constData());
        QVERIFY2(ran.output.contains("“lame” brings it"), ran.output.constData());
        const QByteArray version = run(u"flac"_s, {u"--version"_s}).output.trimmed().mid(5);
        const QJsonObject tool = jsonLines(cli.run(u"tools --json"_s).output).front();
        QCOMPARE(tool[u"version"_s].toString().toUtf8(), version);
    }

    void settingsAreListedReadChangedAndReset() {
        const Cli cli;
        const QString get = u"settings get maxThreads"_s;
        QCOMPARE(cli.run(get).output, QByteArray("2\n"));
        QCOMPARE(cli.run(u"settings set maxThreads 7"_s).status, 0);
        QCOMPARE(cli.run(get).output, QByteArray("7\n"));
        const Ran list = cli.run(u"settings list"_s);
        QVERIFY2(list.output.contains("\n* maxThreads = 7"), list.output.constData());
        QCOMPARE(list.output.count('*'), 1);
        QCOMPARE(cli.run(u"settings reset maxThreads"_s).status, 0);
        QCOMPARE(cli.run(get).output, QByteArray("2\n"));
        QVERIFY(!contents(cli.settingsFile()).contains("maxThreads"));
    }

    void aPresetLiesBelowTheFlagsAndAboveTheSettings_data() {
        columns<QString, int, QString>("arguments", "status", "expected");
        row("a standard one", u"--preset archive"_s, 0, u"flac -8 -V "_s);
        row("by its title", u"--preset FAST"_s, 0, u"flac -3 "_s);
        row("flags over it", u"--preset mine --no-verify --no-lax --level 1"_s, 0, u"flac -1 "_s);
        row("one's own", u"--preset mine"_s, 0, u"flac --lax -V "_s);
        row("nobody's", u"--preset nobody"_s, 2, u"“archive”, “fast”, “mine”, “newer”"_s);
        row("a newer one", u"--preset newer"_s, 2, u"Say --level yourself"_s);
        row("a newer one, helped", u"--preset newer --level 2"_s, 0, u"flac -2 "_s);
        row("none", QString(), 2, u"--to is required"_s);
    }
    void aPresetLiesBelowTheFlagsAndAboveTheSettings() {
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QFETCH(QString, expected);
        const Cli cli;
        cli.wav(u"a.wav"_s);
        cli.run(u"settings set encodeFlacLevel 6"_s);
        QCOMPARE(cli.run(u"presets save encode mine --verify --lax"_s).status, 0);
        writeFile(cli.path(u"newer.json"_s), R"({"tab": "encode", "name": "newer",
                  "options": {"colour": "red", "flacSlider": 12}})");
        QCOMPARE(cli.run(u"presets import newer.json"_s).status, 0);
        const Ran ran = cli.run(u"encode --dry-run --output out in "_s + arguments);
        QCOMPARE(ran.status, status);
        const QByteArray all = ran.output + ran.errors;
        QVERIFY2(all.contains(expected.toUtf8()), all.constData());
        if (status == 0 && arguments.contains(u"newer"_s)) {
            QVERIFY2(ran.errors.contains("“colour”"), ran.errors.constData());
        }
    }

    void presetsAreListedSavedCarriedOverAndDeleted() {
        const Cli cli;
        cli.giveAway();
        const auto status = [&](const QString& rest) {
            return cli.runAsOrdinaryUser(u"presets "_s + rest).status;
        };
        QCOMPARE(status(u"save checksum here --kind st5 --beside --tolerant"_s), 0);
        QCOMPARE(status(u"save checksum here"_s), 3);
        QCOMPARE(status(u"save checksum here --kind ffp --beside --yes"_s), 0);
        const Ran shown = cli.run(u"presets show checksum here"_s);
        QCOMPARE(shown.output, QByteArray("commandOptions = test\n--kind ffp\n--beside\n"
                                          "--no-tolerant\n"));
        QCOMPARE(status(u"export checksum here carried.json"_s), 0);
        QCOMPARE(status(u"import carried.json"_s), 2);
        QCOMPARE(status(u"import carried.json --name there"_s), 0);
        QCOMPARE(status(u"rename checksum here fast"_s), 0);
        QCOMPARE(status(u"delete checksum settings"_s), 2);
        QCOMPARE(status(u"delete checksum fast"_s), 0);
        QStringList names;
        for (const QJsonObject& preset :
             jsonLines(cli.run(u"presets list checksum --json"_s).output)) {
            names << preset[u"name"_s].toString();
        }
        QCOMPARE(names, (QStringList{u"settings"_s, u"there"_s}));
        const QString folder = QFileInfo(cli.settingsFile()).path() + u"/presets/checksum"_s;
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const Ran refused = cli.runAsOrdinaryUser(u"presets save checksum more"_s);
        QCOMPARE(refused.status, 2);
        QVERIFY2(refused.errors.contains(folder.toUtf8()), refused.errors.constData());
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void theManualRendersWithoutWarnings() {
        const Cli cli;
        const Ran ran =
            cli.shell(u"\"$QUAV\" --man > quav.1 && MANWIDTH=80 man --warnings=w -l quav.1"_s);
        QCOMPARE(ran.errors, QByteArray());
        QCOMPARE(ran.status, 0);
        for (const char* expected :
             {"NAME", "SYNOPSIS", "--level N", "EXIT STATUS", "QUAV_TOOLS_DIR", "EXAMPLES"}) {
            QVERIFY2(ran.output.contains(expected), expected);
        }
    }
};

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
