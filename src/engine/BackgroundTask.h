#pragma once

#include "engine/QUAVTask.h"
#include "platform/BackgroundWork.h"

namespace quav {

/// A task whose work runs in-process on a thread of its own: `doStartTask` there, and when it has
/// returned, the end of the task on the main thread. The work looks at `cancelled` from time to
/// time and returns early when it is set.
class BackgroundTask : public QUAVTask {
public:
    explicit BackgroundTask(TaskHost& queue);

    void startTask() override;
    void stopTask() override;
    void abandon() override;

protected:
    /// The work. What it throws makes the task fail, with the text in its report.
    virtual void doStartTask() = 0;

private:
    void finish();

    bool started_ = false;
    BackgroundWork work_;
};

} // namespace quav
