#pragma once

#include "audio/pcm/Failure.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace quav::tools {

/// What is common to the tools' main(): standard input and output in order, --help and --version,
/// one line on standard error and status 1 for whatever goes wrong, silence when the reader of
/// standard output has gone, nothing left behind at a signal.
struct Tool {
    /// Declares the options.
    CLI::App& options;
    /// Does the work; returns the exit status.
    std::function<int()> run;
    /// The line for a failure, without the line end; "NAME: TEXT" unless set.
    std::function<std::string(const pcm::Failure&)> describe;
};

/// As the only argument: prints the options for the program that makes the shells' completions of
/// them. One line for each command, option and operand, its fields between tabs.
inline constexpr const char* describeArgument = "--describe-options";

/// One option or operand of such a description.
struct DescribedOption {
    std::string names;   ///< "-e,--encode"; an operand's word
    std::string value;   ///< what follows an option: "LEVEL"; empty for a switch
    std::string choices; ///< the words that may follow, with blanks between them; empty for any
    std::string description;
};
std::string describedCommand(const std::string& name, const std::string& description);
std::string describedOption(const DescribedOption& option, bool isOperand);

/// What a failure says, as it may be printed to standard error.
std::string toldText(const pcm::Failure& failure);

/// Runs a tool that parses its arguments itself; all else is as with runTool().
int runGuarded(const std::string& name, const std::function<int()>& run);

/// Parses the arguments and runs the tool. Wrong arguments give status 1 as everything else does.
int runTool(const Tool& tool, int argc, char** argv);

} // namespace quav::tools
