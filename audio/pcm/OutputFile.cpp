#include "audio/pcm/OutputFile.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>

namespace quav::pcm {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} << 10;

} // namespace

OutputPlace OutputPlace::find(const std::string& path, Existing existing) {
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0) {
        return {path, {}};
    }
    const bool leadsNowhere = ::stat(path.c_str(), &status) != 0;
    const bool isFile = !leadsNowhere && S_ISREG(status.st_mode);
    if (!isFile || (existing == Existing::Keep && status.st_size > 0)) {
        const std::string why = leadsNowhere || isFile
                                    ? std::generic_category().message(EEXIST)
                                    : "it is " + std::string(kindOfFile(status.st_mode));
        throw Failure(Failure::Kind::Write, path + ": is not written over: " + why);
    }
    OutputPlace place{path, status.st_mode & 07777};
    // A link stays a link; what it leads to is replaced.
    if (char* real = ::realpath(path.c_str(), nullptr)) {
        place.path = real;
        std::free(real); // NOLINT(cppcoreguidelines-no-malloc): realpath gives it away
    }
    return place;
}

OutputFile::OutputFile(const std::string& path, Until until, Existing existing)
    : place_{path, {}}, name_(path == "-" ? "standard output" : path), existing_(existing) {
    buffer_.reserve(bufferSize);
    if (path == "-") {
        openStandardOutput();
    } else {
        place_ = OutputPlace::find(path, existing);
        openFile(until);
    }
}

void OutputFile::openStandardOutput() {
    if (::isatty(STDOUT_FILENO) == 1) {
        throw Failure(Failure::Kind::Write,
                      "standard output is a terminal: name a file, or send it to one");
    }
    fd_ = UniqueFd(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
    if (!fd_) {
        fail("cannot be written", errno);
    }
    direct_ = true;
}

void OutputFile::openFile(Until until) {
    const std::string folder = folderOf(place_.path);
    // The file gets its name through /proc, for everybody may link from there.
    if (until == Until::Nameless && ::access("/proc/self/fd", X_OK) == 0) {
        fd_ = UniqueFd(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
    }
    if (!fd_) {
        temporary_.emplace(
            folder,
            [this](const char* path) {
                fd_ = UniqueFd(::open(path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
                return bool(fd_);
            },
            name_);
    }
    if (place_.mode) {
        ::fchmod(fd_.get(), *place_.mode); // as good as it can be kept
    }
}

void OutputFile::fail(const char* what, int error) const {
    throw Failure(Failure::Kind::Write,
                  name_ + ": " + what + ": " + std::generic_category().message(error));
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
    // Some file systems tell only when a file is closed that the disk is full.
    if (::close(::fcntl(fd_.get(), F_DUPFD_CLOEXEC, 3)) != 0 && errno != EINTR) {
        fail("cannot be written", errno);
    }
    if (!direct_) {
        publish();
    }
}

bool OutputFile::linkTo(const char* path) const {
    const std::string self = "/proc/self/fd/" + std::to_string(fd_.get());
    return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0;
}

void OutputFile::publish() {
    if (place_.mode) {
        struct stat status = {};
        if (existing_ == Existing::Keep && ::stat(place_.path.c_str(), &status) == 0 &&
            status.st_size > 0) {
            fail("is not written over", EEXIST);
        }
        if (!temporary_) {
            temporary_.emplace(
                folderOf(place_.path), [this](const char* path) { return linkTo(path); }, name_);
        }
    }
    const bool isThere = temporary_ ? temporary_->become(place_.path, place_.mode.has_value())
                                    : linkTo(place_.path.c_str());
    if (!isThere) {
        fail("cannot be created", errno);
    }
}

} // namespace quav::pcm
