#include "tags/TagDates.h"

#include <unicode/smpdtfmt.h>

#include <memory>
#include <span>

namespace quav {
namespace {

struct DatePattern {
    const char16_t* pattern;
    bool vorbisCommentOnly;
};

constexpr DatePattern datePatterns[] = {
    {u"yyyy-MM-dd", false}, {u"yyyy/MM/dd", false}, {u"yyyy/dd/MM", false}, {u"yyyy-dd-MM", false},
    {u"MM-dd-yyyy", false}, {u"MM/dd/yyyy", false}, {u"dd-MM-yyyy", false}, {u"dd/MM/yyyy", false},
    {u"yyyy-M-d", true},    {u"yyyy", false}};

constexpr qsizetype shortestTextWithMonthAndDay = 5;

icu::UnicodeString toIcu(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<int32_t>(text.size())};
}

/// A strict formatter in a fixed locale and zone, so that no setting of the user shifts a date.
std::unique_ptr<icu::SimpleDateFormat> makeFormat() {
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(u"yyyy"),
                                                          icu::Locale("en_US_POSIX"), status);
    if (U_FAILURE(status)) {
        return nullptr;
    }
    format->setLenient(false);
    format->setTimeZone(*icu::TimeZone::getGMT());
    return format;
}

/// ICU is content with a prefix that fits; a tag's date counts only when all of it does.
std::optional<UDate> parseWhole(const icu::SimpleDateFormat& format,
                                const icu::UnicodeString& text) {
    icu::ParsePosition position(0);
    const UDate date = format.parse(text, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != text.length()) {
        return std::nullopt;
    }
    return date;
}

QString print(icu::SimpleDateFormat& format, const char16_t* pattern, UDate date) {
    format.applyPattern(icu::UnicodeString(pattern));
    icu::UnicodeString printed;
    format.format(date, printed);
    return QString::fromUtf16(printed.getBuffer(), printed.length());
}

} // namespace

std::optional<TagDate> parseTagDate(const QString& text, DateSource source) {
    const auto format = makeFormat();
    if (text.isEmpty() || !format) {
        return std::nullopt;
    }
    const icu::UnicodeString icuText = toIcu(text);
    for (const auto& [pattern, vorbisCommentOnly] : datePatterns) {
        if (vorbisCommentOnly && source != DateSource::VorbisComment) {
            continue;
        }
        format->applyPattern(icu::UnicodeString(pattern));
        const auto date = parseWhole(*format, icuText);
        if (!date) {
            continue;
        }
        TagDate result{print(*format, u"yyyy", *date), {}, {}};
        if (text.size() >= shortestTextWithMonthAndDay) {
            result.month = print(*format, u"MM", *date);
            result.day = print(*format, u"dd", *date);
        }
        return result;
    }
    return std::nullopt;
}

} // namespace quav
