#include "audio/pcm/InputFile.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/RegularFile.h"
#include "audio/pcm/TemporaryFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <utility>

namespace quav::pcm {

const char* kindOfFile(mode_t mode) {
    switch (mode & S_IFMT) {
    case S_IFIFO:
        return "a named pipe";
    case S_IFSOCK:
        return "a socket";
    case S_IFDIR:
        return "a folder";
    default:
        return "a device";
    }
}

namespace {

constexpr std::size_t bufferSize = std::size_t{64} << 10;

[[noreturn]] void cannotRead(const std::string& name, int error) {
    throw Failure(Failure::Kind::Read,
                  name + ": cannot be read: " + std::generic_category().message(error));
}

UniqueFd openForReading(const std::string& path) {
    OpenedFile opened = openRegular(path);
    if (opened.error == EINVAL && opened.kind != 0) {
        throw Failure(Failure::Kind::Read,
                      path + ": cannot be read: it is " + kindOfFile(opened.kind) + " and no file");
    }
    if (!opened.fd) {
        cannotRead(path, opened.error);
    }
    return std::move(opened.fd);
}

} // namespace

InputFile InputFile::open(const std::string& path) {
    const bool standard = path == "-";
    const std::string name = standard ? "standard input" : path;
    UniqueFd fd =
        standard ? UniqueFd(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)) : openForReading(path);
    if (!fd) {
        cannotRead(name, errno);
    }
    return {std::move(fd), name};
}

InputFile::InputFile(UniqueFd fd, std::string name) : fd_(std::move(fd)), name_(std::move(name)) {
    struct stat status = {};
    if (::fstat(fd_.get(), &status) != 0) {
        cannotRead(name_, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        cannotRead(name_, EISDIR);
    }
    if (S_ISREG(status.st_mode)) {
        size_ = static_cast<std::uint64_t>(status.st_size);
        const off_t start = ::lseek(fd_.get(), 0, SEEK_CUR);
        position_ = start > 0 ? static_cast<std::uint64_t>(start) : 0;
    }
}

std::size_t InputFile::readSome(std::span<std::uint8_t> to) {
    while (true) {
        const ssize_t count = ::read(fd_.get(), to.data(), to.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            cannotRead(name_, errno);
        }
    }
}

std::size_t InputFile::read(std::span<std::uint8_t> to) {
    std::size_t done = std::min(to.size(), end_ - begin_);
    std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_), done, to.begin());
    begin_ += done;
    while (done < to.size()) {
        // Small reads go through the buffer, large ones straight to where they belong.
        if (to.size() - done < bufferSize) {
            const std::span<const std::uint8_t> ready = peek(to.size() - done);
            std::copy(ready.begin(), ready.end(), to.begin() + static_cast<std::ptrdiff_t>(done));
            begin_ += ready.size();
            done += ready.size();
            break;
        }
        const std::size_t count = readSome(to.subspan(done));
        if (count == 0) {
            break;
        }
        done += count;
    }
    position_ += done;
    return done;
}

std::span<const std::uint8_t> InputFile::peek(std::size_t count) {
    count = std::min(count, bufferSize);
    if (end_ - begin_ < count) {
        buffer_.resize(bufferSize);
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
        while (end_ < count) {
            const std::size_t more = readSome(std::span(buffer_).subspan(end_));
            if (more == 0) {
                break;
            }
            end_ += more;
        }
    }
    return std::span(buffer_).subspan(begin_, std::min(count, end_ - begin_));
}

std::uint64_t InputFile::skip(std::uint64_t count) {
    std::uint64_t done = 0;
    while (done < count) {
        const std::size_t ready =
            peek(static_cast<std::size_t>(std::min<std::uint64_t>(count - done, bufferSize)))
                .size();
        if (ready == 0) {
            break;
        }
        begin_ += ready;
        position_ += ready;
        done += ready;
    }
    return done;
}

std::size_t InputFile::readAt(std::uint64_t offset, std::span<std::uint8_t> to) const {
    std::size_t done = 0;
    while (done < to.size()) {
        const ssize_t count = ::pread(fd_.get(), to.data() + done, to.size() - done,
                                      static_cast<off_t>(offset + done));
        if (count == 0) {
            break;
        }
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            cannotRead(name_, errno);
        }
    }
    return done;
}

void InputFile::seek(std::uint64_t offset) {
    if (::lseek(fd_.get(), static_cast<off_t>(offset), SEEK_SET) < 0) {
        cannotRead(name_, errno);
    }
    begin_ = end_ = 0;
    position_ = offset;
}

InputFile InputFile::spooled(const std::string& outputPath) && {
    if (size_) {
        return std::move(*this);
    }
    UniqueFd copy = unnamedFile(outputPath);
    std::vector<std::uint8_t> piece(bufferSize * 4);
    while (const std::size_t count = read(piece)) {
        writeAll(copy.get(), std::span(piece).first(count), "a temporary file");
    }
    if (::lseek(copy.get(), 0, SEEK_SET) < 0) {
        cannotRead(name_, errno);
    }
    return {std::move(copy), name_};
}

} // namespace quav::pcm
