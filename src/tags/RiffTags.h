#pragma once

#include "tags/TagResult.h"
#include "tags/TagsObject.h"

namespace quav {

/// Read the ID3v2 tag inside an AIFF or WAV file into `tags`; a file that is none of the kind, or
/// has no such tag, leaves `tags` as it is. A WAV file's INFO list is not looked at.
void readAiffTags(const QString& path, TagsObject& tags);
void readWaveTags(const QString& path, TagsObject& tags);

/// Write the record's present, non-empty fields into the ID3v2 tag inside an AIFF or WAV file; the
/// tag is saved as ID3v2.4 and made only when there is something to write. Every other chunk stays.
/// Fail when the file could not be saved as a whole; throw TagError when it is none of the kind.
TagResult writeAiffTags(const QString& path, const TagsObject& tags);
TagResult writeWaveTags(const QString& path, const TagsObject& tags);

} // namespace quav
