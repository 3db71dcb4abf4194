#pragma once

#include "platform/FileDescriptor.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <sys/types.h>
#include <tl/expected.hpp>

namespace quav {

/// How a child process is to be started. There is no shell: the arguments reach the program as
/// they stand here.
struct ChildCommand {
    QString program;       ///< full path of the executable
    QStringList arguments; ///< in order, without the program's name
    QProcessEnvironment environment;
    QString currentDirectoryPath; ///< empty: inherited

    /// Adds a folder at the end of PATH.
    void appendToPath(const QString& folder);
};

/// A child process that has begun its program.
struct StartedChild {
    pid_t pid;
    FileDescriptor output; ///< what it writes to standard output and standard error is read here
};

/// Starts a child process whose standard input is the null device, which inherits nothing beside
/// its three standard streams, and which leads a process group of its own. The error says in the
/// system's words why it could not be started.
///
/// The child never outlives us: the system kills it when the thread that started it ends, however
/// that comes about. So the calling thread has to live as long as the child is wanted.
tl::expected<StartedChild, QString> startChild(const ChildCommand& command);

/// Sends a signal to a child that `startChild` has started, and to all of its own children that
/// are still in its group. The child must not have been reaped.
void signalChild(pid_t child, int number);

} // namespace quav
