#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace quav {

class WorkProgress;

/// What a search for files has come to.
struct FoundFiles {
    QStringList files;
    QSet<QString> skippedExtensions; ///< of files that the tab cannot process
    QStringList unusable;            ///< sentences about what cannot be reached at all
    bool isCancelled = false;        ///< then the rest tells nothing
};

/// The files among the paths, and in folders among them, that the tab of the label takes; those
/// that it lists already are not looked at again. Any thread, and it takes its time.
FoundFiles searchForTab(const QString& label, const QStringList& paths, const QSet<QString>& listed,
                        WorkProgress& progress);

/// The files among the paths and in folders among them, as they are dropped on the program: without
/// what file browsers keep for themselves, and from folders only what has an extension. Any thread.
FoundFiles searchForAny(const QStringList& paths, WorkProgress& progress);

/// A sentence about a path whose name is not UTF-8, so that the file cannot be reached.
QString undecodableMessage(const QString& path);

} // namespace quav
