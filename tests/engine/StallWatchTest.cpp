#include "engine/StallWatch.h"

#include "engine/QUAVAsyncNSTask.h"
#include "support/Rig.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace quav;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using quav::test::columns;
using quav::test::Rig;
using quav::test::row;

namespace {

constexpr StallWatch::Patience impatient{.look = 20ms, .stalled = 400ms, .end = 0ms};

/// A rig with a pipe at which its tools wait; what they do is a script for bash, which finds the
/// pipe as descriptor 9 and can wait a moment without another program's help.
class WaitingRig : public Rig {
public:
    WaitingRig() {
        mkfifo(QFile::encodeName(gate_.fileName()).constData(), 0600);
        gate_.open(QIODevice::ReadWrite | QIODevice::Unbuffered);
        queue.stallWatch().setPatience(impatient);
    }

    std::shared_ptr<QUAVAsyncNSTask> start(const QString& script) {
        auto task = std::make_shared<QUAVAsyncNSTask>(
            queue, u"/bin/bash"_s,
            QStringList{u"-c"_s, u"exec 9<>'%1'; cd '%2'; %3"_s.arg(gate_.fileName(), folder.path(),
                                                                    script)});
        queue.addTask(task);
        return task;
    }

    void openGate() { gate_.write("\n"); }

private:
    QFile gate_{path(u"gate"_s)};
};

} // namespace

class StallWatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aToolThatDoesAnythingIsNotStalled_data() {
        columns<QString>("work");
        row("prints", "echo x");
        row("reads", "read -r -n 100 x </proc/cpuinfo");
        row("writes", "echo x >out");
    }
    void aToolThatDoesAnythingIsNotStalled() {
        QFETCH(QString, work);
        for (const QString& who : {u"%1"_s, u"( %1 ) & wait"_s}) {
            WaitingRig rig;
            QSignalSpy stalls(&rig.queue.stallWatch(), &StallWatch::stalled);
            // Three times as long as it may do nothing.
            const auto task = rig.start(who.arg(
                u"for ((i = 0; i < 60; ++i)); do %1; read -t 0.02 -u 9; done; true"_s.arg(work)));
            QTRY_VERIFY(task->isDone());
            QVERIFY(!task->error());
            QCOMPARE(stalls.count(), 0);
        }
    }

    void aToolThatDoesNothingIsShownAndCanBeEnded_data() {
        columns<QString>("script");
        row("waits", "read -u 9");
        row("spins", "while :; do :; done");
        row("waits for its child", "( read -u 9 ) & wait");
    }
    void aToolThatDoesNothingIsShownAndCanBeEnded() {
        QFETCH(QString, script);
        WaitingRig rig;
        QSignalSpy stalls(&rig.queue.stallWatch(), &StallWatch::stalled);
        const auto task = rig.start(script);
        QTRY_COMPARE(stalls.count(), 1);
        QVERIFY(task->row().stalled && task->isActive());
        QVERIFY2(task->row().statusLine.startsWith(u"Stalled for "),
                 qPrintable(task->row().statusLine));
        task->endStalledTool();
        QTRY_COMPARE(rig.queue.taskCount(), 0);
        QVERIFY(task->error() && !task->row().stalled);
        QVERIFY2(task->reason().startsWith(u"bash neither read, wrote nor printed"),
                 qPrintable(task->reason()));
        QCOMPARE(stalls.count(), 1);
    }

    void aToolThatGoesOnIsStalledNoMore() {
        WaitingRig rig;
        const auto task = rig.start(u"read -u 9; echo up; read -t 60 -u 9"_s);
        QTRY_VERIFY(task->row().stalled);
        rig.openGate();
        QTRY_VERIFY(!task->row().stalled);
        QCOMPARE(task->row().statusLine, u"Waiting..."_s);
        QTRY_VERIFY(task->row().stalled);
        rig.openGate();
        QTRY_COMPARE(rig.queue.taskCount(), 0);
        QVERIFY(!task->error());
    }

    void aToolIsEndedWhenItsTimeIsUp() {
        WaitingRig rig;
        rig.queue.stallWatch().setPatience({.look = 20ms, .stalled = 1min, .end = 200ms});
        QSignalSpy stalls(&rig.queue.stallWatch(), &StallWatch::stalled);
        const auto task = rig.start(u"read -u 9"_s);
        QTRY_COMPARE(rig.queue.taskCount(), 0);
        QVERIFY(task->error());
        QCOMPARE(stalls.count(), 1);
    }
};

QTEST_GUILESS_MAIN(StallWatchTest)
#include "StallWatchTest.moc"
