#include "platform/ChildCommand.h"

#include <QByteArray>
#include <QFile>

#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quav {

namespace {

constexpr int firstInherited = 3;
constexpr int notStarted = 127;

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

/// All that a child needs on its way to the program. It is made ready before the birth, since the
/// child shares our memory until it has begun the program, and must not change any.
struct Birth {
    const char* program;
    char* const* arguments;
    char* const* environment;
    const char* folder; ///< nullptr: where we are
    int output;
    int complaints; ///< where the child says why it cannot begin
    pid_t parent;
};

[[noreturn]] void complain(int to) {
    const int reason = errno;
    [[maybe_unused]] const ssize_t written = write(to, &reason, sizeof reason);
    _exit(notStarted);
}

/// Gives a descriptor a number that stands in nobody's way.
int movedUp(int descriptor) {
    return fcntl(descriptor, F_DUPFD_CLOEXEC, firstInherited + 1);
}

void forgetSignals() {
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL); // our handlers must not run in the child
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool connectStreams(int output) {
    // An open pipe would let a tool wait for an answer for ever; a closed descriptor 0 would be
    // taken by the first file that the tool opens.
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int input = nothing < 0 ? nothing : movedUp(nothing);
    return input >= 0 && dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 &&
           dup2(output, STDERR_FILENO) >= 0;
}

/// The child from its birth to the program. Calls nothing but what a signal handler may call.
[[noreturn]] void becomeProgram(const Birth& birth) {
    const int output = movedUp(birth.output);
    const int complaints = movedUp(birth.complaints);
    if (complaints < 0) {
        complain(birth.complaints);
    }
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != birth.parent) {
        _exit(notStarted); // it died before it could be said that we die with it
    }
    forgetSignals();
    if (!connectStreams(output) || (birth.folder && chdir(birth.folder) != 0) ||
        dup3(complaints, firstInherited, O_CLOEXEC) < 0) {
        complain(complaints);
    }
    closefrom(firstInherited + 1);
    execve(birth.program, birth.arguments, birth.environment);
    complain(firstInherited);
}

/// The number of the new process; -1 with the reason in errno.
pid_t giveBirth(const Birth& birth) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    // Not fork: that copies the tables of our memory, which takes the longer the more we have.
    const pid_t pid = vfork();
    if (pid == 0) {
        becomeProgram(birth);
    }
    const int reason = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = reason;
    return pid;
}

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

tl::expected<Pipe, int> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return tl::make_unexpected(errno);
    }
    return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// What the child complained of; 0 once it has begun its program.
int complaintIn(const FileDescriptor& pipe) {
    int reason = 0;
    ssize_t got = 0;
    do {
        got = read(pipe.get(), &reason, sizeof reason);
    } while (got < 0 && errno == EINTR);
    return got == sizeof reason ? reason : 0;
}

tl::expected<StartedChild, int> start(Birth& birth) {
    auto output = makePipe();
    auto complaints = makePipe();
    if (!output || !complaints) {
        return tl::make_unexpected(output ? complaints.error() : output.error());
    }
    birth.output = output->writeEnd.get();
    birth.complaints = complaints->writeEnd.get();
    const pid_t pid = giveBirth(birth);
    if (pid < 0) {
        return tl::make_unexpected(errno);
    }
    complaints->writeEnd.reset();
    if (const int reason = complaintIn(complaints->readEnd); reason != 0) {
        while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
        }
        return tl::make_unexpected(reason);
    }
    return StartedChild{pid, std::move(output->readEnd)};
}

} // namespace

void ChildCommand::appendToPath(const QString& folder) {
    const QString path = QStringLiteral("PATH");
    environment.insert(path, environment.value(path) + u':' + folder);
}

tl::expected<StartedChild, QString> startChild(const ChildCommand& command) {
    const QByteArray program = QFile::encodeName(command.program);
    const QByteArray folder = QFile::encodeName(command.currentDirectoryPath);
    TextVector arguments;
    arguments.add(program);
    for (const QString& argument : command.arguments) {
        arguments.add(QFile::encodeName(argument));
    }
    TextVector environment;
    for (const QString& variable : command.environment.toStringList()) {
        environment.add(QFile::encodeName(variable));
    }
    Birth birth{program.constData(),
                arguments.data(),
                environment.data(),
                folder.isEmpty() ? nullptr : folder.constData(),
                -1,
                -1,
                getpid()};
    return start(birth).map_error([](int reason) { return qt_error_string(reason); });
}

void signalChild(pid_t child, int number) {
    kill(-child, number);
}

} // namespace quav
