#include "shntool/Child.h"

#include "audio/pcm/Failure.h"

#include <sys/prctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quav::shntool {

using pcm::Failure;

namespace {

// The codec tools lie beside this one: they are found even when that folder is not on the PATH.
void extendPath() {
    static const bool isDone = [] {
        std::array<char, PATH_MAX> self{};
        const ssize_t length = ::readlink("/proc/self/exe", self.data(), self.size() - 1);
        const std::string program(self.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
        const std::size_t slash = program.rfind('/');
        const char* const path = std::getenv("PATH");
        if (slash != std::string::npos && slash > 0) {
            const std::string before = path != nullptr ? path + std::string(":") : "";
            ::setenv("PATH", (before + program.substr(0, slash)).c_str(), 1);
        }
        return true;
    }();
    static_cast<void>(isDone);
}

// What the new process does before it becomes another program. Only what is safe between a fork and
// that may be called.
struct Start {
    char* const* arguments = nullptr;
    int end = -1; // of the pipe
    int as = -1;  // the standard descriptor it becomes
    int report = -1;
    pid_t parent = 0;

    [[noreturn]] void run() const {
        // The program must not outlive us, however we end.
        const bool isAlone = ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && ::getppid() != parent;
        if (!isAlone) {
            restoreSignals();
            redirect();
            ::execvp(arguments[0], arguments);
        }
        const int error = errno;
        static_cast<void>(::write(report, &error, sizeof error));
        ::_exit(127);
    }

private:
    // Signals that we ignore or hold would be ignored or held there, too, and a program that writes
    // to a closed pipe would not end. Our handlers must not run there.
    static void restoreSignals() {
        for (const int signal : {SIGPIPE, SIGXFSZ}) {
            ::signal(signal, SIG_DFL);
        }
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
            if (::signal(signal, SIG_DFL) == SIG_IGN) {
                ::signal(signal, SIG_IGN); // as whoever called us wants it (nohup)
            }
        }
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
    }

    void redirect() const {
        const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
        for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::dup2(fd == as ? end : nothing, fd);
        }
    }
};

// Returns the process, or 0 with errno.
pid_t start(const std::vector<std::string>& command, int end, int as) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), arguments.begin(),
                   [](std::string& word) { return word.data(); });
    std::array<int, 2> reports{};
    if (::pipe2(reports.data(), O_CLOEXEC) != 0) {
        return 0;
    }
    const pcm::UniqueFd reading(reports[0]);
    pcm::UniqueFd writing(reports[1]);
    const Start child{arguments.data(), end, as, writing.get(), ::getpid()};
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t process = ::fork();
    if (process == 0) {
        child.run();
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    writing = pcm::UniqueFd();
    int error = process < 0 ? errno : 0;
    if (process > 0 && ::read(reading.get(), &error, sizeof error) > 0) {
        ::waitpid(process, nullptr, 0);
    }
    errno = error;
    return error == 0 ? process : 0;
}

} // namespace

Child::Child(const std::vector<std::string>& command, Pipe pipe) {
    extendPath();
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(Failure::Kind::Read, std::generic_category().message(errno));
    }
    pcm::UniqueFd reading(ends[0]);
    pcm::UniqueFd writing(ends[1]);
    const bool isInput = pipe == Pipe::ToInput;
    process_ = start(command, isInput ? reading.get() : writing.get(),
                     isInput ? STDIN_FILENO : STDOUT_FILENO);
    if (process_ == 0) {
        throw Failure(Failure::Kind::Read, "cannot run program: [" + command.front() +
                                               "]: " + std::generic_category().message(errno));
    }
    pipe_ = std::move(isInput ? writing : reading);
}

Child::~Child() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        wait();
    }
}

int Child::wait() {
    pipe_ = pcm::UniqueFd();
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(process_, &status, 0)) < 0 && errno == EINTR) {
    }
    process_ = 0;
    if (ended < 0) {
        return 127; // Nobody can tell, so it is no success.
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<std::string> splitWords(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::vector<std::string> withFile(std::vector<std::string> command, const std::string& file) {
    constexpr std::string_view placeholder = "%f";
    // Lest it be taken for an option.
    const std::string name = file.starts_with('-') ? "./" + file : file;
    for (std::string& word : command) {
        for (std::size_t at = 0; (at = word.find(placeholder, at)) != std::string::npos;
             at += name.size()) {
            word.replace(at, placeholder.size(), name);
        }
    }
    return command;
}

} // namespace quav::shntool
