#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quav::shntool {

/// A kind of audio file.
struct Format {
    std::string_view name;
    std::string_view extension;
    bool isRead;
    bool isWritten;
    /// A decoder to standard output, for users who want none of ours; none when there is no other.
    std::string_view decoder;
    /// The encoder and its arguments; none when the format is written by ourselves.
    std::string_view encoder;
    std::string_view description;
};

/// All formats, in the order in which they are listed.
const std::vector<Format>& formats();

/// Throws ModeError when there is none of this name, or it cannot be written.
const Format& findFormat(std::string_view name);
const Format& findOutputFormat(std::string_view name);

/// A kind of file to be written: "FORMAT [ext=EXTENSION] [ENCODER ARGUMENTS]".
struct OutputFormat {
    std::string name;
    std::string extension;
    std::vector<std::string> encoder; ///< empty when the format is written by ourselves

    /// Takes what is not said from the environment variable ST_FORMAT_ENC, or from the format's
    /// defaults. Throws ModeError.
    static OutputFormat parse(const std::vector<std::string>& words);

    bool isFile() const { return name != "null" && name != "term"; }
};

/// Another program to read a kind of file with: "FORMAT DECODER ARGUMENTS".
struct InputDecoder {
    std::string format;
    std::vector<std::string> command;

    /// Throws ModeError.
    static InputDecoder parse(const std::string& text);

    /// The one that the environment variable ST_FORMAT_DEC asks for, if it does.
    static std::optional<InputDecoder> fromEnvironment(std::string_view format);
};

} // namespace quav::shntool
