#pragma once

#include "checksums/ChecksumFiles.h"

#include <QString>
#include <QStringList>

/// The names that files have in a checksum file, and whether they lead back to them: they are
/// looked up in the folder that the checksum file lies in.
namespace quav::listnames {

/// The names of the files in a list of this kind at this path, in their order.
QStringList namesIn(const QString& list, ChecksumKind kind, const QStringList& files);

/// Asks before a list is made in which a name leads elsewhere or stands more than once, and tells
/// how to get one that verifies; true when it may be made, or when there is no such name.
bool mayName(ChecksumKind kind, const QStringList& files, const QString& list,
             UserPrompts& prompts);

} // namespace quav::listnames
