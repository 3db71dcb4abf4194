#include "cli/TaskEnd.h"

#include "engine/QUAVTask.h"
#include "platform/PathNames.h"

namespace quav {

TaskEnd endOf(const QUAVTask& task) {
    TaskEnd end;
    end.source = task.source();
    end.output = task.output();
    end.title = end.source.isEmpty() ? task.title() : lastPathComponent(end.source);
    end.warnings = task.warnings();
    if (task.cancelled()) {
        end.status = TaskEnd::Status::Cancelled;
    } else if (task.error()) {
        end.status = TaskEnd::Status::Failed;
        end.error = task.reason();
    }
    return end;
}

} // namespace quav
