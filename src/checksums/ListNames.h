#pragma once

#include "checksums/ChecksumFiles.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The names that files have in a checksum file, and whether they lead back to them: they are
/// looked up in the folder that the checksum file lies in.
namespace quav::listnames {

/// The names of the files in a list of this kind at this path, in their order.
QStringList namesIn(const QString& list, ChecksumKind kind, const QStringList& files);

/// What is to be asked before a list is made in which a name leads elsewhere or stands more than
/// once; it tells how to get one that verifies. Nothing when there is no such name.
std::optional<Question> questionBeforeNaming(ChecksumKind kind, const QStringList& files,
                                             const QString& list);

} // namespace quav::listnames
