#include "checksums/Fingerprint.h"

#include "engine/NSTaskWrapperSync.h"
#include "engine/ToolOutput.h"
#include "engine/ToolsFolder.h"
#include "platform/FlacFile.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quav::fingerprint {

namespace {

const QString metaflac = QStringLiteral("metaflac");
const QString unset(32, u'0');

/// Whether the tool has ended by itself, and no signal has ended it.
bool isOwnEnd(int exitStatus) {
    constexpr int signalled = 128;
    return exitStatus < signalled;
}

} // namespace

ToolCall callFor(const QString& path) {
    return {metaflac, {QStringLiteral("--show-md5"), path}};
}

tl::expected<QString, QString> entry(const ToolsFolder& tools, const QString& path) {
    if (const auto complaint = complaintOfSpecialFile(path)) {
        return *complaint;
    }
    const ToolCall call = callFor(path);
    NSTaskWrapperSync run(tools, tools.tool(call.tool), call.arguments);
    const QString output = run.runTask();
    const auto status = run.exitStatus();
    if (!status) {
        return tl::make_unexpected(
            QCoreApplication::translate("Fingerprint", "metaflac could not be started: %1")
                .arg(output));
    }
    return entryOf(path, output, *status);
}

std::optional<QString> complaintOfSpecialFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() || info.isFile() || info.isDir()) {
        return std::nullopt;
    }
    return path + QStringLiteral(": ERROR: reading metadata, status = "
                                 "\"FLAC__METADATA_CHAIN_STATUS_READ_ERROR\"\n");
}

tl::expected<QString, QString> entryOf(const QString& path, const QString& output, int exitStatus) {
    if (exitStatus == 0 ? output.isEmpty() : !isOwnEnd(exitStatus) || !isComplaint(output)) {
        return tl::make_unexpected(tooloutput::failureOf(metaflac, exitStatus));
    }
    return isComplaint(output) ? output : lastPathComponent(path) + u':' + output;
}

bool isComplaint(const QString& entry) {
    return entry.contains(u"FLAC__METADATA_CHAIN");
}

bool isUnset(const QString& entry) {
    return entry.trimmed().endsWith(u':' + unset);
}

QString unsetNote() {
    return QCoreApplication::translate("Fingerprint", "it has no fingerprint, only zeros");
}

QString unsetWarning(const QString& path) {
    return QCoreApplication::translate(
               "Fingerprint", "“%1” has no fingerprint: its encoder left it at zeros, so nothing "
                              "can be checked against it. Encode it anew to get one.")
        .arg(path);
}

std::optional<QString> inFile(const QString& path) {
    const auto digest = flacDigest(path);
    return digest ? std::optional(QString::fromLatin1(digest->toHex())) : std::nullopt;
}

bool isUnsetIn(const QString& path) {
    return inFile(path) == unset;
}

} // namespace quav::fingerprint
