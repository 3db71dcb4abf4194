#include "ChecksumBench.h"
#include "support/Table.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quav;
using namespace quav::test;
using Command = ChecksumCommand;

/// What becomes of lists, and of those who wait, when something fails or is cancelled.
class ChecksumFailureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileThatCannotBeWrittenIsAFailure() {
        Bench bench;
        const QString wav = bench.wav(u"a.wav"_s);
        bench.checksum.options().set(checksumOptions().command, Command::Create);
        QVERIFY(QDir().mkdir(bench.path(u"folder.md5"_s)));
        bench.prompts.savePath = bench.path(u"folder.md5"_s);
        for (const ChecksumKind kind : {ChecksumKind::Md5, ChecksumKind::St5}) {
            bench.checksum.options().set(checksumOptions().kind, kind);
            addFiles(bench.checksum, {wav});
            bench.prompts.answers = {true};
            bench.run(bench.checksum);
        }
        bench.prompts.answers = {true};
        QCOMPARE(bench.failed, (QStringList{u"Creating MD5"_s, u"Create ST5"_s}));
        QVERIFY(bench.reports.value(0).contains(u"could not be written"));
        QVERIFY2(bench.reports.value(1).startsWith(u"“"), qPrintable(bench.reports.value(1)));
        QVERIFY(bench.reports.value(1).contains(u"folder.md5” could not be written"));
        bench.checksum.options().set(checksumOptions().kind, ChecksumKind::Ffp);
        addFiles(bench.checksum, {bench.flac(u"a.flac"_s)});
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Refused);
        QVERIFY(bench.prompts.alerts.value(0).contains(u"could not be written"));
        // A folder that is missing is told before anything is read.
        bench.prompts.savePath = bench.path(u"no/where.md5"_s);
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Refused);
        QVERIFY(bench.prompts.alerts.value(1).contains(u"does not exist"));
    }

    void aMissingToolIsNamed_data() {
        columns<QString, Command, ChecksumKind, QString>("tool", "command", "kind", "file");
        row("flac", u"flac"_s, Command::Test, ChecksumKind::Md5, u"a.flac"_s);
        row("metaflac", u"metaflac"_s, Command::Create, ChecksumKind::Ffp, u"a.flac"_s);
        row("shntool", u"shntool"_s, Command::Create, ChecksumKind::St5, u"a.flac"_s);
        row("flac for a list", u"flac"_s, Command::Verify, ChecksumKind::Ffp, u"a.ffp"_s);
        row("shntool for a list", u"shntool"_s, Command::Verify, ChecksumKind::St5, u"a.st5"_s);
    }
    void aMissingToolIsNamed() {
        QFETCH(QString, tool);
        QFETCH(Command, command);
        QFETCH(ChecksumKind, kind);
        QFETCH(QString, file);
        Bench bench;
        QFile::remove(bench.toolsDir.filePath(tool));
        bench.checksum.options().set(checksumOptions().command, command);
        bench.checksum.options().set(checksumOptions().kind, kind);
        addFiles(bench.checksum, {bench.written(file, "x")});
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Refused);
        QVERIFY(bench.prompts.alerts.value(0).contains(tool));
        QCOMPARE(bench.checksum.fileNames().size(), 1);
    }

    void aToolThatFailsGivesNoEntry_data() {
        columns<ChecksumKind, QString, QString, QString, QString>("kind", "script", "entries",
                                                                  "aside", "says");
        const QString killed = u"ended by signal 9 (Killed)"_s;
        const QString atB = u"case \"$*\" in *b.flac) %1;; esac"_s;
        row("FFP, killed", ChecksumKind::Ffp, atB.arg(u"\"$real\" \"$@\"; kill -9 $$"_s),
            u"a.flac c.flac"_s, u"kept"_s, killed);
        row("FFP, failed", ChecksumKind::Ffp, atB.arg(u"echo x; exit 3"_s), u"a.flac c.flac"_s,
            u"kept"_s, u"exit status 3"_s);
        row("FFP, never", ChecksumKind::Ffp, u"kill -9 $$"_s, QString(), QString(), killed);
        row("ST5, killed", ChecksumKind::St5, u"\"$real\" hash a.flac b.flac; kill -9 $$"_s,
            u"a.flac b.flac"_s, u"kept"_s, killed);
        row("ST5, cut", ChecksumKind::St5,
            u"\"$real\" hash a.flac b.flac c.flac | head -c -1; kill -9 $$"_s, u"a.flac b.flac"_s,
            u"kept"_s, killed);
        row("ST5, never", ChecksumKind::St5, u"kill -9 $$"_s, QString(), QString(), killed);
        row("FFP, not startable", ChecksumKind::Ffp, QString(), QString(), QString(),
            u"could not be started: "_s);
        row("ST5, not startable", ChecksumKind::St5, QString(), QString(), QString(),
            u"could not be started: "_s);
    }
    void aToolThatFailsGivesNoEntry() {
        QFETCH(ChecksumKind, kind);
        QFETCH(QString, script);
        QFETCH(QString, entries);
        QFETCH(QString, aside);
        QFETCH(QString, says);
        Bench bench;
        const bool isFfp = kind == ChecksumKind::Ffp;
        const QString list = bench.path(isFfp ? u"d/fingerprint.ffp.txt"_s : u"d/checksum.st5"_s);
        const QString tool = isFfp ? u"metaflac"_s : u"shntool"_s;
        QStringList files;
        for (const QString& name : {u"a.flac"_s, u"b.flac"_s, u"c.flac"_s}) {
            files << bench.flac(u"d/"_s + name, {.frames = 5000});
        }
        create(bench, kind, files);
        const QByteArray before = contents(list);
        bench.written(isFfp ? u"d/fingerprint.ffp.txt.old"_s : u"d/checksum.st5.old"_s,
                      "somebody's");
        if (script.isEmpty()) {
            QFile::remove(bench.toolsDir.filePath(tool));
            QFile broken(bench.toolsDir.filePath(tool));
            QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("#!/no/such\n") > 0);
            broken.close();
            QVERIFY(broken.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        } else {
            wrapTool(bench.toolsDir.filePath(tool), script);
        }
        QStringList failures;
        QObject::connect(
            &bench.checksum, &ChecksumTab::fingerprintsWritten, &bench.checksum,
            [&](const TaskReport& report) { failures = report.said.text().split(u'\n'); });
        create(bench, kind, files);
        const QString report = isFfp ? failures.join(u'\n') : bench.reports.join(u'\n');
        QVERIFY2(report.contains(says), qPrintable(report));
        QCOMPARE(bench.failed.size(), isFfp ? 0 : 1);
        QCOMPARE(contents(list + u".old"_s), "somebody's");
        if (aside.isEmpty()) {
            QCOMPARE(contents(list), before);
            QVERIFY(!QFile::exists(list + u".old.2"_s));
            return;
        }
        QCOMPARE(contents(list + u".old.2"_s), before);
        QVERIFY2(report.contains(list + u".old.2"_s), qPrintable(report));
        QStringList expected;
        for (const QString& name : entries.split(u' ')) {
            expected << entryOf(kind, bench.path(u"d/"_s + name), name);
        }
        QCOMPARE(QString::fromUtf8(contents(list)).section(u"\n\n"_s, 1).trimmed(),
                 expected.join(u'\n'));
    }

    void anEarlierListOutlivesACancel_data() {
        columns<ChecksumKind, QString, QString>("kind", "tool", "name");
        row("ST5", ChecksumKind::St5, u"shntool"_s, u"checksum.st5"_s);
        row("FFP", ChecksumKind::Ffp, u"metaflac"_s, u"fingerprint.ffp.txt"_s);
    }
    void anEarlierListOutlivesACancel() {
        QFETCH(ChecksumKind, kind);
        QFETCH(QString, tool);
        QFETCH(QString, name);
        Bench bench;
        const QStringList files{bench.flac(u"a.flac"_s), bench.flac(u"b.flac"_s)};
        create(bench, kind, files);
        const QByteArray before = contents(bench.path(name));
        QCOMPARE(before.count("flac\n") + before.count("flac:") + before.endsWith("flac"), 2);
        const Gate gate(bench, tool, u"printf '%1  [shntool]  a.flac\\n'"_s.arg(QString(32, u'1')));
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (gate.runs() > 0) {
                timer.stop();
                bench.workbench.queue().cancelAllTasks();
                bench.checksum.stopWriting();
                gate.open();
            }
        });
        timer.start(0);
        addFiles(bench.checksum, files);
        const CommandOutcome outcome = bench.press(bench.checksum);
        QTRY_VERIFY(!timer.isActive() && bench.workbench.queue().taskCount() == 0);
        const bool isWrittenAtOnce = kind == ChecksumKind::Ffp;
        QCOMPARE(outcome, isWrittenAtOnce ? CommandOutcome::Declined : CommandOutcome::Queued);
        QCOMPARE(contents(bench.path(name)), before);
    }

    void cancellingLeavesOneWord() {
        Bench bench;
        const QString large = bench.written(u"large"_s, "");
        QVERIFY(QFile::resize(large, qint64(1) << 40));
        const QByteArray line = QByteArray(32, '0') + " *large\n";
        bench.checksum.options().set(checksumOptions().command, Command::Verify);
        addFiles(bench.checksum, {bench.written(u"l.md5"_s, line + line)});
        addFiles(bench.checksum, {bench.written(u"waits.md5"_s, line)});
        bench.workbench.queue().maxThreadsChanged(1);
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Queued);
        bench.workbench.queue().cancelAllTasks();
        QTRY_COMPARE(idle.count(), 1);
        QCOMPARE(bench.reports, QStringList{u"Verify MD5: l.md5\nCanceled\n\n\n"_s});
        QVERIFY(bench.verdicts.empty());
    }

    void cancellingStartsNoOtherTool_data() {
        columns<QString, QString, QString>("tool", "list", "report");
        const QString zeros(32, u'0');
        row("ST5", u"shntool"_s, u"l.st5"_s, u"Verify ST5: l.st5\nCanceled\n\n"_s);
        row("FFP", u"flac"_s, u"l.ffp"_s,
            u"Verify FFP: l.ffp\na.flac : OK\nb.flac : OK\n\nVerify Flac Files in l.ffp\n"
            "Canceled\n\n"_s);
    }
    void cancellingStartsNoOtherTool() {
        QFETCH(QString, tool);
        QFETCH(QString, list);
        Bench bench;
        const QByteArray ffp =
            run(u"metaflac"_s, {u"--show-md5"_s, bench.flac(u"a.flac"_s)}).output.trimmed();
        bench.flac(u"b.flac"_s);
        bench.written(list, list.endsWith(u"ffp")
                                ? "a.flac:" + ffp + "\nb.flac:" + ffp
                                : ffp + "  [shntool]  a.flac\n" + ffp + "  [shntool]  b.flac\n");
        const Gate gate(bench, tool);
        bench.workbench.queue().maxThreadsChanged(1);
        QSignalSpy idle(&bench.workbench.queue(), &QUAVTaskQueue::becameIdle);
        bench.checksum.options().set(checksumOptions().command, Command::Verify);
        addFiles(bench.checksum, {bench.path(list)});
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Queued);
        QTRY_COMPARE(gate.runs(), 1);
        bench.workbench.queue().cancelAllTasks();
        gate.open();
        QTRY_COMPARE(idle.count(), 1);
        QTEST(bench.reports.value(0), "report");
        QCOMPARE(gate.runs(), 1);
    }

    void theEndOfTheProgramWaitsForNoTool() {
        QElapsedTimer clock;
        {
            Bench bench;
            bench.replaceTool(u"shntool"_s,
                              u"echo >'%1'; exec sleep 600\n"_s.arg(bench.path(u"up"_s)));
            bench.checksum.options().set(checksumOptions().command, Command::Verify);
            addFiles(bench.checksum,
                     {bench.written(u"l.st5"_s, QByteArray(32, '0') + "  [shntool]  a\n")});
            QCOMPARE(bench.press(bench.checksum), CommandOutcome::Queued);
            QTRY_VERIFY(QFile::exists(bench.path(u"up"_s)));
            clock.start();
        }
        QVERIFY(clock.elapsed() < quav::test::patience);
    }
};

QTEST_GUILESS_MAIN(ChecksumFailureTest)
#include "ChecksumFailureTest.moc"
