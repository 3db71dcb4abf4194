#pragma once

#include <QString>

namespace quav {

/// The version as users read it, for example "0.1.0".
QString shortVersion();

/// The build number shown on the about tab.
QString buildNumber();

/// What desktops call the program: its name on the bus, and that of its desktop file, metadata and
/// icon.
QString applicationId();

} // namespace quav
