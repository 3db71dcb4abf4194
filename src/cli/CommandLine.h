#pragma once

#include "cli/CommandHelp.h"
#include "cli/Options.h"

#include <QCoreApplication>
#include <QString>

#include <tl/expected.hpp>

#include <memory>

namespace quav {

struct CommandLineParts;

/// Reads the program's arguments.
class CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandLine();
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Why there is nothing more to do: the help was asked for, or the arguments make no sense.
    struct Ended {
        int exitStatus;
        QString text;
    };

    /// To be called once.
    tl::expected<Options, Ended> parse(int argc, const char* const* argv);

    /// All commands and options, for the manual and the completions.
    CommandHelp help() const;

private:
    std::unique_ptr<CommandLineParts> parts_;
};

} // namespace quav
