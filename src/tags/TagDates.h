#pragma once

#include <QString>

#include <optional>

namespace quav {

/// A date taken from a tag, each part as text: "2004", "03", "09". Month and day are empty when
/// the tag held a year alone.
struct TagDate {
    QString year;
    QString month;
    QString day;
};

/// Where a date text comes from; Vorbis comments also allow "2004-3-9".
enum class DateSource { Id3v2, VorbisComment };

/// The date that `text` means, tried against ten fixed patterns (year first, then the
/// month-first and day-first orders); nothing when the text as a whole fits none of them.
std::optional<TagDate> parseTagDate(const QString& text, DateSource source);

} // namespace quav
