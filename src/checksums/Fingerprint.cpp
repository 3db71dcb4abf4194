#include "checksums/Fingerprint.h"

#include "checksums/ToolWords.h"
#include "engine/NSTaskWrapperSync.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace quav::fingerprint {

namespace {

constexpr qsizetype id3HeaderSize = 10;
constexpr qsizetype id3FooterSize = 10;
constexpr qsizetype streamInfoSize = 34;
constexpr qsizetype md5Size = 16;

unsigned byteAt(const QByteArray& bytes, qsizetype at) {
    return static_cast<unsigned char>(bytes[at]);
}

/// The size of the ID3v2 tag that begins here; 0 when none does.
qsizetype id3Size(const QByteArray& bytes) {
    if (bytes.size() < id3HeaderSize || !bytes.startsWith("ID3")) {
        return 0;
    }
    constexpr unsigned hasFooter = 0x10;
    constexpr unsigned sevenBits = 0x7f;
    constexpr qsizetype flags = 5;
    qsizetype size = 0;
    for (qsizetype at = flags + 1; at < id3HeaderSize; ++at) {
        size = (size << 7) | (byteAt(bytes, at) & sevenBits);
    }
    return id3HeaderSize + size + ((byteAt(bytes, flags) & hasFooter) != 0 ? id3FooterSize : 0);
}

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
    QFile file(path);
    // A pipe under the name of a file would keep us waiting.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::nullopt;
    }
    const QByteArray marker("fLaC\0\0\0\x22", 8);
    if (!file.seek(id3Size(file.peek(id3HeaderSize)))) {
        return std::nullopt;
    }
    QByteArray start = file.read(marker.size() + streamInfoSize);
    if (start.size() < marker.size() + streamInfoSize) {
        return std::nullopt;
    }
    constexpr unsigned isLastBlock = 0x80;
    start[4] = static_cast<char>(byteAt(start, 4) & ~isLastBlock);
    if (!start.startsWith(marker)) {
        return std::nullopt;
    }
    return QString::fromLatin1(start.last(md5Size).toHex());
}

} // namespace quav::fingerprint
