#include "engine/BackgroundTask.h"
#include "engine/HeldTask.h"
#include "engine/QUAVAsyncNSTask.h"
#include "engine/QUAVTask.h"
#include "engine/QUAVTaskResults.h"
#include "engine/StallWatch.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace quav;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

/// Has nothing to do and ends within its own start.
class EmptyTask : public HeldTask {
public:
    using HeldTask::HeldTask;

    void startTask() override {
        HeldTask::startTask();
        stopTask();
    }
};

class UnstartableTask : public HeldTask {
public:
    using HeldTask::HeldTask;

    void startTask() override { throw std::runtime_error("“missing-tool” could not be started"); }
};

/// Waits until it is cancelled and then gets into trouble.
class TroubledTask : public BackgroundTask {
public:
    TroubledTask(TaskHost& queue, QString trouble)
        : BackgroundTask(queue), trouble_(std::move(trouble)) {}

    void killTool() override {}

protected:
    void doStartTask() override {
        while (!stopRequested()) {
            std::this_thread::yield();
        }
        if (trouble_ == u"throw") {
            throw std::runtime_error("no more room");
        }
        if (trouble_ == u"reason") {
            failBecause(u"no more room"_s);
        } else {
            runTool(u"sh"_s, {u"-c"_s, u"while :; do :; done"_s}, {}, [](const QString&) {});
        }
    }

private:
    QString trouble_;
};

/// The numbers of the tasks that run, as text.
QString running(const Held& tasks) {
    QString names;
    for (const auto& task : tasks) {
        names += task->isActive() ? task->title() : QString();
    }
    return names;
}

} // namespace

class TaskQueueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsInTheOrderOfAddingUpToTheLimit() {
        Rig rig(2);
        const Held tasks = heldTasks(rig, 5);
        add(rig, tasks);
        QCOMPARE(running(tasks), u"01");
        QCOMPARE(rig.desktop.badge, 5);
        complete(rig, tasks[1]);
        QCOMPARE(running(tasks), u"02");
        complete(rig, tasks[0]);
        QCOMPARE(running(tasks), u"23");
        QCOMPARE(rig.queue.taskCount(), 3);
    }

    void aNewLimitCountsFromTheNextCompletion_data() {
        columns<int, int, QString, QString>("before", "after", "runningAtOnce", "runningThen");
        row("raised", 1, 4, "0", "1234");
        row("lowered", 3, 1, "012", "12");
    }
    void aNewLimitCountsFromTheNextCompletion() {
        QFETCH(int, before);
        QFETCH(int, after);
        QFETCH(QString, runningAtOnce);
        QFETCH(QString, runningThen);
        Rig rig(before);
        const Held tasks = heldTasks(rig, 6);
        add(rig, tasks);
        Q_EMIT rig.notifications.QUAVMaxThreadsChangedNotification(after);
        QCOMPARE(running(tasks), runningAtOnce);
        complete(rig, tasks[0]);
        QCOMPARE(running(tasks), runningThen);
    }

    void cancellingWaitingTasksMakesRoomForOneMoreEach() {
        Rig rig(2);
        const Held tasks = heldTasks(rig, 6);
        add(rig, tasks);
        QSignalSpy finished(&rig.queue, &QUAVTaskQueue::taskFinished);
        tasks[3]->cancelTask();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(running(tasks), u"012");
        QVERIFY(tasks[3]->isDone() && !tasks[3]->isActive());
        QCOMPARE(tasks[3]->row().mainLine, u"Canceled");
        QCOMPARE(tasks[3]->row().statusLine, u"Waiting...");
    }

    void aCancelledTaskHasNotFailed_data() {
        QTest::addColumn<QString>("then");
        row("failed before", "fail");
        row("throws afterwards", "throw");
        row("gives a reason afterwards", "reason");
        row("its tool is killed", "tool");
        row("its tool stalls", "stall");
        row("cannot be started", "start");
    }
    void aCancelledTaskHasNotFailed() {
        QFETCH(QString, then);
        Rig rig(1);
        rig.queue.stallWatch().setPatience({.look = 20ms, .stalled = 1min, .end = 200ms});
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        std::shared_ptr<QUAVTask> task;
        if (then == u"fail" || then == u"start") {
            task = std::make_shared<HeldTask>(rig.queue);
        } else if (then == u"tool") {
            task = std::make_shared<QUAVAsyncNSTask>(
                rig.queue, rig.tools.tool(u"sh"_s), QStringList{u"-c"_s, u"while :; do :; done"_s});
        } else {
            task = std::make_shared<TroubledTask>(rig.queue, then);
        }
        rig.queue.addTask(task);
        QCOMPARE(task->row().cancelButtonVisible, true);
        task->setError(then == u"fail");
        task->cancelTask();
        if (then == u"start") {
            task->failToStart(u"it could not be started"_s);
        }
        task->killTool();
        QTRY_COMPARE(idle.count(), 1);
        QVERIFY(task->cancelled() && !task->error());
        QCOMPARE(task->row().mainLine, u"Canceled");
        QCOMPARE(task->row().mainLineColour, TaskRow::Colour::Red);
        QCOMPARE(task->row().cancelButtonVisible, false);
        QVERIFY(shownRows(rig).isEmpty());
    }

    void theFollowUpIsQueuedOnceWhateverTheOrder() {
        std::vector<size_t> order{0, 1, 2};
        do {
            Rig rig(3);
            const auto results = std::make_shared<QUAVTaskResults>();
            const Held members = heldTasks(rig, 3);
            for (const auto& member : members) {
                member->setResults(results);
                results->addTaskInSet(*member);
            }
            const auto followUp = std::make_shared<EmptyTask>(rig.queue, u"after"_s);
            results->setTaskAfterSetDone(followUp);
            QSignalSpy finished(&rig.queue, &QUAVTaskQueue::taskFinished);
            QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
            add(rig, members);
            members[order[0]]->stopTask();
            members[order[1]]->fail();
            QTRY_COMPARE(finished.count(), 2);
            QVERIFY(!followUp->isDone());
            members[order[2]]->stopTask();
            QTRY_COMPARE(finished.count(), 4);
            QVERIFY(followUp->isDone());
            QCOMPARE(idle.count(), 1);
        } while (std::next_permutation(order.begin(), order.end()));
    }

    void cancelAllEndsHundredsOfWaitingTasksQuietly() {
        Rig rig(2);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        const Held tasks = heldTasks(rig, 502);
        add(rig, tasks);
        rig.queue.cancelAllTasks();
        QTRY_COMPARE(idle.count(), 1);
        QVERIFY(std::all_of(tasks.begin(), tasks.end(),
                            [](const auto& task) { return task->cancelled() && task->isDone(); }));
        QCOMPARE(rig.desktop.notifications.size(), 1);
        QCOMPARE(rig.queue.rows().rowCount(), 0);
        const Held next = heldTasks(rig, 3);
        add(rig, next);
        QCOMPARE(running(next), u"01");
    }

    void aTaskThatCannotStartFailsAndFreesItsSlot() {
        Rig rig(1);
        const auto broken = std::make_shared<UnstartableTask>(rig.queue, u"broken"_s);
        const Held next = heldTasks(rig, 2);
        QVERIFY_EXCEPTION_THROWN(rig.queue.addTask(broken), std::runtime_error);
        add(rig, next);
        QTRY_COMPARE(running(next), u"0");
        QVERIFY(broken->error() && broken->isDone());
        QVERIFY(broken->results()->results().contains(u"missing-tool"));
        QTRY_COMPARE(broken->row().statusLine, u"Error");
    }

    void aWaitingTaskThatCannotStartDoesNotStopTheOthers() {
        Rig rig(1);
        const Held tasks = heldTasks(rig, 2);
        const auto broken = std::make_shared<UnstartableTask>(rig.queue);
        rig.queue.addTasks({tasks[0], broken, tasks[1]});
        tasks[0]->stopTask();
        QTRY_VERIFY(tasks[1]->isActive());
        QVERIFY(broken->error());
    }

    void thousandsOfEmptyTasksLeaveTheStackAlone() {
        Rig rig(2);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        static quintptr deepest;
        deepest = std::numeric_limits<quintptr>::max();
        connect(&rig.queue, &QUAVTaskQueue::taskFinished, this, [] {
            const char here = 0;
            deepest = std::min(deepest, reinterpret_cast<quintptr>(&here));
        });
        std::vector<std::shared_ptr<QUAVTask>> tasks;
        std::generate_n(std::back_inserter(tasks), 4096,
                        [&] { return std::make_shared<EmptyTask>(rig.queue); });
        const char here = 0;
        rig.queue.addTasks(tasks);
        QTRY_COMPARE(idle.count(), 1);
        QVERIFY(reinterpret_cast<quintptr>(&here) - deepest < 100 * 1024);
    }

    void backgroundWorkReportsFromItsThread_data() {
        QTest::addColumn<bool>("throws");
        row("succeeds", false);
        row("throws", true);
    }
    void backgroundWorkReportsFromItsThread() {
        QFETCH(bool, throws);
        class Work : public BackgroundTask {
        public:
            Work(TaskHost& queue, bool throwing) : BackgroundTask(queue), throwing_(throwing) {}

        protected:
            void doStartTask() override {
                for (int percent = 0; percent <= 100; ++percent) {
                    setProgressIndicatorValue(percent);
                    push(Bar);
                }
                results()->appendResults(u"report"_s, *this);
                if (throwing_) {
                    throw std::runtime_error("no more room");
                }
            }

        private:
            bool throwing_;
        };
        Rig rig(4);
        QSignalSpy idle(&rig.queue, &QUAVTaskQueue::becameIdle);
        std::vector<std::shared_ptr<QUAVTask>> tasks;
        for (int i = 0; i < 16; ++i) {
            tasks.push_back(std::make_shared<Work>(rig.queue, throws));
        }
        tasks.back()->cancelTask();
        rig.queue.addTasks(tasks);
        QTRY_COMPARE(idle.count(), 1);
        QCOMPARE(tasks[0]->error(), throws);
        QCOMPARE(tasks[0]->row().barValue, 100.0);
        QCOMPARE(tasks[0]->results()->results().contains(u"no more room"), throws);
    }
};

QTEST_GUILESS_MAIN(TaskQueueTest)
#include "TaskQueueTest.moc"
