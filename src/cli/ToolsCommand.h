#pragma once

#include <QString>

namespace quav {

class Terminal;

/// `tools`: lists every tool with its path and version, or what would bring it. The exit status.
int listTools(bool asJson, Terminal& terminal);

/// The first word of what a tool printed that looks like a version; empty when there is none.
QString versionIn(const QString& printed);

} // namespace quav
