#pragma once

#include "engine/QUAVTask.h"
#include "support/Rig.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

namespace quav::test {

/// Runs until the test ends it.
class HeldTask : public QUAVTask {
public:
    explicit HeldTask(TaskHost& queue, const QString& name = {}) : QUAVTask(queue) {
        setTitle(name);
    }

    void stopTask() override {
        QUAVTask::stopTask();
        reportCompletion();
    }

    void fail() {
        setError(true);
        stopTask();
    }
};

using Held = std::vector<std::shared_ptr<HeldTask>>;

inline Held heldTasks(Rig& rig, int count) {
    Held tasks;
    for (int i = 0; i < count; ++i) {
        tasks.push_back(std::make_shared<HeldTask>(rig.queue, QString::number(i)));
    }
    return tasks;
}

inline void add(Rig& rig, const Held& tasks) {
    rig.queue.addTasks({tasks.begin(), tasks.end()});
}

inline void complete(Rig& rig, const std::shared_ptr<HeldTask>& task) {
    QSignalSpy finished(&rig.queue, &QUAVTaskQueue::taskFinished);
    task->stopTask();
    QTRY_COMPARE(finished.count(), 1);
}

inline QStringList shownRows(Rig& rig) {
    QStringList rows;
    for (int row = 0; row < rig.queue.rows().rowCount(); ++row) {
        rows << rig.queue.rows().taskAt(row)->title();
    }
    return rows;
}

} // namespace quav::test
