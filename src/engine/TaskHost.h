#pragma once

#include "platform/Interface.h"

#include <memory>

namespace quav {

class MainThread;
class QUAVTask;
class SpillFile;
class StallWatch;
class ToolsFolder;
class WorkPool;

/// What a task knows of the queue that runs it.
class TaskHost : public Interface {
public:
    /// Queues a task. Main thread only. What the task throws while being started goes on to the
    /// caller, after the task has been ended as failed.
    virtual void addTask(const std::shared_ptr<QUAVTask>& task) = 0;

    /// Told once by every task when it has stopped, on the main thread.
    virtual void taskCompleted(const std::shared_ptr<QUAVTask>& task) = 0;

    /// The row of a task has new values. Main thread only.
    virtual void rowChanged(const QUAVTask& task) = 0;

    virtual MainThread& mainThread() = 0;
    virtual const ToolsFolder& toolsFolder() const = 0;
    virtual StallWatch& stallWatch() = 0;

    /// Where tasks clean up when their tools have ended, however many of them end at once.
    virtual WorkPool& cleanupPool() = 0;

    /// Where reports go that are too long for memory. Any thread.
    virtual const std::shared_ptr<SpillFile>& spillFile() const = 0;

    /// How many tools a running task may have side by side: as many as nobody else needs, and one
    /// at least. Any thread.
    virtual int toolsAtOnce() const = 0;
};

} // namespace quav
