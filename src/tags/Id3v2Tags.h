#pragma once

#include "tags/TagsObject.h"

#include <taglib/id3v2tag.h>

namespace quav {

/// Reads an ID3v2 tag into `tags`; fields that the tag does not have stay as they are. Several
/// values of one text arrive joined with "; ".
///
/// The date comes from TDRC when the tag has one, otherwise the year from TYER and, where TDAT has
/// four characters, day and month from it. The first picture becomes `albumArt`.
void readId3v2Tags(const TagLib::ID3v2::Tag& tag, TagsObject& tags);

/// Writes the record's present, non-empty fields into an ID3v2 tag; other frames stay.
///
/// A track or disc total without a number keeps the tag's own number ("3/12", or "/12" when there
/// is none). The picture is added beside those already there. The date is not written here,
/// because containers differ in it.
void writeId3v2Tags(TagLib::ID3v2::Tag& tag, const TagsObject& tags);

/// Writes the date with the frames of ID3v2.3: TYER holds the year, TDAT the day followed directly
/// by the year (sic), the latter only when month and day are there too. A TDRC frame goes, since it
/// would hide the new year from every reader. Without a year nothing changes.
void writeId3v2YearAndDate(TagLib::ID3v2::Tag& tag, const TagsObject& tags);

} // namespace quav
