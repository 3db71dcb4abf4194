#pragma once

#include "tags/TagResult.h"
#include "tags/TagsObject.h"

#include <QStringList>

namespace quav {

/// Reads the Vorbis comments and the first picture block of a FLAC file into `tags`.
///
/// The record holds one text per name. Where a file has several values of one name, the texts and
/// the free-form tags hold all distinct ones joined with "; "; numbers and the date hold the first.
/// A file that is no FLAC file leaves `tags` as it is.
void readFlacTags(const QString& path, TagsObject& tags);

/// Writes the record's present, non-empty fields over those of a FLAC file; other fields stay.
///
/// The picture is added as a front cover beside those already there. With `writeEmptyTags` every
/// field except ENCODER and all pictures are removed first, so the record replaces everything.
/// A picture that does not fit into a FLAC file is left out, with a sentence in `problems`.
///
/// Fails when the tags do not fit into a FLAC file, which then stays as it is, or when it could not
/// be saved as a whole; throws TagError when it is no FLAC file.
TagResult writeFlacTags(const QString& path, const TagsObject& tags, bool writeEmptyTags,
                        QStringList& problems);

} // namespace quav
