#pragma once

#include "codecs/ToolComplaint.h"

#include <QString>

#include <optional>

namespace quav {

/// What one piece of a tool's output says.
struct ToolReport {
    std::optional<double> percent;
    bool failed = false; ///< it will not succeed, whatever its exit status
};

/// Reads one piece.
using ToolReader = ToolReport (*)(const QString& piece);

} // namespace quav
