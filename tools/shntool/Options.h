#pragma once

#include "shntool/Console.h"
#include "shntool/Formats.h"
#include "shntool/Length.h"
#include "shntool/Writer.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quav::shntool {

/// What the command line asks of a mode.
struct Options {
    std::vector<std::string> files;
    Console::Settings console;
    TimeStyle times = TimeStyle::Minutes;
    std::vector<InputDecoder> decoders;

    // Of the modes that write files.
    Overwrite overwrite = Overwrite::Ask;
    std::string folder; ///< empty: the mode's own choice
    std::string prefix;
    std::optional<std::string> postfix; ///< none: the mode's own
    OutputFormat output;

    /// Whether a mode's own option was given.
    bool has(char option) const { return own.contains(option); }
    /// Its argument, the last one given; empty when there is none.
    std::string value(char option) const;
    /// Which of some options was given last, or the first of them when none was.
    char lastOf(const std::string& choices) const;

    std::map<char, std::string> own;
    std::string order; ///< of the mode's own options, as they were given
};

/// One of the modes. Its work returns the exit status.
struct Mode {
    const char* name;
    const char* description;
    bool reads;
    bool writes;
    const char* letters; ///< of its own options, as getopt takes them
    const char* help;    ///< a line for each of them
    int (*run)(const Options&, Console&);
};

/// Reads the arguments: the program's name, then those behind the mode's name. Prints the help or
/// the version when that is asked for and returns nothing then. Throws ModeError.
std::optional<Options> parseOptions(const Mode& mode, std::vector<char*> arguments);

/// An option of a mode, as its help tells of it.
struct OptionText {
    char letter;
    std::string value;       ///< the word for its argument; empty when it takes none
    std::string choices;     ///< the words that the argument may be or begin with; empty for any
    std::string description; ///< in one line
};

/// All options of a mode, those of every mode among them.
std::vector<OptionText> optionsOf(const Mode& mode);

/// What --version prints.
std::string versionText();

} // namespace quav::shntool
