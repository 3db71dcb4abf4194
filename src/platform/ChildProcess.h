#pragma once

#include "platform/ChildCommand.h"
#include "platform/FileDescriptor.h"
#include "platform/Interface.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <sys/types.h>
#include <tl/expected.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QSocketNotifier;

namespace quav {

/// Makes sure that the exit status of children can be had, whatever the program that started us
/// does with its own. Called once, at the start.
void expectChildren();

/// One child process whose standard output and standard error share one pipe, whose standard input
/// is the null device, and which inherits nothing else. It leads a process group of its own, so
/// that Ctrl-C on a terminal reaches us and not the tools: whether they stop is our decision.
///
/// Made by `startChild` and watched through a process descriptor, and not with Qt's process class:
/// the start costs no copy of our own address space, a failed one is known at once, no child
/// outlives us, and thread checkers keep their footing.
class ChildProcess : public QObject {
    Q_OBJECT

public:
    explicit ChildProcess(QObject* parent = nullptr);
    /// Kills the child if it still runs.
    ~ChildProcess() override;

    /// Starts the child, once in the life of the object; the error says in the system's words why
    /// it could not be started. The child dies with the calling thread.
    tl::expected<void, QString> start(const ChildCommand& command);

    bool isRunning() const { return pid_ > 0; }

    /// Its number while it runs.
    pid_t pid() const { return pid_; }

    /// How many bytes it had written when it ended.
    std::uint64_t bytesWritten() const { return bytesWritten_; }

    /// Sends a signal to the child and its own children; without effect on one that has ended.
    void signal(int number);

Q_SIGNALS:
    /// The next bytes from the pipe, in order, cut wherever the system cut them.
    void outputArrived(const QByteArray& bytes);

    /// The child has exited and everything that it wrote has been delivered. The status is the
    /// exit status, or 128 plus the signal's number for a child that a signal ended. A grandchild
    /// that still holds the pipe does not keep this back.
    void ended(int exitStatus);

private:
    void readSome();
    void childExited();

    pid_t pid_ = 0;
    std::uint64_t bytesWritten_ = 0;
    FileDescriptor output_;
    FileDescriptor process_;
    std::unique_ptr<QSocketNotifier> outputNotifier_;
    std::unique_ptr<QSocketNotifier> exitNotifier_;
};

/// Is told of the children that `runToEnd` runs, on the thread that runs them.
class ChildKeeper : public Interface {
public:
    /// The child has been started.
    virtual void entered(pid_t child) = 0;
    /// The child has ended; its number is still its own.
    virtual void left(pid_t child) = 0;
};

/// The children that `runToEnd` runs for one owner, so that another thread can end them.
class RunningChildren : public ChildKeeper {
public:
    /// Sends the signal to every child that runs now, and to those that are still to come.
    void signal(int number);

    void entered(pid_t child) override;
    void left(pid_t child) override;

private:
    std::mutex mutex_;
    std::vector<pid_t> children_;
    int signal_ = 0;
};

/// Runs a command to its end on the calling thread, which may be any thread, and hands over what it
/// prints on either stream as it comes. Gives the exit status, as `ChildProcess::ended` does; the
/// error says why it could not be started.
tl::expected<int, QString> runToEnd(const ChildCommand& command, ChildKeeper& running,
                                    const std::function<void(const QByteArray&)>& outputArrived);

} // namespace quav
