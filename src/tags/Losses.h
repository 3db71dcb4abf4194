#pragma once

#include <QString>
#include <QStringList>

namespace quav {

/// Names what the source of a conversion holds besides its sound and its output does not: tags and
/// values of tags, parts of a date, pictures, cue sheets, chunks and blocks. Each entry is a phrase
/// for the user, "the tag MOOD" or "2 pictures", that fits into a list.
///
/// Both files are read for this, whatever should have been copied. Several values that arrived as
/// one, joined with "; ", are there. What is only technical (padding, seek tables, the encoder's
/// name and settings) is not looked at. A file that is damaged or of no known kind gives one entry
/// that says that its tags could not be compared. A long list ends with the number of the others.
///
/// Knows FLAC, WAV (also RF64), AIFF and WavPack files, by what they hold and not by their names.
QStringList lostBetween(const QString& source, const QString& output);

} // namespace quav
