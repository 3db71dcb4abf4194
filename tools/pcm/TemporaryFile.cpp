#include "pcm/TemporaryFile.h"

#include "pcm/Failure.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>

namespace quav::pcm {

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string temporaryName(const std::string& folder) {
    static unsigned count = 0;
    return folder + "/.quav-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
}

UniqueFd unnamedFile(const std::string& beside) {
    const char* chosen = std::getenv("TMPDIR");
    const std::string common = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
    const std::string folder = beside == "-" ? common : folderOf(beside);
    UniqueFd fd(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
    if (!fd) {
        // Not every file system knows files without a name: take the name away at once.
        const std::string name = temporaryName(folder);
        fd = UniqueFd(::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!fd) {
            throw Failure(Failure::Kind::Write, folder + ": no temporary file can be made here: " +
                                                    std::generic_category().message(errno));
        }
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
