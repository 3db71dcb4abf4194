#include "platform/ChildProcess.h"

#include "platform/ToolActivity.h"

extern "C" {
#include <sys/pidfd.h> // says nothing of C++ itself
}

#include <QSocketNotifier>

#include <sys/ioctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <unistd.h>
#include <utility>

namespace quav {

namespace {

constexpr int signalledBase = 128;
constexpr int unknownStatus = 255;
constexpr qsizetype readBytes = 65536;

/// Reads at most so many bytes; nothing at the end and when nothing is there.
QByteArray readFrom(const FileDescriptor& descriptor, qsizetype most) {
    QByteArray bytes(most, Qt::Uninitialized);
    ssize_t got = 0;
    do {
        got = read(descriptor.get(), bytes.data(), static_cast<size_t>(most));
    } while (got < 0 && errno == EINTR);
    bytes.truncate(std::max<ssize_t>(0, got));
    return bytes;
}

/// Returns when the child has ended; its status is still there to be taken.
void waitForEnd(pid_t pid) {
    siginfo_t info;
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
}

/// Takes the exit status of a child that has ended, or waits for its end.
int reap(pid_t pid) {
    int status = 0;
    pid_t reaped = 0;
    do {
        reaped = waitpid(pid, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    if (reaped < 0) {
        return unknownStatus; // never to be taken for a success
    }
    return WIFSIGNALED(status) ? signalledBase + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

void expectChildren() {
    std::signal(SIGCHLD, SIG_DFL);
}

ChildProcess::ChildProcess(QObject* parent) : QObject(parent) {}

ChildProcess::~ChildProcess() {
    if (isRunning()) {
        signal(SIGKILL);
        reap(pid_);
    }
}

tl::expected<void, QString> ChildProcess::start(const ChildCommand& command) {
    auto started = startChild(command);
    if (!started) {
        return tl::make_unexpected(started.error());
    }
    process_ = FileDescriptor(pidfd_open(started->pid, 0));
    if (!process_) {
        const QString reason = qt_error_string(errno);
        signalChild(started->pid, SIGKILL);
        reap(started->pid);
        return tl::make_unexpected(reason);
    }
    pid_ = started->pid;
    output_ = std::move(started->output);
    outputNotifier_ = std::make_unique<QSocketNotifier>(output_.get(), QSocketNotifier::Read);
    exitNotifier_ = std::make_unique<QSocketNotifier>(process_.get(), QSocketNotifier::Read);
    connect(outputNotifier_.get(), &QSocketNotifier::activated, this, &ChildProcess::readSome);
    connect(exitNotifier_.get(), &QSocketNotifier::activated, this, &ChildProcess::childExited);
    return {};
}

void ChildProcess::readSome() {
    const QByteArray bytes = readFrom(output_, readBytes);
    if (bytes.isEmpty()) {
        outputNotifier_->setEnabled(false);
    } else {
        Q_EMIT outputArrived(bytes);
    }
}

void ChildProcess::childExited() {
    exitNotifier_->setEnabled(false);
    outputNotifier_->setEnabled(false);
    bytesWritten_ = bytesWrittenBy(pid_);
    const int status = reap(std::exchange(pid_, 0));
    // Just what lies in the pipe now: a grandchild may go on writing for ever.
    int waiting = 0;
    ioctl(output_.get(), FIONREAD, &waiting);
    if (waiting > 0) {
        Q_EMIT outputArrived(readFrom(output_, waiting));
    }
    output_.reset();
    process_.reset();
    Q_EMIT ended(status);
}

void ChildProcess::signal(int number) {
    if (isRunning()) {
        signalChild(pid_, number);
    }
}

void RunningChildren::signal(int number) {
    const std::lock_guard lock(mutex_);
    signal_ = number;
    for (const pid_t child : children_) {
        signalChild(child, number);
    }
}

void RunningChildren::entered(pid_t child) {
    const std::lock_guard lock(mutex_);
    children_.push_back(child);
    if (signal_ != 0) {
        signalChild(child, signal_);
    }
}

void RunningChildren::left(pid_t child) {
    const std::lock_guard lock(mutex_);
    std::erase(children_, child);
}

tl::expected<int, QString> runToEnd(const ChildCommand& command, ChildKeeper& running,
                                    const std::function<void(const QByteArray&)>& outputArrived) {
    const auto started = startChild(command);
    if (!started) {
        return tl::make_unexpected(started.error());
    }
    running.entered(started->pid);
    for (QByteArray bytes = readFrom(started->output, readBytes); !bytes.isEmpty();
         bytes = readFrom(started->output, readBytes)) {
        outputArrived(bytes);
    }
    // Before it is reaped, since its number may then be somebody else's.
    waitForEnd(started->pid);
    running.left(started->pid);
    return reap(started->pid);
}

} // namespace quav
