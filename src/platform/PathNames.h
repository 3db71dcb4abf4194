#pragma once

#include <QString>

/// Paths: their parts, taken apart by the same rules everywhere, and, where it is said, what the
/// disk knows of them.
namespace quav {

/// "/a/b.c" gives "b.c".
QString lastPathComponent(const QString& path);

/// The folder that holds the path, "/a/b.c" gives "/a"; a bare name gives ".".
QString folderOf(const QString& path);

/// What follows the last dot of the last component; empty when there is none, when the dot is the
/// name's first character (".bashrc") or its last one.
QString pathExtension(const QString& path);

/// The extension in capitals: the word by which every file type is recognised.
QString formatWord(const QString& path);

/// The last component without its extension and dot.
QString baseName(const QString& path);

/// Folder and name joined by exactly one slash.
QString joinPath(const QString& folder, const QString& name);

/// The full path, without detours and without a slash at its end. ".." is resolved on the disk, as
/// the system does: behind a link it leads elsewhere than the text says.
QString fullPath(const QString& path);

/// True when there is a folder of this name, or a link to one.
bool isFolder(const QString& path);

/// True when both paths lead to the same file on disk (device and inode), whatever their spelling.
/// False when either does not exist.
bool isSameFile(const QString& a, const QString& b);

/// The path with its folder resolved to its one true spelling, so that two spellings of one output
/// compare equal although the output itself does not exist yet.
QString withRealFolder(const QString& path);

} // namespace quav
