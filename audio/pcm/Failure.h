#pragma once

#include <stdexcept>
#include <string>

namespace quav::pcm {

/// Why a tool cannot go on. The text names the file and says what is wrong or what to do; the tool
/// prints it on one line and ends with status 1.
class Failure : public std::runtime_error {
public:
    enum class Kind {
        Read,        ///< the system could not open or read the input
        Write,       ///< the system could not create or write the output, or it is in the way
        Input,       ///< the input is damaged, cut short or no file of this kind
        Unsupported, ///< the input is sound, but the format to be written cannot hold it
        Memory       ///< the input asks for more memory than there is
    };

    Failure(Kind kind, const std::string& text) : std::runtime_error(text), kind_(kind) {}

    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

/// All samples were decoded and none is damaged, but the file stores another digest of them.
class DigestMismatch : public Failure {
public:
    explicit DigestMismatch(const std::string& text) : Failure(Kind::Input, text) {}
};

/// The program that read our standard output has closed it: not an error, and nothing is said.
class ReaderGone : public std::runtime_error {
public:
    ReaderGone() : std::runtime_error("the reader of standard output has gone") {}
};

} // namespace quav::pcm
