#pragma once

#include <QString>

#include <chrono>

namespace quav {

/// A span of time as a clock shows it: "0:07", "3:10", "1:02:03".
QString clockText(std::chrono::seconds span);

} // namespace quav
