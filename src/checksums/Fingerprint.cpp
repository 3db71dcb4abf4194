#include "checksums/Fingerprint.h"

#include "checksums/ToolWords.h"
#include "engine/NSTaskWrapperSync.h"
#include "engine/ToolsFolder.h"
#include "platform/FlacFile.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quav::fingerprint {

namespace {

constexpr qsizetype md5Size = 16;

/// Whether the tool has ended by itself, and no signal has ended it.
bool isOwnEnd(int exitStatus) {
    constexpr int signalled = 128;
    return exitStatus < signalled;
}

} // namespace

tl::expected<QString, QString> entry(const ToolsFolder& tools, const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir()) {
        // The tool would wait for ever for what comes out of a pipe; these would be its words.
        return path + QStringLiteral(": ERROR: reading metadata, status = "
                                     "\"FLAC__METADATA_CHAIN_STATUS_READ_ERROR\"\n");
    }
    const QString metaflac = QStringLiteral("metaflac");
    NSTaskWrapperSync run(tools, tools.tool(metaflac), {QStringLiteral("--show-md5"), path});
    const QString output = run.runTask();
    const auto status = run.exitStatus();
    if (!status) {
        return tl::make_unexpected(
            QCoreApplication::translate("Fingerprint", "metaflac could not be started: %1")
                .arg(output));
    }
    if (*status == 0 ? output.isEmpty() : !isOwnEnd(*status) || !isComplaint(output)) {
        return tl::make_unexpected(toolwords::failureOf(metaflac, *status));
    }
    return isComplaint(output) ? output : lastPathComponent(path) + u':' + output;
}

bool isComplaint(const QString& entry) {
    return entry.contains(u"FLAC__METADATA_CHAIN");
}

bool isUnset(const QString& entry) {
    return entry.trimmed().endsWith(u':' + QString(md5Size * 2, u'0'));
}

std::optional<QString> inFile(const QString& path) {
    const auto digest = flacDigest(path);
    return digest ? std::optional(QString::fromLatin1(digest->toHex())) : std::nullopt;
}

} // namespace quav::fingerprint
