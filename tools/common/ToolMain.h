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

/// What a failure says, as it may be printed to standard error.
std::string toldText(const pcm::Failure& failure);

/// Runs a tool that parses its arguments itself; all else is as with runTool().
int runGuarded(const std::string& name, const std::function<int()>& run);

/// Parses the arguments and runs the tool. Wrong arguments give status 1 as everything else does.
int runTool(const Tool& tool, int argc, char** argv);

} // namespace quav::tools
