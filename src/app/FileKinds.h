#pragma once

#include <QString>
#include <QStringList>

/// Which tab takes which files. Kinds are told by the extension in capitals; where that says
/// nothing, some tabs look at the content.
namespace quav {

/// The labels of the tabs: what users read and what everything is looked up by.
namespace tabs {
inline const QString decode = QStringLiteral("decode");
inline const QString encode = QStringLiteral("encode");
inline const QString checksum = QStringLiteral("checksum");
inline const QString shntool = QStringLiteral("shntool");
inline const QString fixSBE = QStringLiteral("fix SBE");
inline const QString util = QStringLiteral("util");
inline const QString lossy = QStringLiteral("lossy");
inline const QString tags = QStringLiteral("tags");
inline const QString about = QStringLiteral("about");
} // namespace tabs

/// The extensions that a tab takes, in capitals; empty for a tab without such a list.
const QStringList& acceptedExtensions(const QString& tabLabel);

/// Whether a tab takes a file: by its extension, and where the tab takes WAV or AIFF also by its
/// content. May read the file's beginning.
bool isValidFile(const QString& tabLabel, const QString& path);

/// Files that a file browser keeps for itself and that nobody means when dropping a folder.
bool isBookkeepingFile(const QString& path);

} // namespace quav
