#include "checksums/ChecksumList.h"
#include "checksums/Spellings.h"
#include "engine/ToolOutput.h"
#include "engine/ToolOutputReader.h"

#include <QByteArray>

#include <array>
#include <cstddef>
#include <cstdint>

using namespace quav;

namespace {

// What every reading of a list keeps to: no entry without a line, no more lines than there are, and
// the tolerant reading finds whatever the strict one does that has a digest.
void read(ChecksumKind kind, const QByteArray& bytes, checksumlist::Reading reading) {
    const QString text = checksumlist::decoded(bytes, reading);
    const checksumlist::List list = checksumlist::read(kind, text, reading, {kind, true, {kind}});
    if (list.allLines < static_cast<qsizetype>(list.lines.size())) {
        __builtin_trap();
    }
    for (const checksumlist::Line& line : list.lines) {
        if (line.text.isEmpty() && kind != ChecksumKind::Md5) {
            __builtin_trap();
        }
        const bool isWhole = line.strict && spellings::isDigest(line.strict->digest);
        const auto other = checksumlist::otherReading(kind, line.text);
        if (isWhole && !line.entry && !(other && other->kind != kind)) {
            __builtin_trap();
        }
    }
}

void readWords(const QByteArray& bytes) {
    ToolOutputReader pieces;
    QString log;
    for (const QString& piece : pieces.feed(bytes) + pieces.finish()) {
        tooloutput::hashPiece(piece);
        tooloutput::hashResult(piece);
        tooloutput::numberBefore(piece, QStringLiteral("% done"));
        log += tooloutput::flacWords(piece, QStringLiteral("a")) + u'\n';
    }
    tooloutput::fromLastApeProgress(log, QStringLiteral("a"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using enum ChecksumKind;
    using enum checksumlist::Reading;
    if (size == 0) {
        return 0;
    }
    // The first byte says who reads the others.
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1),
                           static_cast<qsizetype>(size - 1));
    constexpr unsigned choices = 8;
    constexpr std::array kinds{Md5, St5, Ffp};
    const unsigned choice = *data % choices;
    if (choice < 2 * kinds.size()) {
        read(kinds.at(choice % kinds.size()), bytes, choice < kinds.size() ? Strict : Tolerant);
    } else if (choice == 2 * kinds.size()) {
        checksumlist::kindsIn(checksumlist::decoded(bytes, Tolerant), QStringLiteral("a.txt"));
    } else {
        readWords(bytes);
    }
    return 0;
}
