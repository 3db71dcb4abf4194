#include "audio/pcm/TemporaryFile.h"

#include "audio/pcm/Failure.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
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

// Whether it is a folder: its descriptor, or -1.
volatile int folderLeftOver = -1;

volatile pid_t writerOfLeftOver = 0;

// Removes the files of a folder. The functions that usually read folders may not be called by a
// handler of a signal.
void removeFiles(int folder) {
    struct Entry { // as the kernel writes them
        std::uint64_t inode;
        std::int64_t offset;
        unsigned short length;
        unsigned char type;
        char name[1]; // NOLINT(modernize-avoid-c-arrays): the kernel's form
    };
    alignas(Entry) std::array<char, 4096> entries{};
    for (int turn = 0; turn < 1000; ++turn) {
        ::lseek(folder, 0, SEEK_SET);
        const long count = ::syscall(SYS_getdents64, folder, entries.data(), entries.size());
        bool hasRemoved = false;
        for (long at = 0; at < count;) {
            const auto* const entry = reinterpret_cast<const Entry*>(entries.data() + at);
            const auto* const name = entries.data() + at + offsetof(Entry, name);
            hasRemoved = ::unlinkat(folder, name, 0) == 0 || hasRemoved;
            at += entry->length;
        }
        if (!hasRemoved) {
            return;
        }
    }
}

void removeLeftOver(int signal) {
    if (writerOfLeftOver > 0) {
        ::kill(writerOfLeftOver, SIGKILL);
        ::waitpid(writerOfLeftOver, nullptr, 0);
    }
    if (leftOver[0] != '\0' && folderLeftOver >= 0) {
        removeFiles(folderLeftOver);
        ::rmdir(leftOver.data());
    } else if (leftOver[0] != '\0') {
        ::unlink(leftOver.data());
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

void removeAtSignal(const std::string& path, int folder = -1) {
    folderLeftOver = folder;
    std::strncpy(leftOver.data(), path.c_str(), leftOver.size() - 1);
    for (const int signal : endingSignals) {
        // What the caller has made us ignore (nohup) stays ignored.
        if (::signal(signal, removeLeftOver) == SIG_IGN) {
            ::signal(signal, SIG_IGN);
        }
    }
}

void nothingLeftOver() {
    leftOver[0] = '\0';
    folderLeftOver = -1;
    writerOfLeftOver = 0;
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
                      const std::string& what) {
    const std::string start = folder + "/.quav-" + std::to_string(::getpid()) + "-";
    for (unsigned count = 0;; ++count) {
        std::string path = start + std::to_string(count);
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
                             const std::function<bool(const char*)>& make,
                             const std::string& what) {
    const SignalsHeld held;
    path_ = makeNamed(folder, make, what);
    removeAtSignal(path_);
}

TemporaryName::~TemporaryName() {
    if (!path_.empty()) {
        ::unlink(path_.c_str());
        nothingLeftOver();
    }
}

bool TemporaryName::become(const std::string& path, bool mayReplace) {
    if (!giveName(path_, path, mayReplace)) {
        return false;
    }
    ::unlink(path_.c_str()); // where it is another name for the same file
    path_.clear();
    nothingLeftOver();
    return true;
}

TemporaryFolder::TemporaryFolder(const std::string& parent, const std::string& what) {
    const SignalsHeld held;
    path_ = makeNamed(
        parent, [](const char* path) { return ::mkdir(path, 0700) == 0; }, what);
    fd_ = UniqueFd(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd_) {
        const int error = errno;
        ::rmdir(path_.c_str());
        throw Failure(Failure::Kind::Write,
                      what + ": cannot be created: " + std::generic_category().message(error));
    }
    removeAtSignal(path_, fd_.get());
}

TemporaryFolder::~TemporaryFolder() {
    const SignalsHeld held;
    removeFiles(fd_.get());
    ::rmdir(path_.c_str());
    nothingLeftOver();
}

std::string TemporaryFolder::pathOf(const std::string& name) const {
    const std::string steady =
        "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(fd_.get());
    return (::access(steady.c_str(), W_OK | X_OK) == 0 ? steady : path_) + "/" + name;
}

void TemporaryFolder::setWriter(pid_t process) {
    writerOfLeftOver = process;
}

bool giveName(const std::string& from, const std::string& to, bool mayReplace) {
    if (!mayReplace) {
        if (::link(from.c_str(), to.c_str()) == 0) {
            return true;
        }
        // Where links are unknown, nothing but a look keeps a renamed file from taking the place
        // of another.
        const int error = errno;
        if (error == EEXIST || ::access(to.c_str(), F_OK) == 0) {
            errno = EEXIST;
            return false;
        }
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
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
