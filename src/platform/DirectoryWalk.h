#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quav {

/// What a folder and everything below it holds.
struct DirectoryContents {
    QStringList files;       ///< full paths of files and dead links, in the listing's order
    QStringList special;     ///< full paths of pipes, sockets and devices, and links to such
    QStringList undecodable; ///< names that are not UTF-8, as far as they can be shown
    QStringList unreadable;  ///< folders that could not be listed
};

/// Lists a folder recursively. A link to a folder is followed unless it leads back into one of the
/// folders on the way to it. `goOn`, if given, is told after each folder how many files there are
/// so far, and ends the search by answering false.
DirectoryContents walkDirectory(const QString& folder,
                                const std::function<bool(qsizetype files)>& goOn = {});

} // namespace quav
