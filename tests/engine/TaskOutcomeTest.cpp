#include "engine/HeldTask.h"
#include "engine/QUAVTaskResults.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

/// What rows, windows and the desktop show of how tasks go and end.
class TaskOutcomeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void failedRowsStayTheLastOneOnTop() {
        Rig rig(4);
        QSignalSpy closed(&rig.queue, &QUAVTaskQueue::panelClosed);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        const Held tasks = heldTasks(rig, 4);
        add(rig, tasks);
        tasks[0]->fail();
        tasks[1]->stopTask();
        tasks[2]->fail();
        QCOMPARE(shownRows(rig).join(u""), u"0123");
        tasks[3]->stopTask();
        QTRY_COMPARE(idle.count(), 1);
        QCOMPARE(shownRows(rig).join(u""), u"20");
        QCOMPARE(tasks[0]->row().statusLine, u"Error");
        QCOMPARE(tasks[0]->row().barVisible, true);
        QCOMPARE(closed.count(), 0);
        QVERIFY(rig.desktop.notifications.isEmpty());
        QCOMPARE(rig.desktop.attentionRequests, 1);
        QCOMPARE(rig.desktop.badge, std::nullopt);

        rig.queue.removeAllErrors();
        QVERIFY(shownRows(rig).isEmpty());
        QCOMPARE(closed.count(), 1);
    }

    void tellsTheDesktopWhenEverythingIsFinished_data() {
        QTest::addColumn<bool>("offersNotifications");
        row("with notifications", true);
        row("without", false);
    }
    void tellsTheDesktopWhenEverythingIsFinished() {
        QFETCH(bool, offersNotifications);
        Rig rig(2);
        rig.desktop.offersNotifications = offersNotifications;
        QSignalSpy closed(&rig.queue, &QUAVTaskQueue::panelClosed);
        const Held tasks = heldTasks(rig, 2);
        add(rig, tasks);
        QCOMPARE(rig.desktop.sleepRequests, 1);
        QCOMPARE(rig.desktop.givenBack.size(), 1U);
        complete(rig, tasks[0]);
        QVERIFY(rig.desktop.notifications.isEmpty());
        QVERIFY(rig.desktop.suspendPrevented);
        complete(rig, tasks[1]);
        QVERIFY(!rig.desktop.suspendPrevented);
        QCOMPARE(rig.desktop.notifications, QStringList{u"Quav task(s) completed"_s});
        QCOMPARE(rig.desktop.attentionRequests, offersNotifications ? 0 : 1);
        QCOMPARE(closed.count(), 1);
        QCOMPARE(tasks[0]->row().statusLine, u"Complete");
        QCOMPARE(tasks[0]->row().mainLineColour, TaskRow::Colour::DarkGreen);
        QCOMPARE(tasks[0]->row().barVisible, false);
        add(rig, heldTasks(rig, 1));
        QCOMPARE(rig.desktop.sleepRequests, 2);
    }

    void theEndIsToldInNumbers_data() {
        columns<QString, QString, QString>("ends", "files", "line");
        row("one", "d", "o", "1 task is done.");
        row("several", "dcdcd", "", "3 tasks are done. 2 tasks were canceled.");
        row("one of each", "dc", "fmu",
            "1 task is done. 1 task was canceled. 1 file is damaged. 1 file is missing. "
            "1 file could not be read.");
        row("more of each", "d", "ffmmmuu",
            "1 task is done. 2 files are damaged. 3 files are missing. "
            "2 files could not be read.");
        row("one failed", "dfd", "", "1 task failed: 1 · 2 tasks are done.");
        row("many failed", "ffffff", "m", "6 tasks failed: 0, 1, 2, … · 1 file is missing.");
        row("all failed", "ff", "", "2 tasks failed: 0, 1");
    }
    void theEndIsToldInNumbers() {
        QFETCH(QString, ends);
        QFETCH(QString, files);
        QFETCH(QString, line);
        Rig rig(8);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        // A batch before it counts for nothing.
        add(rig, heldTasks(rig, 1));
        rig.queue.cancelAllTasks();
        QTRY_COMPARE(idle.count(), 1);
        rig.desktop.bodies.clear();
        const Held tasks = heldTasks(rig, int(ends.size()));
        const QString kinds = u"ofmu"_s;
        Verdicts verdicts;
        for (const QChar file : files) {
            verdicts.push_back({{}, {}, Verdict::Kind(kinds.indexOf(file)), {}, {}, {}});
        }
        tasks[0]->results()->appendVerdicts(verdicts, *tasks[0]);
        add(rig, tasks);
        for (int i = 0; i < ends.size(); ++i) {
            tasks[size_t(i)]->setError(ends[i] == u'f');
            ends[i] == u'c' ? tasks[size_t(i)]->cancelTask() : tasks[size_t(i)]->stopTask();
        }
        QTRY_COMPARE(idle.count(), 2);
        QCOMPARE(rig.queue.summary().line(), line);
        QCOMPARE(rig.desktop.bodies, ends.contains(u'f') ? QStringList() : QStringList(line));
    }

    void reportsListMembersInTheOrderOfRegistration() {
        Rig rig(3);
        QSignalSpy windows(&rig.queue, &QUAVTaskQueue::outputWindowRequested);
        const auto results = std::make_shared<QUAVTaskResults>();
        const Held tasks = heldTasks(rig, 3);
        for (const auto& task : tasks) {
            task->setResults(results);
            results->addTaskInSet(*task);
        }
        add(rig, tasks);
        results->appendResults(u"third"_s, *tasks[2]);
        results->appendResults(u"set"_s);
        results->appendResults(u"lost"_s, *heldTasks(rig, 1).front());
        complete(rig, tasks[2]);
        complete(rig, tasks[0]);
        QCOMPARE(windows.count(), 0);
        complete(rig, tasks[1]);
        QCOMPARE(windows.count(), 1);
        QCOMPARE(windows[0][0].value<ReportText>().text(), u"set\n\nthird\n");
        QCOMPARE(windows[0][1].toString(), u"1");
    }

    void aSetWithNothingToShowOpensNoWindow() {
        Rig rig(1);
        QSignalSpy windows(&rig.queue, &QUAVTaskQueue::outputWindowRequested);
        const Held tasks = heldTasks(rig, 2);
        add(rig, tasks);
        tasks[0]->results()->setHasResults(false);
        complete(rig, tasks[0]);
        QCOMPARE(windows.count(), 0);
        complete(rig, tasks[1]);
        QCOMPARE(windows.count(), 1);
    }

    void progressReachesTheRowsCoalesced() {
        Rig rig(1);
        const Held tasks = heldTasks(rig, 1);
        add(rig, tasks);
        QSignalSpy changed(&rig.queue.rows(), &QAbstractItemModel::dataChanged);
        for (int i = 1; i <= 1000; ++i) {
            tasks[0]->setTopTextFieldString(QString::number(i));
            tasks[0]->setProgressIndicatorValue(i / 10.0);
            tasks[0]->push(QUAVTask::StatusLine | QUAVTask::Bar);
        }
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(tasks[0]->row().statusLine, u"1000");
        QCOMPARE(tasks[0]->row().barValue, 100.0);
        QCOMPARE(tasks[0]->row().mainLine, u"0");
    }
};

QTEST_GUILESS_MAIN(TaskOutcomeTest)
#include "TaskOutcomeTest.moc"
