#include "tags/TagStrings.h"

#include <taglib/id3v1genres.h>

namespace quav {

TagLib::String tagLibString(const QString& text) {
    return {text.toStdString(), TagLib::String::UTF8};
}

QString fromTagLibString(const TagLib::String& text) {
    return QString::fromStdString(text.to8Bit(true));
}

bool hasText(const std::optional<QString>& text) {
    return text && !text->isEmpty();
}

QString genreName(const QString& text) {
    const bool inBrackets = text.startsWith(u'(') && text.endsWith(u')');
    bool isNumber = false;
    const int number = (inBrackets ? text.mid(1, text.size() - 2) : text).toInt(&isNumber);
    const QString name = isNumber && number >= 0 && number < 256
                             ? fromTagLibString(TagLib::ID3v1::genre(number))
                             : QString();
    return name.isEmpty() ? text : name;
}

} // namespace quav
