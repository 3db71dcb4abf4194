#pragma once

#include "cli/Options.h"

namespace quav {

class Settings;
class Terminal;

/// `settings`: lists, shows and changes the user's settings. The exit status.
int runSettings(const SettingsOptions& options, Settings& settings, Terminal& terminal);

} // namespace quav
