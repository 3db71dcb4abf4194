#include "cli/Cli.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

const QString strange = u"It's \"late\" Größe [x] %s.flac"_s;

Ran checksum(const QStringList& arguments) {
    return run(Cli::program(), QStringList{u"checksum"_s} + arguments);
}

/// The verdicts of an output in JSON: "file=verdict", in order.
QStringList verdictsIn(const QByteArray& output) {
    QStringList verdicts;
    for (const QJsonObject& object : jsonLines(output)) {
        if (object.value(u"event"_s) == u"verdict"_s) {
            verdicts << QFileInfo(object.value(u"file"_s).toString()).fileName() + u'=' +
                            object.value(u"verdict"_s).toString();
        }
    }
    return verdicts;
}

} // namespace

class ChecksumCliTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsGoThereAndBackAgain_data() {
        columns<QString, QString>("kind", "name");
        row("md5", u"md5"_s, u"md5sum.md5"_s);
        row("st5", u"ST5"_s, u"checksum.st5"_s);
        row("ffp", u"ffp"_s, u"fingerprint.ffp.txt"_s);
    }
    void listsGoThereAndBackAgain() {
        QFETCH(QString, kind);
        QFETCH(QString, name);
        const Cli cli;
        cli.flac(strange);
        cli.flac(u"-b.flac"_s);
        QCOMPARE(checksum({u"create"_s, u"--kind"_s, kind, u"--beside"_s, cli.in({})}).status, 0);
        const Ran verified = checksum({u"verify"_s, cli.in({})});
        QVERIFY2(verified.status == 0, (verified.output + verified.errors).constData());
        QVERIFY(verified.output.contains((strange + u" : OK\n"_s).toUtf8()));
        QVERIFY(verified.errors.contains("2 ok, 0 failed, 0 missing, 0 could not be read"));
        if (kind == u"md5") {
            QVERIFY(cli.shell(u"cd in && md5sum -c --strict md5sum.md5"_s).status == 0);
        }
        const QString elsewhere = cli.path(u"else where"_s);
        // Its names would lead nowhere from there.
        const QStringList create{u"create"_s, u"--kind"_s, kind,
                                 u"--save"_s, elsewhere,   cli.in({})};
        const Ran asked = checksum(create);
        QVERIFY2(asked.errors.contains("names in this list will not lead to their files"),
                 asked.errors.constData());
        QCOMPARE(asked.status, 3);
        QCOMPARE(checksum(create + QStringList{u"--no"_s}).status, 3);
        QVERIFY(!QFile::exists(elsewhere));
        QCOMPARE(checksum(create + QStringList{u"--yes"_s}).status, 0);
        // The list beside the files is one of the files now, for the kind that takes any.
        const QByteArray first = contents(cli.in(name));
        const QByteArray second = contents(elsewhere);
        QCOMPARE(second.count('\n') - first.count('\n'), kind == u"md5" ? 1 : 0);
    }

    void theExitStatusAndTheVerdictsSayWhatIsWrong() {
        const Cli cli;
        const QString good = cli.flac(u"good.flac"_s);
        const QString bad = cli.flac(u"bad.flac"_s);
        QFile file(bad);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
        file.write("xxxxxxxxxxxx");
        file.close();
        const Ran tested = checksum({u"test"_s, u"--json"_s, good, bad});
        QCOMPARE(tested.status, 1);
        QStringList verdicts = verdictsIn(tested.output);
        verdicts.sort();
        QCOMPARE(verdicts, (QStringList{u"bad.flac=failed"_s, u"good.flac=ok"_s}));
        QCOMPARE(checksum({u"test"_s, good}).status, 0);

        const QByteArray zeros(32, '0');
        writeFile(cli.in(u"l.md5"_s), zeros + " *good.flac\n" + zeros + " *no.flac\nx\n");
        const Ran verified = checksum({u"verify"_s, u"--json"_s, cli.in(u"l.md5"_s)});
        QCOMPARE(verified.status, 1);
        QCOMPARE(verdictsIn(verified.output),
                 (QStringList{u"good.flac=failed"_s, u"no.flac=missing"_s, u"x=unreadable"_s}));
        const QJsonObject summary = jsonLines(verified.output).back();
        QCOMPARE(
            summary.value(u"files"_s).toObject(),
            (QJsonObject{{u"ok"_s, 0}, {u"failed"_s, 1}, {u"missing"_s, 1}, {u"unreadable"_s, 1}}));

        const QString list = cli.in(u"md5sum.txt"_s);
        writeFile(list, cli.shell(u"cd in && md5sum good.flac"_s).output);
        const Ran refused = checksum({u"verify"_s, list});
        QCOMPARE(refused.status, 2);
        QVERIFY2(refused.errors.contains("only be read with --tolerant"),
                 refused.errors.constData());
        const Ran tolerant = checksum({u"verify"_s, u"--tolerant"_s, list});
        QCOMPARE(tolerant.status, 0);
        QVERIFY(tolerant.output.contains("good.flac : OK (read strictly: Invalid"));
        QVERIFY(QFile::rename(list, cli.in(u"MD5SUMS"_s)));
        QVERIFY(checksum({u"verify"_s, u"--tolerant"_s, cli.in({})})
                    .output.contains("Verify MD5: MD5SUMS\n"));
    }

    void whatFailsOnlyByItsSpellingIsMarked() {
        const Cli cli;
        cli.flac(u"a.flac"_s);
        cli.flac(u"b.flac"_s);
        const QByteArray sums = cli.shell(u"cd in && md5sum -b a.flac b.flac"_s).output;
        const QByteArray a = sums.left(sums.indexOf('\n') + 1);
        writeFile(cli.in(u"l.md5"_s), a.left(32).toUpper() + a.mid(32) + sums.mid(a.size()) +
                                          QByteArray(32, '0') + " *b.flac\n");
        const Ran ran = checksum({u"verify"_s, u"--json"_s, cli.in(u"l.md5"_s)});
        QCOMPARE(ran.status, 1);
        QStringList marked;
        for (const QJsonObject& object : jsonLines(ran.output)) {
            if (object.value(u"onlySpelling"_s).toBool()) {
                marked << object.value(u"expected"_s).toString() +
                              object.value(u"note"_s).toString();
            }
        }
        QCOMPARE(marked, QStringList{QString::fromLatin1(a.left(32).toUpper()) +
                                     u"it differs only in its spelling"_s});
        QCOMPARE(ran.errors.count("(--tolerant), 1 entry would match"), 1);
    }

    void listsAmongTheirFilesAreTold() {
        const Cli cli;
        cli.flac(u"a.flac"_s);
        const QStringList create{u"create"_s, u"--kind"_s, u"md5"_s, u"--beside"_s, cli.in({})};
        const auto warnings = [&](const QByteArray& words) {
            const Ran ran = checksum(create);
            return ran.status == 0 ? ran.errors.count(words) : -1;
        };
        QCOMPARE(warnings("list"), 0);
        QCOMPARE(
            warnings("md5sum.md5” is itself in the list, as it was before: this entry will always "
                     "fail"),
            1);
        QCOMPARE(checksum({u"verify"_s, cli.in({})}).status, 1);
        // By another path it is the same file; a second name of its own keeps the old list.
        cli.shell(u"cd in && ln -s md5sum.md5 link && ln md5sum.md5 old.md5"_s);
        QCOMPARE(warnings("always fail"), 2);
        QCOMPARE(warnings("old.md5” is an MD5 list, too: its entry will fail once"), 1);
    }

    void theLastLineHasAllCounts_data() {
        columns<QString, QString, int, QString>("without", "arguments", "status", "says");
        row("files", "", "verify in/l.md5", 1,
            "1 ok, 1 failed, 1 missing, 1 could not be read; tasks: 1 done, warnings: ");
        row("tasks, too", "", "test in/a.flac in/b.flac", 1,
            "1 ok, 1 failed, 0 missing, 0 could not be read; tasks: 1 done, 1 failed, warnings: ");
        row("no files", "", "create --kind ffp --beside in/sub/c.flac", 0,
            "1 done, 0 failed, 0 cancelled, warnings: ");
        row("a missing tool", "shntool", "verify in/l.md5 in/l.st5", 1,
            "1 ok, 1 failed, 1 missing, 2 could not be read; tasks: 1 done, 1 failed, warnings: ");
    }
    void theLastLineHasAllCounts() {
        QFETCH(QString, without);
        QFETCH(QString, arguments);
        QFETCH(QString, says);
        const Cli cli;
        const QString flac = cli.flac(u"a.flac"_s);
        QVERIFY(writeFile(cli.in(u"b.flac"_s), "no sound"));
        QVERIFY(writeFile(cli.in(u"sub/c.flac"_s), contents(flac)));
        const QByteArray digest = cli.shell(u"md5sum in/a.flac"_s).output.first(32);
        writeFile(cli.in(u"l.md5"_s),
                  digest + " *a.flac\n" + digest + " *b.flac\n" + digest + " *no\nx\n");
        writeFile(cli.in(u"l.st5"_s), digest + "  [shntool]  a.flac\n");
        QVERIFY(without.isEmpty() || QFile::remove(cli.tool(without)));
        const Ran ran = checksum(words(arguments));
        QTEST(ran.status, "status");
        const QStringList lines = QString::fromUtf8(ran.errors).trimmed().split(u'\n');
        QVERIFY2(lines.last().startsWith(says), ran.errors.constData());
        QCOMPARE(lines.filter(u" failed, "_s).size(), 1);
        QCOMPARE(ran.errors.contains("“quav” brings it"), !without.isEmpty());
    }

    void whatCannotBeDoneIsSaid_data() {
        columns<QString, int, QString>("arguments", "status", "says");
        row("where to", "create --kind md5 in", 2, "--save PATH or --beside");
        row("several folders", "create --kind md5 --beside in in/sub/x.wav", 2, "Say --save PATH");
        row("no folder", "create --kind md5 --save no/x.md5 in", 2, "no folder for");
        row("a folder", "create --kind md5 --save in in", 2, "is a folder");
        row("foreign", "create --kind md5 --save in/x.txt in/sub", 3, "The answer was no");
        row("no such kind", "create --kind sha1 --beside in", 2, "--kind");
        row("both places", "create --kind md5 --beside --save a in", 2, "excludes");
        row("other files", "test in/x.txt", 2, "of no kind for this command");
        row("other files, too", "test in/x.txt in/sub/a.flac", 1, "of no kind for this command");
        row("nothing", "verify in/sub/x.wav", 2, "nothing to do");
        row("missing", "verify nope.md5", 2, "does not exist");
        row("no action", "in", 2, "subcommand");
    }
    void whatCannotBeDoneIsSaid() {
        QFETCH(QString, arguments);
        QFETCH(QString, says);
        const Cli cli;
        cli.wav(u"sub/x.wav"_s);
        cli.wav(u"y.wav"_s);
        QVERIFY(QFile::rename(cli.flac(u"a.flac"_s), cli.in(u"sub/a.flac"_s)));
        writeFile(cli.in(u"x.txt"_s), "a text\n");
        const Ran ran = checksum(words(arguments));
        QTEST(ran.status, "status");
        QVERIFY2(ran.errors.contains(says.toUtf8()), ran.errors.constData());
        QCOMPARE(contents(cli.in(u"x.txt"_s)), "a text\n");
        QVERIFY(!QFile::exists(cli.in(u"md5sum.md5"_s)));
    }

    void aFileWithoutAnEntryIsTold_data() {
        columns<QString, QString, QString>("kind", "script", "says");
        row("FFP, killed", u"ffp"_s, u"case \"$*\" in *b.flac) kill -9 $$;; esac"_s,
            u"ended by signal 9 (Killed)"_s);
        row("FFP, complaint", u"ffp"_s, QString(), u"has no entry but what metaflac said of it"_s);
        row("ST5, killed", u"st5"_s, u"\"$real\" hash a.flac; kill -9 $$"_s,
            u"ended by signal 9 (Killed)"_s);
    }
    void aFileWithoutAnEntryIsTold() {
        QFETCH(QString, kind);
        QFETCH(QString, script);
        QFETCH(QString, says);
        const Cli cli;
        const QString list = cli.in(kind == u"ffp" ? u"fingerprint.ffp.txt"_s : u"checksum.st5"_s);
        cli.flac(u"a.flac"_s);
        cli.flac(u"b.flac"_s);
        const QStringList create{u"create"_s, u"--kind"_s, kind, u"--beside"_s, cli.in({})};
        QCOMPARE(checksum(create).status, 0);
        const QByteArray before = contents(list);
        if (script.isEmpty()) {
            writeFile(cli.in(u"b.flac"_s), "no sound");
        } else {
            wrapTool(cli.tool(kind == u"ffp" ? u"metaflac"_s : u"shntool"_s), script);
        }
        const Ran ran = checksum(create);
        QCOMPARE(ran.status, 1);
        QVERIFY2(ran.errors.contains(says.toUtf8()), ran.errors.constData());
        QVERIFY2(ran.errors.contains(list.toUtf8() + ".old”"), ran.errors.constData());
        QCOMPARE(contents(list + u".old"_s), before);
        const QString text = QString::fromUtf8(contents(list));
        QCOMPARE(text.count(QRegularExpression(u"[0-9a-f]{32}"_s)), 1);
        QCOMPARE(text.contains(u"FLAC__METADATA_CHAIN"_s), script.isEmpty());
    }

    void aDryRunPrintsWhatItsListsAreMadeWith_data() {
        columns<QString, QString>("kind", "name");
        row("md5", "md5", "md5sum.md5");
        row("st5", "st5", "checksum.st5");
        row("ffp", "ffp", "fingerprint.ffp.txt");
    }
    void aDryRunPrintsWhatItsListsAreMadeWith() {
        QFETCH(QString, kind);
        QFETCH(QString, name);
        const Cli cli;
        cli.flac(u"ä \"b\" [c].flac"_s);
        cli.flac(u"d.flac"_s);
        const QStringList before = cli.namesIn(u"in"_s);
        const QStringList create{u"create"_s, u"--kind"_s, kind, u"--beside"_s, cli.in({})};
        const Ran plan = checksum(create + QStringList{u"--dry-run"_s});
        QCOMPARE(plan.status, 0);
        QVERIFY2(plan.output.contains(cli.in(name).toUtf8()), plan.output.constData());
        QCOMPARE(cli.namesIn(u"in"_s), before);
        const Ran printed = cli.shell(QString::fromUtf8(plan.output));
        QCOMPARE(printed.status, 0);
        QCOMPARE(checksum(create).status, 0);
        const QRegularExpression digest(u"[0-9a-f]{32}"_s);
        const QString list = QString::fromUtf8(contents(cli.in(name)));
        QCOMPARE(list.count(digest), 2);
        if (kind != u"md5") { // which no tool makes
            for (auto found = digest.globalMatch(list); found.hasNext();) {
                QVERIFY(printed.output.contains(found.next().captured().toLatin1()));
            }
        }
    }

    void encodesBringTheirFingerprints() {
        const Cli cli;
        cli.wav(u"a.wav"_s);
        const Ran plan = cli.encode(u"--ffp --dry-run --output out in"_s);
        QVERIFY2(plan.output.contains("would then write the checksum file"),
                 plan.output.constData());
        QCOMPARE(cli.encode(u"--ffp --output out in"_s).status, 0);
        QCOMPARE(cli.namesIn(u"out"_s), words(u"a.flac fingerprint.ffp.txt"_s));
        QCOMPARE(checksum({u"verify"_s, cli.out({})}).status, 0);
    }
};

QTEST_GUILESS_MAIN(ChecksumCliTest)
#include "ChecksumCliTest.moc"
