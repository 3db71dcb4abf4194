#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

namespace quav::test {

/// Lets this program and its tools write no file larger than so many bytes; 0: of any size.
class FileSizeLimit {
public:
    explicit FileSizeLimit(int bytes) {
        if (bytes > 0) {
            signal(SIGXFSZ, SIG_IGN);
            set(static_cast<rlim_t>(bytes));
        }
    }
    ~FileSizeLimit() { set(RLIM_INFINITY); }

private:
    static void set(rlim_t bytes) {
        struct rlimit limit {};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = std::min(bytes, limit.rlim_max);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
};

} // namespace quav::test
