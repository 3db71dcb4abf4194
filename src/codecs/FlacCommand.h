#pragma once

#include <QString>
#include <QStringList>

/// The command lines of `flac`. Paths are full paths, so none can be taken for an option.
namespace quav {

struct FlacEncodeOptions {
    int level = 5; ///< 0 to 8; left out when `lax` is on
    bool lax = false;
    bool keepForeignMetadata = false;
    bool verify = false;
    bool overwrite = false;
};

struct FlacDecodeOptions {
    QString format; ///< "WAV" or "AIFF"
    bool keepForeignMetadata = false;
    bool throughErrors = false;
};

QStringList flacEncodeArguments(const FlacEncodeOptions& options, const QString& source,
                                const QString& output);

QStringList flacDecodeArguments(const FlacDecodeOptions& options, const QString& source,
                                const QString& output);

} // namespace quav
