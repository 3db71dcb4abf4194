#include "engine/ClaimedFolders.h"
#include "engine/NSTaskWrapperSync.h"
#include "engine/OutputGuard.h"
#include "engine/QUAVAsyncNSTask.h"
#include "engine/QUAVAsyncNSTaskFileOutputRedirection.h"
#include "engine/QUAVTaskResults.h"
#include "engine/Util.h"
#include "support/AudioFixtures.h"
#include "support/Rig.h"
#include "support/Table.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <latch>
#include <unistd.h>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

/// Runs a line of shell and keeps the pieces that it was given.
class ShellTask : public QUAVAsyncNSTask {
public:
    ShellTask(TaskHost& queue, const QString& script)
        : QUAVAsyncNSTask(queue, queue.toolsFolder().tool(u"sh"_s), {u"-c"_s, script}) {}

    QStringList pieces;
    bool cleanedUp = false;
    bool doneDuringCleanup = true;

protected:
    void processTaskOutput(const QString& text) override {
        pieces << text;
        QUAVAsyncNSTask::processTaskOutput(text);
    }
    void cleanup() override {
        cleanedUp = true;
        doneDuringCleanup = isDone();
    }
};

/// Runs until it is killed, and then cleans up when the gate is open.
class GatedTask : public QUAVAsyncNSTask {
public:
    GatedTask(TaskHost& queue, std::latch& gate, std::atomic<int>& cleanedUp)
        : QUAVAsyncNSTask(queue, queue.toolsFolder().tool(u"sh"_s), {u"-c"_s, u"exec sleep 600"_s}),
          gate_(gate), cleanedUp_(cleanedUp) {}

protected:
    void cleanup() override {
        gate_.wait();
        ++cleanedUp_;
    }

private:
    std::latch& gate_;
    std::atomic<int>& cleanedUp_;
};

qsizetype threadCount() {
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

void runToIdle(Rig& rig, const std::shared_ptr<QUAVTask>& task) {
    QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
    rig.queue.addTask(task);
    QTRY_COMPARE(idle.count(), 1);
}

} // namespace

class ToolRunnerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aToolEndsAsItsStatusSays_data() {
        columns<QString, bool, QString>("script", "fails", "report");
        row("nothing printed and 0", "true", false, "");
        row("message and 1", "echo no good; exit 1", true, "no good\n");
        row("both streams in order", "echo one; echo two >&2; echo three", false,
            "one\ntwo\nthree\n");
        row("killed by a signal", "kill -9 $$", true, "");
        row("split UTF-8", "printf 'Gr\\303'; sleep 0.05; printf '\\274\\303\\237e\\n'", false,
            "Grüße\n");
        row("not UTF-8", "printf 'a\\n\\377\\nb\\n'", false, "a\nb\n");
        row("overwritten progress", "printf 'f: 10%%\\b\\b\\b20%%\\b\\b\\bok \\n'", false,
            "f: ok\n");
        row("no line end", "printf end", false, "end");
        row("asks on standard input", "read answer || echo none", false, "none\n");
    }
    void aToolEndsAsItsStatusSays() {
        QFETCH(QString, script);
        Rig rig;
        const auto task = std::make_shared<ShellTask>(rig.queue, script);
        runToIdle(rig, task);
        QTEST(task->error(), "fails");
        QTEST(task->results()->resultsOf(*task), "report");
        QTRY_COMPARE(task->row().statusLine, task->error() ? u"Error" : u"Complete");
        QVERIFY(task->cleanedUp && !task->doneDuringCleanup);
    }

    void aMillionLinesArriveWhole() {
        Rig rig;
        const auto task = std::make_shared<ShellTask>(rig.queue, u"seq 1000000"_s);
        runToIdle(rig, task);
        QCOMPARE(task->pieces.size(), 1000000);
        QCOMPARE(task->pieces.last(), u"1000000\n");
    }

    void aGrandchildThatHoldsThePipeDoesNotHoldTheTask() {
        Rig rig;
        QElapsedTimer clock;
        clock.start();
        const auto task = std::make_shared<ShellTask>(
            rig.queue, u"sleep 600 & echo $! >'%1'; echo out"_s.arg(rig.path(u"pid"_s)));
        runToIdle(rig, task);
        QVERIFY(clock.elapsed() < quav::test::patience);
        QCOMPARE(task->results()->resultsOf(*task), u"out\n");
        quav::test::run(u"kill"_s, {QString::fromLatin1(contents(rig.path(u"pid"_s))).trimmed()});
    }

    void cancellingLetsTheToolFinish() {
        Rig rig(1);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        const QString gate = rig.path(u"gate"_s);
        const auto task = std::make_shared<ShellTask>(
            rig.queue, u"mkfifo '%1'; echo up; read x <'%1'; exit 3"_s.arg(gate));
        const auto waiting = std::make_shared<ShellTask>(rig.queue, u"true"_s);
        rig.queue.addTasks({task, waiting});
        QTRY_COMPARE(task->pieces.size(), 1);
        rig.queue.cancelAllTasks();
        QTRY_COMPARE(waiting->row().mainLine, u"Canceled");
        QVERIFY(!waiting->wasLaunched() && !waiting->cleanedUp);
        QVERIFY(task->isActive());
        QVERIFY(QFile(gate).exists());
        quav::test::run(u"sh"_s, {u"-c"_s, u"echo go >'%1'"_s.arg(gate)});
        QTRY_COMPARE(idle.count(), 1);
        QVERIFY(task->isDone() && task->cancelled() && !task->error());
        QCOMPARE(task->row().mainLine, u"Canceled");
    }

    void hundredsOfToolsThatEndAtOnceCleanUpOnFewThreads_data() {
        QTest::addColumn<bool>("ends");
        row("the program goes on", false);
        row("the program ends", true);
    }
    void hundredsOfToolsThatEndAtOnceCleanUpOnFewThreads() {
        QFETCH(bool, ends);
        constexpr int count = 200;
        std::latch gate(1);
        std::atomic<int> cleanedUp = 0;
        const qsizetype others = threadCount();
        auto rig = std::make_unique<Rig>(count);
        QSignalSpy idle(&rig->queue, &QUAVTaskQueue::becameIdle);
        {
            const auto open = qScopeGuard([&] { gate.count_down(); });
            std::vector<std::shared_ptr<QUAVAsyncNSTask>> tasks;
            for (int i = 0; i < count; ++i) {
                tasks.push_back(std::make_shared<GatedTask>(rig->queue, gate, cleanedUp));
            }
            rig->queue.addTasks({tasks.begin(), tasks.end()});
            rig->queue.cancelAllTasks();
            rig->queue.killTools();
            QTRY_VERIFY(std::all_of(tasks.begin(), tasks.end(),
                                    [](const auto& task) { return task->exitStatus(); }));
            QVERIFY2(threadCount() - others <= WorkPool::defaultThreads(),
                     QByteArray::number(threadCount() - others).constData());
        }
        if (ends) {
            rig.reset();
        } else {
            QTRY_COMPARE(idle.count(), 1);
        }
        QCOMPARE(cleanedUp, count);
    }

    void aQueueThatGoesLeavesNoToolBehind() {
        QByteArray pid;
        {
            Rig rig;
            const auto task = std::make_shared<ShellTask>(rig.queue, u"echo $$; sleep 1000"_s);
            rig.queue.addTask(task);
            QTRY_COMPARE(task->pieces.size(), 1);
            pid = task->pieces[0].trimmed().toLatin1();
        }
        QVERIFY(!QFile::exists(u"/proc/%1"_s.arg(QString::fromLatin1(pid))));
    }

    void aHookThatThrowsFailsItsTask() {
        class Throwing : public ShellTask {
        public:
            using ShellTask::ShellTask;

        protected:
            void processTaskOutput(const QString& /*text*/) override {
                throw std::runtime_error("cannot read this");
            }
        };
        Rig rig;
        const auto task = std::make_shared<Throwing>(rig.queue, u"echo out"_s);
        runToIdle(rig, task);
        QVERIFY(task->error());
        QVERIFY(task->results()->resultsOf(*task).contains(u"cannot read this"));
    }

    void aMissingToolFailsWithItsName() {
        Rig rig;
        const auto task = std::make_shared<QUAVAsyncNSTask>(
            rig.queue, rig.tools.tool(u"no-such-tool"_s), QStringList());
        QVERIFY_EXCEPTION_THROWN(rig.queue.addTask(task), ToolLaunchError);
        QTRY_COMPARE(task->row().statusLine, u"Error");
        QVERIFY(task->results()->results().contains(u"no-such-tool"));
        QTRY_COMPARE(rig.queue.taskCount(), 0);
    }

    void theEnvironmentIsTheUsersAndTheToolsFolder() {
        qputenv("POSIXLY_CORRECT", "1");
        qputenv("LC_ALL", "C");
        Rig rig;
        const QString path = qEnvironmentVariable("PATH");
        const QString more = rig.path(u"more"_s);
        const auto task = std::make_shared<ShellTask>(
            rig.queue, u"echo \"$PATH|$NSUnbufferedIO|$POSIXLY_CORRECT|$LC_ALL|\"; pwd"_s);
        task->appendToPATH(more);
        task->setDirectory(rig.folder.path());
        runToIdle(rig, task);
        qunsetenv("POSIXLY_CORRECT");
        qputenv("LC_ALL", "C.UTF-8");
        QCOMPARE(
            task->results()->resultsOf(*task),
            u"%1:%2:%3|YES||C.UTF-8|\n%4\n"_s.arg(path, rig.tools.path(), more, rig.folder.path()));
    }

    void theDescriptionQuotesEveryArgument() {
        Rig rig;
        const QUAVAsyncNSTask task(rig.queue, u"/bin/tool"_s, {u"-x"_s, u"a b"_s});
        QCOMPARE(task.description(), u"\"/bin/tool\"\n \"-x\"\n \"a b\"\n ");
    }

    void aReportGoesToItsFile() {
        Rig rig;
        QSignalSpy windows(&rig.queue, &QUAVTaskQueue::outputWindowRequested);
        const QString file = rig.path(u"größe.txt"_s);
        const auto task = std::make_shared<QUAVAsyncNSTaskFileOutputRedirection>(
            file, rig.queue, rig.tools.tool(u"sh"_s), QStringList{u"-c"_s, u"echo über"_s});
        task->setSubTitle(u"Reading"_s);
        runToIdle(rig, task);
        QCOMPARE(contents(file), QByteArray("über\n\n"));
        QCOMPARE(windows.count(), 0);
    }

    void aSynchronousRunReturnsEverything() {
        const Rig rig;
        NSTaskWrapperSync run(rig.tools, rig.tools.tool(u"sh"_s),
                              {u"-c"_s, u"echo ä; echo b >&2; exit 4"_s});
        QCOMPARE(run.runTask(), u"ä\nb\n");
        QCOMPARE(run.output(), u"ä\nb\n");
    }

    void piecesDoNotDependOnTheCuts() {
        const QByteArray bytes = "\nflac 1.4.2\nbig ü.flac: 61% complete\b\b\b\b\b\b\b\b\b\b\b\b"
                                 "99% complete\b\b\b\b\b\b\b\b\b\b\b\bdone         \n"
                                 "a\r\n\r 17%\r 19%\rtail";
        const QStringList expected{
            u"\n"_s,
            u"flac 1.4.2\n"_s,
            u"big ü.flac: 61% complete"_s,
            QString(12, u'\b') + u"99% complete"_s,
            QString(12, u'\b') + u"done         \n"_s,
            u"a\r\n"_s,
            u"\r 17%"_s,
            u"\r 19%"_s,
            u"\rtail"_s,
        };
        for (qsizetype cut = 0; cut <= bytes.size(); ++cut) {
            ToolOutputReader pieces;
            QStringList got = pieces.feed(bytes.left(cut));
            got << pieces.feed(bytes.mid(cut));
            got << pieces.finish();
            QCOMPARE(got, expected);
        }
        TerminalText terminal;
        QString shown;
        for (const QString& piece : expected) {
            shown += terminal.feed(piece);
        }
        QCOMPARE(shown, u"\nflac 1.4.2\nbig ü.flac: done\na\n");
        QCOMPARE(terminal.finish(), u"tail");
    }

    void temporaryNames() {
        const QTemporaryDir folder;
        const QString first = Util::generateTempFileName(folder.path(), u"wav"_s);
        const QString second = Util::generateTempFileName(folder.path(), u"wav"_s);
        const QString pattern = Util::generateTempFileName2(folder.path(), u"wav"_s);
        QVERIFY(first != second);
        QVERIFY(QFile::exists(first) && QFile::exists(second) && !QFile::exists(pattern));
        QVERIFY(quavEndsWith(pattern, u"-XXXXXXXX.wav"_s));
        const qsizetype kept = pattern.size() - 12;
        QCOMPARE(first.left(kept), pattern.left(kept));
        // One character in 62 is an X by chance; none is in five names.
        QSet<qsizetype> left{0, 1, 2, 3, 4, 5, 6, 7};
        for (int i = 0; i < 5; ++i) {
            const QString name = Util::generateTempFileName(folder.path(), u"wav"_s);
            left.removeIf([&](qsizetype at) { return name[kept + at] != u'X'; });
        }
        QVERIFY(left.isEmpty());
        QVERIFY(
            QRegularExpression(u"^/.*/Quav-[0-9a-f]{8}-X{8}\\.wav$"_s).match(pattern).hasMatch());
        QVERIFY_EXCEPTION_THROWN(Util::generateTempFileName(folder.path(), {}),
                                 std::invalid_argument);
        QVERIFY_EXCEPTION_THROWN(Util::generateTempFileName(u"/no/such/folder"_s, u"wav"_s),
                                 std::system_error);
        QVERIFY(quavStartsWith(u"abcdef"_s, u"abc"_s));
        QVERIFY(!quavStartsWith(u"abcdef"_s, {}));
        QVERIFY(!quavEndsWith(u"abcdef"_s, {}));
    }

    void temporaryNamesTellTheLogin_data() {
        columns<QByteArray, QString>("session", "number");
        row("numbered", QByteArray("108587"), "0001a82b");
        row("named", QByteArray("c2"), "8529db20");
        row("none", QByteArray(), u"%1"_s.arg(getuid(), 8, 16, QChar(u'0')));
    }
    void temporaryNamesTellTheLogin() {
        QFETCH(QByteArray, session);
        const QByteArray before = qgetenv("XDG_SESSION_ID");
        qputenv("XDG_SESSION_ID", session);
        QTEST(Util::generateTempFileName2(u"/tmp"_s, u"wav"_s).section(u'-', 1, 1), "number");
        qputenv("XDG_SESSION_ID", before);
    }

    void deletingFollowsTheSetting_data() {
        QTest::addColumn<int>("trashOrDelete");
        row("for good", 0);
        row("to the trash", 1);
    }
    void deletingFollowsTheSetting() {
        QFETCH(int, trashOrDelete);
        Rig rig;
        // The trash of the home file system is only used for files that lie on it.
        qputenv("XDG_DATA_HOME", rig.path(u"data"_s).toUtf8());
        rig.settings.set(keys::trashOrDelete, trashOrDelete);
        const QString file = rig.path(u"a b.wav"_s);
        QVERIFY(quav::test::writeWav(file));
        Util::deleteFile(file, rig.settings, rig.desktop);
        QVERIFY(!QFile::exists(file));
        QCOMPARE(QFile::exists(rig.path(u"data/Trash/files/a b.wav"_s)), trashOrDelete != 0);
        qunsetenv("XDG_DATA_HOME");
    }

    void anOutputIsWholeOrNotThere_data() {
        columns<bool, bool, bool, QByteArray>("existed", "overwrite", "commits", "left");
        row("new, succeeds", false, false, true, QByteArray("new"));
        row("new, fails", false, false, false, QByteArray());
        row("overwritten, succeeds", true, true, true, QByteArray("new"));
        row("overwritten, fails", true, true, false, QByteArray("old"));
        row("not ours, fails", true, false, false, QByteArray("old"));
    }
    void anOutputIsWholeOrNotThere() {
        QFETCH(bool, existed);
        QFETCH(bool, overwrite);
        QFETCH(bool, commits);
        const QTemporaryDir folder;
        const QString output = folder.filePath(u"out.flac"_s);
        const auto write = [&](const char* text) {
            QFile file(output);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
        };
        if (existed) {
            write("old");
        }
        {
            ClaimedFolders claims(folder.filePath(u"state"_s));
            OutputGuard guard(
                output, folder.filePath(u"source.wav"_s),
                overwrite ? OutputGuard::Existing::Overwrite : OutputGuard::Existing::Keep, claims);
            QVERIFY(!guard.producedHere());
            if (!existed || overwrite) {
                write("new");
                QVERIFY(guard.producedHere());
            }
            if (commits) {
                guard.commit();
            }
        }
        QTEST(contents(output), "left");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(),
                 contents(output).isEmpty() ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(ToolRunnerTest)
#include "ToolRunnerTest.moc"
