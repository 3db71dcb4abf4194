#pragma once

#include <QString>
#include <QStringList>

namespace quav {

class QUAVTask;

/// How a task ended, as it is told to the user.
struct TaskEnd {
    enum class Status { Done, Failed, Cancelled };

    Status status = Status::Done;
    QString title;
    QString source; ///< empty for a task without one file to read
    QString output; ///< empty for a task without one file to write
    QString error;  ///< the line that says why it failed
    QStringList warnings;
};

TaskEnd endOf(const QUAVTask& task);

} // namespace quav
