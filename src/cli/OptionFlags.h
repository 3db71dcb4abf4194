#pragma once

#include "app/OptionValues.h"
#include "cli/Options.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>
#include <vector>

namespace quav {

/// The words that the options take which take only these.
using FlagChoices = std::map<const CLI::Option*, std::vector<std::string>>;

/// The flags of a tab's options, as their rows say.
class OptionFlags {
public:
    using Flags = std::map<const OptionInfo*, CLI::Option*>;

    /// Adds a flag for each option that has one and that applies when the others are as given
    /// (nullptr: however they are), whatever is in the list; the flags that were added. The object
    /// has to outlive the command.
    Flags addTo(CLI::App& command, const OptionTable& table, const OptionValues* given = nullptr);

    /// The flag of an option, to say what it cannot be combined with.
    CLI::Option* flag(const OptionInfo& option) const { return flags_.at(&option); }

    /// What was given, each a text that its option takes.
    const OptionTexts& given() const { return given_; }

private:
    CLI::Option* addSwitch(CLI::App& command, const OptionInfo& option);
    CLI::Option* addValue(CLI::App& command, const OptionInfo& option);

    Flags flags_;
    OptionTexts given_;
};

} // namespace quav
