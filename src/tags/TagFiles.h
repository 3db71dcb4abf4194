#pragma once

#include "tags/TagResult.h"

#include <QString>

#include <taglib/tfile.h>

namespace quav {

/// Whether a file is there that may be written, else what the system says against it. Throws
/// TagError when something else than a file stands there.
TagResult openForWriting(const QString& path);

/// Why a file that was saved is not what it should be: the full disk, if that is it, which TagLib
/// passes over in silence, else `reason`.
tl::unexpected<QString> notSaved(const QString& path, const QString& reason);

/// True when the file was opened and really holds audio of its kind.
///
/// Ask before saving: several of TagLib's containers call any file valid, plain text included, and
/// would report a tag as written. The file must have been opened with its audio properties.
bool holdsAudio(const TagLib::File& file);

} // namespace quav
