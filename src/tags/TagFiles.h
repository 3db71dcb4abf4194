#pragma once

#include <taglib/tfile.h>

namespace quav {

/// True when the file was opened and really holds audio of its kind.
///
/// Ask before saving: several of TagLib's containers call any file valid, plain text included, and
/// would report a tag as written. The file must have been opened with its audio properties.
bool holdsAudio(const TagLib::File& file);

} // namespace quav
