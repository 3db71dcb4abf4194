#pragma once

#include "platform/FileDescriptor.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <mutex>

namespace quav {

/// The folders in which this process claims outputs, written down where the next start of the
/// program finds them should the process be killed: a file of its own in the user's state folder,
/// locked while the process lives, one path after the other, each ended by a zero byte.
class ClaimedFolders {
public:
    /// Makes nothing before the first note.
    explicit ClaimedFolders(QString stateFolder);
    /// The file goes with a program that ends in order.
    ~ClaimedFolders();
    ClaimedFolders(const ClaimedFolders&) = delete;
    ClaimedFolders& operator=(const ClaimedFolders&) = delete;

    /// Of the user who runs the program, below the XDG state folder.
    static QString userFolder();

    /// To be called before an output in the folder is claimed. Any thread. That it could not be
    /// written is nobody's failure: whoever claims the same output next cleans up as well.
    void note(const QString& folder);

    /// Cleans up after processes that were killed; gives sentences for the user. Reads the disk.
    QStringList recover() const;

private:
    bool begin();

    QString stateFolder_;
    std::mutex mutex_;
    QString path_;
    FileDescriptor file_;
    QSet<QString> noted_;
};

} // namespace quav
