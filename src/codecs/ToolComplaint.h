#pragma once

#include <QString>

namespace quav {

/// What a tool complains of although it may go on to succeed.
enum class ToolComplaint {
    None,
    Warning, ///< it did something that the user may not expect
    Damage,  ///< what it wrote is not all that it should be
};

/// Reads one completed line of a tool's output; `fileName` is the name that the tool may put
/// before what it says about the file.
using ComplaintReader = ToolComplaint (*)(const QString& line, const QString& fileName);

} // namespace quav
