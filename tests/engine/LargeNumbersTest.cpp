// What many tasks and talkative tools may cost: handles, memory, time.

#include "engine/BackgroundTask.h"
#include "engine/QUAVAsyncNSTask.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ReportText.h"
#include "support/Rig.h"
#include "support/Table.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <ctime>
#include <memory>
#include <vector>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true; // memory and time are then the sanitizer's
#else
constexpr bool sanitized = false;
#endif

/// Ends when its work has, in the background.
class EmptyBackgroundTask : public BackgroundTask {
public:
    using BackgroundTask::BackgroundTask;

protected:
    void doStartTask() override {}
};

/// Ends within its own start.
class EmptyTask : public QUAVTask {
public:
    using QUAVTask::QUAVTask;

    void startTask() override {
        QUAVTask::startTask();
        results()->appendResults(u"done"_s, *this);
        QUAVTask::stopTask();
        reportCompletion();
    }
};

using Tasks = std::vector<std::shared_ptr<QUAVTask>>;

std::shared_ptr<QUAVTask> shellTask(Rig& rig, const QString& script) {
    return std::make_shared<QUAVAsyncNSTask>(rig.queue, rig.tools.tool(u"sh"_s),
                                             QStringList{u"-c"_s, script});
}

void runToIdle(Rig& rig, const Tasks& tasks) {
    QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
    rig.queue.addTasks(tasks);
    QTRY_VERIFY_WITH_TIMEOUT(idle.count() > 0 && rig.queue.taskCount() == 0, 240000);
}

qsizetype openDescriptors() {
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size();
}

/// A line of the process's own status, in bytes.
qint64 inStatus(const QByteArray& name) {
    QFile file(u"/proc/self/status"_s);
    file.open(QIODevice::ReadOnly);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    return 0;
}

void forgetPeakMemory() {
    QFile file(u"/proc/self/clear_refs"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("5") == 1);
}

/// The size of this process's file without a name; -1 when there is none.
qint64 unnamedFileSize() {
    for (const QFileInfo& entry :
         QDir(u"/proc/self/fd"_s).entryInfoList(QDir::AllEntries | QDir::System)) {
        if (entry.symLinkTarget().endsWith(u" (deleted)")) {
            QFile file(entry.filePath());
            return file.open(QIODevice::ReadOnly) ? file.size() : -1;
        }
    }
    return -1;
}

/// Processor seconds for so many tasks of one set through a queue.
double secondsFor(int count) {
    Rig rig;
    const auto set = std::make_shared<QUAVTaskResults>();
    set->setHasResults(false);
    Tasks tasks;
    for (int i = 0; i < count; ++i) {
        tasks.push_back(std::make_shared<EmptyTask>(rig.queue));
        tasks.back()->setResults(set);
        set->addTaskInSet(*tasks.back());
    }
    const std::clock_t start = std::clock();
    runToIdle(rig, tasks);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

} // namespace

class LargeNumbersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endedTasksKeepNoHandlesAndNoThreads_data() {
        columns<bool>("tool");
        row("tools", true);
        row("work in the background", false);
    }
    void endedTasksKeepNoHandlesAndNoThreads() {
        QFETCH(bool, tool);
        Rig rig;
        const auto make = [&](int count) {
            Tasks tasks;
            std::generate_n(std::back_inserter(tasks), count, [&]() -> std::shared_ptr<QUAVTask> {
                if (tool) {
                    return shellTask(rig, u"echo said"_s);
                }
                return std::make_shared<EmptyBackgroundTask>(rig.queue);
            });
            return tasks;
        };
        const Tasks first = make(10);
        runToIdle(rig, first);
        const qsizetype descriptors = openDescriptors();
        const qint64 mapped = inStatus("VmSize");
        const Tasks many = make(300);
        runToIdle(rig, many);
        QCOMPARE(openDescriptors(), descriptors);
        // The stack of a thread that nobody has joined is 8 MiB of addresses.
        constexpr qint64 mostMapped = qint64(500) << 20;
        QVERIFY(sanitized || inStatus("VmSize") - mapped < mostMapped);
    }

    void whatAToolPrintsIsKeptButNotInMemory_data() {
        columns<QString, QString, QString>("printer", "beginning", "ending");
        row("lines", "yes 'a line of seventy-one bytes, its line end among them, and no one more.'",
            "a line of", "no one more.\n");
        row("no line end", "yes '€€€€€€€€€€€€€€€€€€€€€' | tr -d '\\n'", "€€€", "€€€");
        row("overwritten without end", "yes '12% done' | tr '\\n' '\\r'", "", "12% done");
    }
    void whatAToolPrintsIsKeptButNotInMemory() {
        QFETCH(QString, printer);
        QFETCH(QString, beginning);
        QFETCH(QString, ending);
        const qint64 bytes = sanitized ? 6390000 : 31950000; // whole lines and characters
        Rig rig;
        const auto task = shellTask(rig, u"%1 | head -c %2"_s.arg(printer).arg(bytes));
        forgetPeakMemory();
        const qint64 before = inStatus("VmHWM");
        runToIdle(rig, {task});
        const ReportText report = task->results()->reportOf(*task);
        qint64 read = 0;
        report.read([&read](const QByteArray& piece) { read += piece.size(); });
        QVERIFY(sanitized || inStatus("VmHWM") - before < qint64(24) << 20);
        QCOMPARE(read, report.size());
        QCOMPARE(report.size(), beginning.isEmpty() ? ending.size() : bytes);
        QVERIFY(report.beginning(100).startsWith(beginning));
        QVERIFY(report.ending(100).endsWith(ending));
    }

    void aReportIsWholeWhereverItLies_data() {
        columns<QString>("place");
        row("in memory", "");
        row("on the disk", "file");
        row("on a disk that takes nothing", "no such folder");
    }
    void aReportIsWholeWhereverItLies() {
        QFETCH(QString, place);
        const QTemporaryDir folder;
        const QByteArray earlier = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(place == u"file" ? folder.path() : place));
        ReportText report;
        if (!place.isEmpty()) {
            report = ReportText(std::make_shared<SpillFile>());
        }
        QString expected;
        for (int i = 0; i < 30000; ++i) {
            const QString some = u"%1 ä€𝄞\n"_s.arg(i);
            report.append(some);
            expected += some;
        }
        const ReportText earlierCopy = report;
        report.append(QString(300000, u'ß')); // more than a piece, and at once
        report.append(earlierCopy);
        report.putAway();
        qputenv("TMPDIR", earlier);
        QCOMPARE(earlierCopy.text(), expected);
        expected += QString(300000, u'ß') + expected;
        QCOMPARE(report.text(), expected);
        QCOMPARE(report.size(), expected.toUtf8().size());
        report.read([&](const QByteArray& piece) {
            QVERIFY(piece.size() <= 65536 && QUtf8StringView(piece).isValidUtf8());
        });
        QVERIFY(expected.startsWith(report.beginning(99999)));
        QVERIFY(expected.endsWith(report.ending(99999)));
        QVERIFY(report.beginning(99999).toUtf8().size() > 99990);
        QCOMPARE(unnamedFileSize() > 0, place == u"file");
        QVERIFY(QDir(folder.path()).isEmpty());
        const_cast<ReportText&>(earlierCopy).clear();
        report.clear();
        QCOMPARE(unnamedFileSize(), place == u"file" ? 0 : -1);
    }

    void thePlaceOfATaskIsFoundAtOnceAmongMany() {
        constexpr int few = 2000;
        constexpr int times = 50;
        secondsFor(few); // the first one also pays for what is set up once
        const double base = std::min(secondsFor(few), secondsFor(few));
        const double ratio = secondsFor(few * times) / base;
        QVERIFY2(sanitized || ratio < 2.5 * times, qPrintable(QString::number(ratio)));
    }

    void warningsBeyondAFewAreCounted() {
        Rig rig;
        const auto task = std::make_shared<EmptyTask>(rig.queue);
        for (int i = 0; i < 1050; ++i) {
            task->addWarning(QString::number(i) + QString(1 << 20, u'!'));
        }
        const QStringList lines = task->warnings();
        QCOMPARE(lines.size(), 51);
        QVERIFY(lines[49].startsWith(u"49!") && lines[49].size() < 6000);
        QCOMPARE(lines.last(), u"and %L1 more that are not shown"_s.arg(1000));
    }
};

QTEST_GUILESS_MAIN(LargeNumbersTest)
#include "LargeNumbersTest.moc"
