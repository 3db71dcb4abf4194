#pragma once

#include <QString>

namespace quav {

class DesktopServices;
class Settings;

/// Small helps that tasks use again and again.
class Util {
public:
    Util() = delete;

    /// Creates an empty file with a new name and returns its path: in `folder`, or in the user's
    /// temporary folder when that is empty. Throws std::invalid_argument for a missing extension
    /// and std::system_error when the file cannot be made.
    static QString generateTempFileName(const QString& folder, const QString& extension);

    /// A name of the same pattern with the eight X left in it, the same at every call; creates
    /// nothing.
    static QString generateTempFileName2(const QString& folder, const QString& extension);

    /// Whether the last component is a name of that pattern.
    static bool isTempFileName(const QString& path);

    /// Removes a file as the setting `trashOrDelete` says: 0 deletes it for good, anything else
    /// moves it to the trash. Errors are ignored. Any thread.
    static void deleteFile(const QString& path, const Settings& settings, DesktopServices& desktop);
};

/// True when the text begins with the prefix; an empty prefix is no beginning.
bool quavStartsWith(const QString& text, const QString& prefix);

/// True when the text ends with the suffix; an empty suffix is no end.
bool quavEndsWith(const QString& text, const QString& suffix);

} // namespace quav
