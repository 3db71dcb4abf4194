#include "pcm/OutputFile.h"

#include "pcm/Failure.h"
#include "pcm/TemporaryFile.h"

#include <sys/stat.h>

#include <algorithm>
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

constexpr std::size_t bufferSize = std::size_t{256} << 10;

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// The one temporary file that a signal has to take away. A handler may touch nothing but such plain
// memory; the first byte is 0 when there is none.
std::array<char, PATH_MAX> leftOver{};

void removeLeftOver(int signal) {
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

std::string systemText(int error) {
    return std::generic_category().message(error);
}

} // namespace

OutputFile::OutputFile(const std::string& path)
    : path_(path), name_(path == "-" ? "standard output" : path) {
    buffer_.reserve(bufferSize);
    if (path == "-") {
        if (::isatty(STDOUT_FILENO) == 1) {
            throw Failure(Failure::Kind::Write,
                          "standard output is a terminal: name a file, or send it to one");
        }
        fd_ = UniqueFd(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
        direct_ = true;
        if (!fd_) {
            fail("cannot be written", errno);
        }
        return;
    }
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
            fd_ = UniqueFd(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
            direct_ = true;
            if (!fd_) {
                fail("cannot be written", errno);
            }
            return;
        }
        if (S_ISDIR(status.st_mode) || status.st_size > 0) {
            fail("is not written over", EEXIST);
        }
        replacesEmpty_ = true;
        // A link stays a link; what it leads to is replaced.
        if (char* real = ::realpath(path.c_str(), nullptr)) {
            path_ = real;
            std::free(real); // NOLINT(cppcoreguidelines-no-malloc): realpath gives it away
        }
    }
    openUnnamed();
}

OutputFile::~OutputFile() {
    if (!temporaryPath_.empty()) {
        ::unlink(temporaryPath_.c_str());
        leftOver[0] = '\0';
    }
}

void OutputFile::openUnnamed() {
    const std::string folder = folderOf(path_);
    // The file gets its name through /proc, for everybody may link from there.
    if (::access("/proc/self/fd", X_OK) == 0) {
        fd_ = UniqueFd(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
    }
    if (!fd_) {
        temporaryPath_ = temporaryName(folder);
        removeAtSignal(temporaryPath_);
        fd_ = UniqueFd(::open(temporaryPath_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (!fd_) {
            temporaryPath_.clear();
            leftOver[0] = '\0';
            fail("cannot be created", errno);
        }
    }
}

void OutputFile::fail(const char* what, int error) const {
    throw Failure(Failure::Kind::Write, name_ + ": " + what + ": " + systemText(error));
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    position_ += bytes.size();
    if (buffer_.size() + bytes.size() > bufferSize) {
        flush();
        if (bytes.size() >= bufferSize) {
            writeAll(fd_.get(), bytes, name_);
            return;
        }
    }
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
}

void OutputFile::writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    flush();
    while (!bytes.empty()) {
        const ssize_t count =
            ::pwrite(fd_.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            offset += static_cast<std::uint64_t>(count);
        } else if (errno != EINTR) {
            fail("cannot be written", errno);
        }
    }
}

void OutputFile::flush() {
    writeAll(fd_.get(), buffer_, name_);
    buffer_.clear();
}

void OutputFile::commit() {
    flush();
    if (!direct_) {
        publish();
    }
    // Some file systems tell only now that the disk is full.
    if (::close(fd_.release()) != 0 && errno != EINTR) {
        const int error = errno;
        if (!direct_) {
            ::unlink(path_.c_str());
        }
        fail("cannot be written", error);
    }
}

void OutputFile::publish() {
    const std::string self = "/proc/self/fd/" + std::to_string(fd_.get());
    if (replacesEmpty_) {
        struct stat status = {};
        if (::stat(path_.c_str(), &status) == 0 && status.st_size > 0) {
            fail("is not written over", EEXIST);
        }
        if (temporaryPath_.empty()) {
            const std::string between = temporaryName(folderOf(path_));
            if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, between.c_str(), AT_SYMLINK_FOLLOW) !=
                0) {
                fail("cannot be created", errno);
            }
            temporaryPath_ = between;
        }
        if (::rename(temporaryPath_.c_str(), path_.c_str()) != 0) {
            fail("cannot be created", errno);
        }
    } else if (temporaryPath_.empty()) {
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW) != 0) {
            fail("cannot be created", errno);
        }
    } else if (::renameat2(AT_FDCWD, temporaryPath_.c_str(), AT_FDCWD, path_.c_str(),
                           RENAME_NOREPLACE) != 0) {
        // The file systems without unnamed files are the ones that may not know this either.
        if (errno != EINVAL || ::access(path_.c_str(), F_OK) == 0) {
            fail("cannot be created", errno == EINVAL ? EEXIST : errno);
        }
        if (::rename(temporaryPath_.c_str(), path_.c_str()) != 0) {
            fail("cannot be created", errno);
        }
    }
    temporaryPath_.clear();
    leftOver[0] = '\0';
}

} // namespace quav::pcm
