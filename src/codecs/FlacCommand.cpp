#include "codecs/FlacCommand.h"

namespace quav {

namespace {

const QString keepForeign = QStringLiteral("--keep-foreign-metadata");

} // namespace

QStringList flacEncodeArguments(const FlacEncodeOptions& options, const QString& source,
                                const QString& output) {
    QStringList arguments{options.lax ? QStringLiteral("--lax")
                                      : QStringLiteral("-%1").arg(options.level)};
    if (options.keepForeignMetadata) {
        arguments << keepForeign;
    }
    if (options.verify) {
        arguments << QStringLiteral("-V");
    }
    if (options.overwrite) {
        arguments << QStringLiteral("-f");
    }
    return arguments << source << QStringLiteral("-o") << output;
}

QStringList flacDecodeArguments(const FlacDecodeOptions& options, const QString& source,
                                const QString& output) {
    QStringList arguments{QStringLiteral("-d")};
    if (options.keepForeignMetadata) {
        arguments << keepForeign;
    }
    if (options.throughErrors) {
        arguments << QStringLiteral("-F");
    }
    if (options.format == u"AIFF") {
        arguments << QStringLiteral("--force-aiff-format");
    }
    return arguments << source << QStringLiteral("-o") << output;
}

} // namespace quav
