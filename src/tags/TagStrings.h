#pragma once

#include <QString>

#include <taglib/tstring.h>

#include <optional>

namespace quav {

TagLib::String tagLibString(const QString& text);
QString fromTagLibString(const TagLib::String& text);

/// True when a record's text is there to be written: present and not empty.
bool hasText(const std::optional<QString>& text);

} // namespace quav
