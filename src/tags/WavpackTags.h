#pragma once

#include "tags/TagResult.h"
#include "tags/TagsObject.h"

namespace quav {

/// Reads the APEv2 tag of a WavPack file into `tags`: title, artist, album, comment, genre, year
/// and track. A year or track of 0, which is none, leaves its field as it is.
void readWavpackTags(const QString& path, TagsObject& tags);

/// Writes those fields of the record that are present and not empty; others stay, unless
/// `writeEmptyTags` has all of them removed first. Fails when the file could not be saved as a
/// whole; throws TagError when it is no WavPack file.
TagResult writeWavpackTags(const QString& path, const TagsObject& tags, bool writeEmptyTags);

} // namespace quav
