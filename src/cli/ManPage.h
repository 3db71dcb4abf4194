#pragma once

#include "cli/CommandHelp.h"

#include <QString>

namespace quav {

/// The manual page of the program, for roff.
QString manPage(const CommandHelp& program);

} // namespace quav
