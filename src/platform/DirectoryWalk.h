#pragma once

#include <QString>
#include <QStringList>

namespace quav {

/// What a folder and everything below it holds.
struct DirectoryContents {
    QStringList files;       ///< full paths of everything that is no folder, in the listing's order
    QStringList undecodable; ///< names that are not UTF-8, as far as they can be shown
    QStringList unreadable;  ///< folders that could not be listed
};

/// Lists a folder recursively. A link to a folder is followed unless it leads back into one of the
/// folders on the way to it.
DirectoryContents walkDirectory(const QString& folder);

} // namespace quav
