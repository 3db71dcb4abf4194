#pragma once

#include <QString>

namespace quav {

/// The version as users read it, for example "0.1.0".
QString shortVersion();

/// The build number shown on the about tab.
QString buildNumber();

} // namespace quav
