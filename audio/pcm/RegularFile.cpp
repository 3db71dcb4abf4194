#include "audio/pcm/RegularFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <fcntl.h>

namespace quav::pcm {

namespace {

OpenedFile judged(UniqueFd fd) {
    struct stat status = {};
    if (!fd || ::fstat(fd.get(), &status) != 0) {
        return {{}, errno, 0};
    }
    if (!S_ISREG(status.st_mode)) {
        return {{}, S_ISDIR(status.st_mode) ? EISDIR : EINVAL, status.st_mode};
    }
    return {std::move(fd), 0, 0};
}

} // namespace

OpenedFile openRegular(const std::string& path) {
    const OpenedFile place = judged(UniqueFd(::open(path.c_str(), O_PATH | O_CLOEXEC)));
    if (!place.fd) {
        return {{}, place.error, place.kind};
    }
    const std::string again = "/proc/self/fd/" + std::to_string(place.fd.get());
    UniqueFd fd(::open(again.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd && errno == ENOENT) { // no /proc here
        fd = UniqueFd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    }
    return judged(std::move(fd));
}

} // namespace quav::pcm
