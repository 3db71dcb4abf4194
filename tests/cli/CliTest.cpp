#include "cli/Cli.h"

#include "support/Table.h"

#include <QTest>

#include <sys/stat.h>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

using quav::test::audioMd5;
using quav::test::Cli;
using quav::test::contents;
using quav::test::isSoundFlac;
using quav::test::jsonLines;
using quav::test::Ran;
using quav::test::row;
using quav::test::words;

namespace {

QStringList strangeNames() {
    return {QStringLiteral("two  blanks"),
            QStringLiteral("It's \"late\""),
            QStringLiteral("d1t01 [live] {x}"),
            QStringLiteral("Größe"),
            QStringLiteral("100%f %s"),
            QStringLiteral("-d"),
            QStringLiteral("a\nb"),
            QStringLiteral("\x1b[31mred\r"),
            QStringLiteral("$(touch x) `y` \\"),
            QStringLiteral("\U0001F3B5"),
            QString(245, u'n')};
}

} // namespace

class CliTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void strangeNamesGoThereAndBackAgain() {
        const Cli cli;
        unsigned seed = 0;
        for (const QString& name : strangeNames()) {
            cli.wav(name + QStringLiteral(".wav"), ++seed);
        }
        const Ran encoded = cli.encode(words(QStringLiteral("--verify --output out in")));
        QVERIFY2(encoded.status == 0, encoded.errors.constData());
        QVERIFY(!encoded.errors.contains('\x1b'));
        const Ran decoded = cli.decode(words(QStringLiteral("--jobs 3 --output back out")));
        QVERIFY2(decoded.status == 0, decoded.errors.constData());
        for (const QString& name : strangeNames()) {
            const QString flac = cli.out(name + QStringLiteral(".flac"));
            QVERIFY2(isSoundFlac(flac), qPrintable(name));
            const QByteArray samples = audioMd5(cli.in(name + QStringLiteral(".wav")));
            QCOMPARE(audioMd5(flac), samples);
            QCOMPARE(audioMd5(cli.path(QStringLiteral("back/%1.wav").arg(name))), samples);
        }
    }

    void anOperandIsAFileWhateverItLooksLike_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("before");
        row("in brackets", "[a,b].wav", "");
        row("a folder in brackets", "[a,b]", "");
        row("in braces", "{}", "");
        row("two plus signs", "++", "");
        row("a command", "decode", "");
        row("a dash behind dashes", "-x.wav", "--");
        row("an option behind dashes", "--json", "--");
        row("two dashes behind dashes", "--", "--");
    }
    void anOperandIsAFileWhateverItLooksLike() {
        QFETCH(QString, name);
        QFETCH(QString, before);
        const Cli cli;
        QString wav = cli.path(name);
        if (!name.endsWith(QStringLiteral(".wav"))) {
            QDir().mkdir(wav);
            wav += QStringLiteral("/-x.wav");
        }
        QVERIFY(QFile::rename(cli.wav(QStringLiteral("a.wav")), wav));
        const Ran ran =
            cli.encode(words(QStringLiteral("--output out in ") + before) + QStringList(name));
        QVERIFY2(ran.status == 0, ran.errors.constData());
        QCOMPARE(cli.namesIn(QStringLiteral("out")).size(), 1);
    }

    void optionsReachTheTool_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("expected");
        row("encode", "encode --to flac", "flac -5 ");
        row("level", "encode --to FLAC --level 8 --verify", "flac -8 -V ");
        row("lax", "encode --to flac --lax --keep-foreign-metadata",
            "flac --lax --keep-foreign-metadata ");
        row("decode", "decode --to wav", "flac -d ");
        row("aiff", "decode --to aiff --through-errors", "flac -d -F --force-aiff-format ");
        row("chunks", "decode --to aiff --keep-foreign-metadata",
            "flac -d --keep-foreign-metadata --force-aiff-format ");
    }
    void optionsReachTheTool() {
        QFETCH(QString, arguments);
        QFETCH(QString, expected);
        const Cli cli;
        cli.flac(QStringLiteral("a.flac"));
        const Ran ran =
            cli.run(words(arguments) + words(QStringLiteral("--dry-run --output out in")));
        QVERIFY2(ran.output.contains(expected.toUtf8()), ran.output.constData());
    }

    void aSwitchOfTheSettingsIsTurnedOffForOneRun_data() {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("on");
        row("verify", "flacVerifyButton", "--no-verify", " -V ");
        row("foreign metadata", "flacKeepForeignMetadataButton", "--no-keep-foreign-metadata",
            " --keep-foreign-metadata ");
    }
    void aSwitchOfTheSettingsIsTurnedOffForOneRun() {
        QFETCH(QString, setting);
        QFETCH(QString, option);
        QFETCH(QString, on);
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(cli.run(words(QStringLiteral("settings set %1 1").arg(setting))).status, 0);
        const QStringList plan = words(QStringLiteral("--dry-run --output out in"));
        const Ran usual = cli.encode(plan);
        QVERIFY2(usual.output.contains(on.toUtf8()), usual.output.constData());
        const Ran once = cli.encode(plan + QStringList(option));
        QVERIFY2(once.status == 0 && !once.output.contains(on.toUtf8()), once.output.constData());
    }

    void aRunNeverChangesTheSettings() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(cli.run(words(QStringLiteral("settings set encodeFlacLevel 2"))).status, 0);
        const QByteArray before = contents(cli.settingsFile());
        const QString options = QStringLiteral("--level 7 --verify --jobs 5 --beside in");
        QCOMPARE(cli.encode(words(options)).status, 0);
        QCOMPARE(contents(cli.settingsFile()), before);
        const Ran plan = cli.encode(words(QStringLiteral("--dry-run --output out in")));
        QVERIFY2(plan.output.contains("flac -2 "), plan.output.constData());
    }

    void theSettingsMaySendOutputsBesideTheSources() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(cli.run(words(QStringLiteral("settings set encodeToSourceDirectory 1"))).status,
                 0);
        QCOMPARE(cli.encode({QStringLiteral("in")}).status, 0);
        QVERIFY(QFile::exists(cli.in(QStringLiteral("a.flac"))));
        QFile::remove(cli.in(QStringLiteral("a.flac")));
        QCOMPARE(cli.encode(words(QStringLiteral("--output out in"))).status, 0);
        QCOMPARE(cli.namesIn(QStringLiteral("out")).size(), 1);
        QVERIFY(!QFile::exists(cli.in(QStringLiteral("a.flac"))));
    }

    void aDryRunPrintsWhatAShellCanRun() {
        const Cli cli;
        for (const QString& name : strangeNames()) {
            cli.wav(name + QStringLiteral(".wav"));
        }
        const Ran dry = cli.encode(words(QStringLiteral("--dry-run --output new in")));
        QVERIFY2(dry.status == 0, dry.errors.constData());
        QVERIFY(!QFile::exists(cli.path(QStringLiteral("new"))));
        QVERIFY(!dry.output.contains('\x1b'));
        const Ran ran = cli.shell(QString::fromUtf8(dry.output));
        QVERIFY2(ran.status == 0, ran.errors.constData());
        for (const QString& name : strangeNames()) {
            QVERIFY2(isSoundFlac(cli.path(QStringLiteral("new/%1.flac").arg(name))),
                     qPrintable(name));
        }
    }

    void aDryRunTellsWhatItWouldOverwrite() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(cli.encode(words(QStringLiteral("--output out in"))).status, 0);
        const QByteArray before = contents(cli.out(QStringLiteral("a.flac")));
        const Ran dry = cli.encode(words(QStringLiteral("--dry-run --output out in")));
        QCOMPARE(dry.status, 0);
        const QString output = cli.out(QStringLiteral("a.flac"));
        QVERIFY2(dry.output.contains("would overwrite " + output.toUtf8()), dry.output.constData());
        QVERIFY2(dry.output.contains("flac -5 -f "), dry.output.constData());
        QCOMPARE(contents(output), before);
    }

    void everyLineOfJsonParses_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("events");
        row("run", "encode --to flac --output out --json in", "finished finished summary");
        row("plan", "encode --to flac --output new --json --dry-run in", "folder plan plan");
        row("failure", "decode --to wav --output out --json bad", "report finished summary");
    }
    void everyLineOfJsonParses() {
        QFETCH(QString, arguments);
        QFETCH(QString, events);
        const Cli cli;
        cli.wav(QStringLiteral("a\nb.wav"));
        cli.wav(QStringLiteral("ü.wav"));
        QDir(cli.path({})).mkdir(QStringLiteral("bad"));
        QFile(cli.path(QStringLiteral("bad/x.flac"))).open(QIODevice::WriteOnly);
        QStringList seen;
        for (const QJsonObject& object : jsonLines(cli.run(words(arguments)).output)) {
            seen << object[QStringLiteral("event")].toString();
        }
        QCOMPARE(seen, words(events));
    }

    void jsonTellsWhatBecameOfAFile() {
        const Cli cli;
        const QString source = cli.wav(QStringLiteral("a\nb.wav"));
        const Ran ran = cli.encode(words(QStringLiteral("--json --output out in")));
        const QJsonObject finished = jsonLines(ran.output).front();
        QCOMPARE(finished[QStringLiteral("source")].toString(), source);
        QCOMPARE(finished[QStringLiteral("output")].toString(),
                 cli.out(QStringLiteral("a\nb.flac")));
        QCOMPARE(finished[QStringLiteral("status")].toString(), QStringLiteral("done"));
    }

    void quietSaysNothingOfWhatWentWell() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        const Ran ran = cli.encode(words(QStringLiteral("--quiet --output out in")));
        QCOMPARE(ran.status, 0);
        QCOMPARE(ran.output + ran.errors, QByteArray());
    }

    void originalsAreDeletedWhenAllWentWell() {
        const Cli cli;
        cli.wav(QStringLiteral("a.wav"));
        QCOMPARE(
            cli.encode(words(QStringLiteral("--delete-originals --yes --output out in"))).status,
            0);
        QVERIFY(cli.namesIn(QStringLiteral("in")).isEmpty());
        QVERIFY(isSoundFlac(cli.out(QStringLiteral("a.flac"))));
    }

    void toolsAreListedOrTheirPackageNamed() {
        const Cli cli;
        const Ran ran = cli.run(words(QStringLiteral("tools")));
        QCOMPARE(ran.status, 0);
        QVERIFY2(ran.output.contains(cli.tool().toUtf8()), ran.output.constData());
        QVERIFY2(ran.output.contains("“shntool” brings it"), ran.output.constData());
        const auto tools = jsonLines(cli.run(words(QStringLiteral("tools --json"))).output);
        const QByteArray printed =
            quav::test::run(QStringLiteral("flac"), {QStringLiteral("--version")}).output;
        QCOMPARE("flac " + tools.front()[QStringLiteral("version")].toString().toUtf8() + '\n',
                 printed);
    }

    void settingsAreListedReadChangedAndReset() {
        const Cli cli;
        const QString key = QStringLiteral("settings get maxThreads");
        QCOMPARE(cli.run(words(key)).output, QByteArray("2\n"));
        QCOMPARE(cli.run(words(QStringLiteral("settings set maxThreads 7"))).status, 0);
        QCOMPARE(cli.run(words(key)).output, QByteArray("7\n"));
        const Ran list = cli.run(words(QStringLiteral("settings list")));
        QVERIFY2(list.output.contains("\n* maxThreads = 7"), list.output.constData());
        QCOMPARE(list.output.count('*'), 1);
        QCOMPARE(cli.run(words(QStringLiteral("settings reset maxThreads"))).status, 0);
        QCOMPARE(cli.run(words(key)).output, QByteArray("2\n"));
        QVERIFY(!contents(cli.settingsFile()).contains("maxThreads"));
    }

    void settingsListsObjects() {
        const Cli cli;
        const auto objects =
            jsonLines(cli.run(words(QStringLiteral("settings list --json"))).output);
        QVERIFY(objects.size() > 20);
        QVERIFY(std::none_of(objects.begin(), objects.end(), [](const QJsonObject& object) {
            return object[QStringLiteral("key")].toString().isEmpty();
        }));
    }

    void theManualRendersWithoutWarnings() {
        const Cli cli;
        const Ran ran = cli.shell(
            QStringLiteral("\"$QUAV\" --man > quav.1 && MANWIDTH=80 man --warnings=w -l quav.1"));
        QCOMPARE(ran.errors, QByteArray());
        QCOMPARE(ran.status, 0);
        for (const char* expected :
             {"NAME", "SYNOPSIS", "--level N", "EXIT STATUS", "QUAV_TOOLS_DIR", "EXAMPLES"}) {
            QVERIFY2(ran.output.contains(expected), expected);
        }
    }

    void helpAndVersionSucceed() {
        const Cli cli;
        QVERIFY(cli.run({QStringLiteral("--version")}).output.startsWith("quav-cli "));
        const Ran help = cli.run(words(QStringLiteral("encode --help")));
        QCOMPARE(help.status, 0);
        QVERIFY(help.output.contains("Example"));
    }

    void helpAndManualTellTheExitStatus() {
        const Cli cli;
        const Ran help = cli.run({QStringLiteral("--help")});
        QVERIFY2(help.output.contains("  3  a question was answered with no"),
                 help.output.constData());
        const Ran manual = cli.run({QStringLiteral("--man")});
        QVERIFY2(manual.output.contains("\\fB3\\fR\nA question was answered with no.\n"),
                 manual.output.constData());
    }
};

QTEST_GUILESS_MAIN(CliTest)
#include "CliTest.moc"
