#include "tags/TagStrings.h"

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

} // namespace quav
