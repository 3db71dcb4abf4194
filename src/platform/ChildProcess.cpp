#include "platform/ChildProcess.h"

extern "C" {
#include <sys/pidfd.h> // says nothing of C++ itself
}

#include <QFile>
#include <QSocketNotifier>

#include <sys/ioctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <utility>
#include <vector>

namespace quav {

namespace {

constexpr int signalledBase = 128;
constexpr int unknownStatus = 255;
constexpr qsizetype readBytes = 65536;
constexpr int firstInherited = 3;

struct Started {
    pid_t pid;
    FileDescriptor output;
};

/// Texts in the form in which the system takes lists of them.
class TextVector {
public:
    void add(const QByteArray& text) { texts_.push_back(text); }

    /// Valid as long as the object lives and is not added to.
    char* const* data() {
        pointers_.clear();
        for (QByteArray& text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
        return pointers_.data();
    }

private:
    std::vector<QByteArray> texts_;
    std::vector<char*> pointers_;
};

/// What happens in the child between its birth and the program.
class SpawnPlan {
public:
    SpawnPlan() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    void connectStreams(int output) {
        // An open pipe would let a tool wait for an answer for ever; a closed descriptor 0 would be
        // taken by the first file that the tool opens.
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&actions_, firstInherited);
    }

    void changeTo(const QByteArray& folder) {
        posix_spawn_file_actions_addchdir_np(&actions_, folder.constData());
    }

    void standAlone() {
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                   POSIX_SPAWN_SETPGROUP);
    }

    int run(pid_t& pid, const QByteArray& program, TextVector& arguments,
            TextVector& environment) const {
        return posix_spawn(&pid, program.constData(), &actions_, &attributes_, arguments.data(),
                           environment.data());
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

tl::expected<Started, QString> spawn(const ChildCommand& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return tl::make_unexpected(qt_error_string(errno));
    }
    FileDescriptor readEnd(ends[0]);
    const FileDescriptor writeEnd(ends[1]);

    SpawnPlan plan;
    plan.connectStreams(writeEnd.get());
    plan.standAlone();
    if (!command.workingDirectory.isEmpty()) {
        plan.changeTo(QFile::encodeName(command.workingDirectory));
    }
    const QByteArray program = QFile::encodeName(command.program);
    TextVector arguments;
    arguments.add(program);
    for (const QString& argument : command.arguments) {
        arguments.add(QFile::encodeName(argument));
    }
    TextVector environment;
    for (const QString& variable : command.environment.toStringList()) {
        environment.add(QFile::encodeName(variable));
    }
    pid_t pid = 0;
    if (const int error = plan.run(pid, program, arguments, environment); error != 0) {
        return tl::make_unexpected(qt_error_string(error));
    }
    return Started{pid, std::move(readEnd)};
}

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

void ChildCommand::appendToPath(const QString& folder) {
    const QString path = QStringLiteral("PATH");
    environment.insert(path, environment.value(path) + u':' + folder);
}

void expectChildren() {
    signal(SIGCHLD, SIG_DFL);
}

ChildProcess::ChildProcess(QObject* parent) : QObject(parent) {}

ChildProcess::~ChildProcess() {
    if (isRunning()) {
        kill(pid_, SIGKILL);
        reap(pid_);
    }
}

tl::expected<void, QString> ChildProcess::start(const ChildCommand& command) {
    auto started = spawn(command);
    if (!started) {
        return tl::make_unexpected(started.error());
    }
    process_ = FileDescriptor(pidfd_open(started->pid, 0));
    if (!process_) {
        const QString reason = qt_error_string(errno);
        kill(started->pid, SIGKILL);
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

void ChildProcess::terminate() {
    if (isRunning()) {
        kill(pid_, SIGTERM);
    }
}

void RunningChildren::signal(int number) {
    const std::lock_guard lock(mutex_);
    signal_ = number;
    for (const pid_t child : children_) {
        kill(child, number);
    }
}

void RunningChildren::entered(pid_t child) {
    const std::lock_guard lock(mutex_);
    children_.push_back(child);
    if (signal_ != 0) {
        kill(child, signal_);
    }
}

void RunningChildren::left(pid_t child) {
    const std::lock_guard lock(mutex_);
    std::erase(children_, child);
}

tl::expected<int, QString> runToEnd(const ChildCommand& command, RunningChildren& running,
                                    const std::function<void(const QByteArray&)>& outputArrived) {
    const auto started = spawn(command);
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
