#include "shntool/Child.h"

#include "audio/pcm/Failure.h"

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
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

class FileActions {
public:
    FileActions() { ::posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void silence(int fd) {
        ::posix_spawn_file_actions_addopen(&actions_, fd, "/dev/null", O_RDWR, 0);
    }
    void use(int fd, int as) { ::posix_spawn_file_actions_adddup2(&actions_, fd, as); }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

// Signals that we ignore or hold would be ignored or held there, too, and a program that writes to
// a closed pipe would not end.
class Attributes {
public:
    Attributes() {
        ::posix_spawnattr_init(&attributes_);
        sigset_t usual;
        sigemptyset(&usual);
        sigaddset(&usual, SIGPIPE);
        sigaddset(&usual, SIGXFSZ);
        ::posix_spawnattr_setsigdefault(&attributes_, &usual);
        sigset_t none;
        sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

} // namespace

Child::Child(const std::vector<std::string>& command, Pipe pipe) {
    extendPath();
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(Failure::Kind::Read, std::generic_category().message(errno));
    }
    pcm::UniqueFd reading(ends[0]);
    pcm::UniqueFd writing(ends[1]);
    FileActions actions;
    const bool isInput = pipe == Pipe::ToInput;
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        actions.silence(fd);
    }
    actions.use(isInput ? reading.get() : writing.get(), isInput ? STDIN_FILENO : STDOUT_FILENO);

    std::vector<std::string> words = command;
    std::vector<char*> arguments(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), arguments.begin(),
                   [](std::string& word) { return word.data(); });
    const Attributes attributes;
    const int error = ::posix_spawnp(&process_, arguments.front(), actions.get(), attributes.get(),
                                     arguments.data(), environ);
    if (error != 0) {
        process_ = 0;
        throw Failure(Failure::Kind::Read, "cannot run program: [" + command.front() +
                                               "]: " + std::generic_category().message(error));
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
