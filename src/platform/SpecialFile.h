#pragma once

#include <QString>

#include <optional>

namespace quav {

/// Why a path must not be opened as a file, in a sentence for the user that also says what to do:
/// it is, or leads to, a named pipe, a socket or a device, and opening or reading that may wait for
/// ever. Nothing for a file, for a folder, and for what does not exist.
std::optional<QString> whyNotOpened(const QString& path);

} // namespace quav
