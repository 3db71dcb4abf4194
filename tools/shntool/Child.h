#pragma once

#include "audio/pcm/UniqueFd.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace quav::shntool {

/// Another program at the other end of a pipe; its words go nowhere. It ends with the object
/// and, however that comes, with the thread that made it.
class Child {
public:
    enum class Pipe {
        ToInput,   ///< we write what it reads from standard input
        FromOutput ///< we read what it writes to standard output
    };

    /// `command` is the program, looked for on the PATH and then beside our own, and its
    /// arguments. Throws pcm::Failure with Kind::Read when it cannot be started.
    Child(const std::vector<std::string>& command, Pipe pipe);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Our end of the pipe.
    int fd() const { return pipe_.get(); }
    pid_t process() const { return process_; }

    /// Closes the pipe and waits; returns the exit status, or 128 and the signal that ended it.
    int wait();

private:
    pcm::UniqueFd pipe_;
    pid_t process_ = 0; // 0 when it has been waited for
};

/// A command as a user writes it: words between blanks.
std::vector<std::string> splitWords(const std::string& text);

/// The command with every %f replaced by a file's name.
std::vector<std::string> withFile(std::vector<std::string> command, const std::string& file);

} // namespace quav::shntool
