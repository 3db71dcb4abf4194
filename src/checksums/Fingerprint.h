#pragma once

#include "app/Plan.h"

#include <QString>

#include <tl/expected.hpp>

#include <optional>

/// The fingerprint of a FLAC file: the MD5 of its audio, which the encoder has put into STREAMINFO.
namespace quav {

class ToolsFolder;

namespace fingerprint {

/// The call of the tool that gives the fingerprint of a file.
ToolCall callFor(const QString& path);

/// The entry of a fingerprint file as `metaflac --show-md5` gives it, on the calling thread: name,
/// ":", 32 digits and a line break; or the tool's words when it could not read the file. The error
/// says why there is neither: the tool could not be started, or did not get to its end.
tl::expected<QString, QString> entry(const ToolsFolder& tools, const QString& path);

/// The tool's words about what is neither a file nor a folder, which it must not be asked of: it
/// would wait for ever for what comes out of a pipe. None for everything else.
std::optional<QString> complaintOfSpecialFile(const QString& path);

/// The entry that the tool's output comes to, or why it is none; the status as
/// `ChildProcess::ended` has it.
tl::expected<QString, QString> entryOf(const QString& path, const QString& output, int exitStatus);

/// Whether an entry is the tool's complaint.
bool isComplaint(const QString& entry);

/// Whether an entry ends in 32 zeros: the encoder never had all of the audio, and nothing can be
/// checked against it.
bool isUnset(const QString& entry);

/// A remark on a file that has only zeros, and the sentence that warns of it.
QString unsetNote();
QString unsetWarning(const QString& path);

/// The digits right from the file, without a tool: STREAMINFO stands at its beginning (RFC 9639,
/// section 8.2), perhaps behind ID3v2 tags. None when it is not there. No more than a hint: what
/// follows may be damaged.
std::optional<QString> inFile(const QString& path);

/// Whether the file has only zeros there.
bool isUnsetIn(const QString& path);

} // namespace fingerprint

} // namespace quav
