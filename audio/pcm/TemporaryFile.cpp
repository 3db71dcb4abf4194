#include "audio/pcm/TemporaryFile.h"

#include "audio/pcm/Failure.h"

#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <system_error>

namespace quav::pcm {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// The path that a signal has to take away; the first byte is 0 when there is none. A handler may
// touch nothing but such plain memory, and gets nothing handed over.
std::array<char, PATH_MAX> leftOver{};

volatile pid_t writerOfLeftOver = 0;

void removeLeftOver(int signal) {
    if (writerOfLeftOver > 0) {
        ::kill(writerOfLeftOver, SIGKILL);
        ::waitpid(writerOfLeftOver, nullptr, 0);
    }
    if (leftOver[0] != '\0') {
        ::unlink(leftOver.data());
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

void removeAtSignal(const std::string& path) {
    std::strncpy(leftOver.data(), path.c_str(), leftOver.size() - 1);
    for (const int signal : endingSignals) {
        // What the caller has made us ignore (nohup) stays ignored.
        if (::signal(signal, removeLeftOver) == SIG_IGN) {
            ::signal(signal, SIG_IGN);
        }
    }
}

std::string folderForTemporaryFiles(const std::string& beside) {
    struct stat status = {};
    const bool isFile = ::stat(beside.c_str(), &status) != 0 || S_ISREG(status.st_mode);
    if (beside != "-" && isFile) {
        return folderOf(beside);
    }
    const char* chosen = std::getenv("TMPDIR");
    return chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
}

// Gives `make` one name after the other until one is new.
std::string makeNamed(const std::string& folder, const std::function<bool(const char*)>& make,
                      const std::string& what, const std::string& ending = {}) {
    const std::string start = folder + "/.quav-" + std::to_string(::getpid()) + "-";
    for (unsigned count = 0;; ++count) {
        std::string path = start + std::to_string(count);
        path += ending;
        if (make(path.c_str())) {
            return path;
        }
        if (errno != EEXIST) {
            throw Failure(Failure::Kind::Write,
                          what + ": cannot be created: " + std::generic_category().message(errno));
        }
    }
}

} // namespace

SignalsHeld::SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : endingSignals) {
        sigaddset(&held, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
}

SignalsHeld::~SignalsHeld() {
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

TemporaryName::TemporaryName(const std::string& folder,
                             const std::function<bool(const char*)>& make, const std::string& what,
                             const std::string& ending) {
    const SignalsHeld held;
    path_ = makeNamed(folder, make, what, ending);
    removeAtSignal(path_);
}

TemporaryName::~TemporaryName() {
    if (!path_.empty()) {
        ::unlink(path_.c_str());
        release();
    }
}

void TemporaryName::setWriter(pid_t process) {
    writerOfLeftOver = process;
}

bool TemporaryName::become(const std::string& path, bool mayReplace) {
    if (!mayReplace) {
        if (::link(path_.c_str(), path.c_str()) == 0) {
            return true; // The temporary name goes with the object.
        }
        // Where links are unknown, nothing but a look keeps a renamed file from taking the place
        // of another.
        const int error = errno;
        if (error == EEXIST || ::access(path.c_str(), F_OK) == 0) {
            errno = EEXIST;
            return false;
        }
    }
    if (::rename(path_.c_str(), path.c_str()) != 0) {
        return false;
    }
    release();
    return true;
}

void TemporaryName::release() {
    path_.clear();
    leftOver[0] = '\0';
    writerOfLeftOver = 0;
}

UniqueFd unnamedFile(const std::string& beside) {
    const std::string folder = folderForTemporaryFiles(beside);
    UniqueFd fd(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
    if (!fd) {
        // Not every file system knows files without a name: the name goes at once.
        const SignalsHeld held;
        const std::string name = makeNamed(
            folder,
            [&fd](const char* path) {
                fd = UniqueFd(::open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
                return bool(fd);
            },
            folder + ": a temporary file");
        ::unlink(name.c_str());
    }
    return fd;
}

void writeAll(int fd, std::span<const std::uint8_t> bytes, const std::string& name) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno == EPIPE) {
            throw ReaderGone();
        } else if (errno != EINTR) {
            throw Failure(Failure::Kind::Write,
                          name + ": cannot be written: " + std::generic_category().message(errno));
        }
    }
}

} // namespace quav::pcm
