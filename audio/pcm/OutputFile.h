#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/TemporaryFile.h"
#include "audio/pcm/UniqueFd.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quav::pcm {

/// What becomes of a file that has an output's name already.
enum class Existing {
    Keep,   ///< refused unless it is empty, so that nothing is ever written over
    Replace ///< replaced, when the new file is complete
};

/// Where an output is to stand: what links lead to, and the mode of the file there, if there is
/// one.
struct OutputPlace {
    std::string path;
    std::optional<mode_t> mode;

    /// Throws Failure with Kind::Write when something is in the way: a folder or a device, a link
    /// that leads nowhere, a file that is to be kept.
    static OutputPlace find(const std::string& path, Existing existing);
};

/// An output that appears whole or not at all. Until commit() a file has no name, or a temporary
/// one that goes with the object or at a signal that ends the program. Standard output is
/// written as it comes; other pipes and devices are refused.
///
/// Throws Failure with Kind::Write, and ReaderGone when standard output is a closed pipe.
class OutputFile final : public ByteSink {
public:
    /// What a file is until it is complete: Nameless turns into Named on file systems that know no
    /// files without a name.
    enum class Until { Nameless, Named };

    /// "-" is standard output.
    explicit OutputFile(const std::string& path, Until until = Until::Nameless,
                        Existing existing = Existing::Keep);

    /// How messages call it.
    const std::string& name() const { return name_; }

    /// Whether writeAt() can be used: a regular file, not a pipe.
    bool canSeek() const { return !direct_; }

    void write(std::span<const std::uint8_t> bytes) override;

    /// Writes over bytes that were written before; flushes first.
    void writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes);

    /// Number of bytes that write() has taken.
    std::uint64_t position() const { return position_; }

    /// Passes on what is buffered, so that a reader of a pipe gets it now.
    void flush();

    /// Flushes and gives the file its name. To be called once, at the end.
    void commit();

private:
    void openStandardOutput();
    void openFile(Until until);
    bool linkTo(const char* path) const;
    void publish();
    [[noreturn]] void fail(const char* what, int error) const;

    OutputPlace place_;
    std::string name_;
    UniqueFd fd_;
    std::optional<TemporaryName> temporary_;
    Existing existing_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t position_ = 0;
    bool direct_ = false;
};

} // namespace quav::pcm
