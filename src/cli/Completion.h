#pragma once

#include "cli/CommandHelp.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

namespace quav {

/// What completes the program's commands, options and operands in a shell, to be sourced by it.
/// The shell is "bash", "zsh" or "fish".
QString completionOfProgram(const QByteArray& shell, const CommandHelp& program);

/// The same for a tool of ours. Other programs may have its name: bash and zsh complete the one in
/// a folder "quav/tools" alone; fish is led there by what the package brings beside it.
QString completionOfTool(const QByteArray& shell, const CommandHelp& tool);

/// What a tool prints for --describe-options, from a file; why not otherwise.
tl::expected<CommandHelp, QString> readToolOptions(const QString& path);

} // namespace quav
