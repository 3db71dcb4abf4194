#pragma once

#include "audio/pcm/UniqueFd.h"

#include <sys/types.h>

#include <csignal>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace quav::pcm {

/// The folder that a path stands in; "." when it names none.
std::string folderOf(const std::string& path);

/// Keeps the signals that end the program waiting, in this thread: while a file is there that they
/// would have to remove and do not know yet, say, or for a thread that is not to handle them.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_{};
};

/// A file's name for a while, which folder listings hide. The file goes with the object, and at a
/// signal that ends the program; of these and of TemporaryFolder there is one at a time.
class TemporaryName {
public:
    /// Gives `make` one name after the other until it makes a new file of that name, or fails with
    /// another errno than EEXIST. Throws Failure with Kind::Write then, `what` is what fails.
    TemporaryName(const std::string& folder, const std::function<bool(const char*)>& make,
                  const std::string& what);
    ~TemporaryName();
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;

    const std::string& path() const { return path_; }

    /// Gives the file the name `path` for good; see giveName().
    bool become(const std::string& path, bool mayReplace);

private:
    std::string path_;
};

/// A hidden folder for what another process makes, where nobody else can put anything. It goes with
/// all that is in it with the object, and at a signal that ends the program.
class TemporaryFolder {
public:
    /// Throws Failure with Kind::Write; `what` is what fails then.
    TemporaryFolder(const std::string& parent, const std::string& what);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Where a file stands in it, for any process of this user while the object lives: a path that
    /// stays right when somebody puts something else in the folder's place.
    std::string pathOf(const std::string& name) const;

    /// The process that writes there: a signal that ends the program ends that one first, lest it
    /// make the file again. 0 when there is none any more.
    static void setWriter(pid_t process);

private:
    std::string path_;
    UniqueFd fd_;
};

/// Gives the file `from` the name `to`, for which nothing or, when `mayReplace`, another regular
/// file stands; the old name may stay. Returns false, with errno, when that fails.
bool giveName(const std::string& from, const std::string& to, bool mayReplace);

/// A file without a name, for reading and writing: in the folder of `beside` if that is or may
/// become a file, else in the folder for temporary files. Throws Failure with Kind::Write.
UniqueFd unnamedFile(const std::string& beside);

/// Writes all of it. Throws Failure with Kind::Write, or ReaderGone for a pipe that nobody reads.
void writeAll(int fd, std::span<const std::uint8_t> bytes, const std::string& name);

} // namespace quav::pcm
