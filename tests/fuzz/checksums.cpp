#include "checksums/ChecksumList.h"
#include "checksums/ToolWords.h"
#include "engine/ToolPieces.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

using namespace quav;

namespace {

// What every reading of a list keeps to: no entry without a line, no more lines than there are, and
// the tolerant reading finds whatever the strict one does.
void read(ChecksumKind kind, const QByteArray& bytes, checksumlist::Reading reading) {
    const QString text = checksumlist::decoded(bytes, reading);
    const checksumlist::List list = checksumlist::read(kind, text, reading);
    if (list.allLines < static_cast<qsizetype>(list.lines.size())) {
        __builtin_trap();
    }
    for (const checksumlist::Line& line : list.lines) {
        if (line.text.isEmpty() && kind != ChecksumKind::Md5) {
            __builtin_trap();
        }
        if (line.strict && !line.entry) {
            __builtin_trap();
        }
    }
}

void readWords(const QByteArray& bytes) {
    ToolPieces pieces;
    QString log;
    for (const QString& piece : pieces.feed(bytes) + pieces.finish()) {
        toolwords::hashPiece(piece);
        toolwords::hashResult(piece);
        toolwords::numberBefore(piece, QStringLiteral("% done"));
        log += toolwords::flacWords(piece, QStringLiteral("a")) + u'\n';
    }
    if (!log.endsWith(toolwords::fromLastProgress(log))) {
        __builtin_trap();
    }
    toolwords::fromLastApeProgress(log, QStringLiteral("a"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const ChecksumKind kind : {ChecksumKind::Md5, ChecksumKind::St5, ChecksumKind::Ffp}) {
        for (const auto reading :
             {checksumlist::Reading::Strict, checksumlist::Reading::Tolerant}) {
            read(kind, bytes, reading);
        }
    }
    checksumlist::kindByContent(checksumlist::decoded(bytes, checksumlist::Reading::Tolerant));
    readWords(bytes);
    return 0;
}
