#pragma once

#include "codecs/ToolReport.h"

#include <QString>
#include <QStringList>

/// The command lines of `wavpack` and `wvunpack`, and what both say. Paths are full paths, so none
/// can be taken for an option. Nothing here knows a task.
namespace quav::wavpack {

/// `level` is "-f" or "-h".
QStringList encodeArguments(const QString& level, const QString& input, const QString& output);

/// An output that is a temporary file stands there already.
QStringList decodeArguments(const QString& source, const QString& output, bool isTemporary);

/// What one piece says. The percentage is what stands before "% done...", also behind what begins
/// a terminal's title.
///
///     "\b\b\b\b 42% done..."              ->  42
///     "overwrite a.wv (yes/no/all)? "     ->  failed: nobody answers
ToolReport read(const QString& piece);

} // namespace quav::wavpack
