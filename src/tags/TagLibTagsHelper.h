#pragma once

#include "tags/TagResult.h"
#include "tags/TagsObject.h"

#include <QStringList>

namespace quav {

/// Reads and writes the tags of audio files, one pair of operations per container.
///
/// A reader returns a record whose texts are all present, empty where the file says nothing; so
/// does a file that is missing or is not of the kind. A writer writes the fields that are present
/// and not empty and leaves the others alone. It fails, with the reason, when the file is missing,
/// read-only or could not be saved as a whole, also because the disk is full, and throws TagError
/// when it is not a file of its kind.
///
/// An object keeps nothing but the problems of its last write. Threads may work at the same time,
/// each with an object of its own and on different files.
class TagLibTagsHelper {
public:
    /// Makes UTF-8 the encoding of new ID3v2 frames. This is a setting of the whole process: the
    /// program's start calls it once, before any thread uses tags.
    static void initialise();

    /// Several values of one name arrive joined with "; " (numbers and dates: the first).
    TagsObject tagsForFlacFile(const QString& path) const;
    TagsObject tagsForAIFFFile(const QString& path) const;
    TagsObject tagsForWAVEFile(const QString& path) const;
    /// Title, artist, album, comment, genre, year and track alone, as its writer.
    TagsObject tagsForWavpackFile(const QString& path) const;

    /// With `writeEmptyTags` the file's old fields (all but ENCODER) and pictures are removed
    /// first, so that the record replaces them all.
    TagResult writeTagsForFLACFile(const QString& path, const TagsObject& tags,
                                   bool writeEmptyTags);
    TagResult writeTagsForAIFFFile(const QString& path, const TagsObject& tags);
    TagResult writeTagsForWAVEFile(const QString& path, const TagsObject& tags);
    TagResult writeTagsForWavpackFile(const QString& path, const TagsObject& tags,
                                      bool writeEmptyTags);

    /// Sentences for the user about what the last write of this object could not keep, also when it
    /// succeeded: a picture, say, that is too large for the file.
    const QStringList& problems() const { return problems_; }

    /// Sets the fourteen texts to "" and removes the picture.
    static void setBlankTags(TagsObject& tags);

private:
    QStringList problems_;
};

} // namespace quav
