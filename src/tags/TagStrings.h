#pragma once

#include <QString>

#include <taglib/tstring.h>

#include <optional>

namespace quav {

TagLib::String tagLibString(const QString& text);
QString fromTagLibString(const TagLib::String& text);

/// True when a record's text is there to be written: present and not empty.
bool hasText(const std::optional<QString>& text);

/// The name of a genre that stands in a tag as a number of the ID3v1 list, "17" or "(17)"; any
/// other text as it is.
QString genreName(const QString& text);

} // namespace quav
