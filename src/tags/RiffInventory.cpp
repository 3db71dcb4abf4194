#include "tags/RiffInventory.h"

#include "tags/Id3v2Inventory.h"

#include <QCoreApplication>
#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace quav {
namespace {

constexpr qsizetype idSize = 4;
constexpr std::uint64_t chunkHeaderSize = 8;
constexpr std::uint64_t riffHeaderSize = 12;
constexpr std::uint32_t sizeElsewhere = 0xFFFFFFFF;

/// The sound, what describes it, and room that is kept free.
bool isTechnical(RiffKind kind, const QByteArray& id) {
    static const QSet<QByteArray> wave = {"FMT ", "DATA", "FACT", "DS64", "RIFF",
                                          "RF64", "WAVE", "JUNK", "PAD ", "FLLR"};
    static const QSet<QByteArray> aiff = {"COMM", "SSND", "FVER", "FORM", "JUNK", "PAD ", "FLLR"};
    return (kind == RiffKind::Wave ? wave : aiff).contains(id.toUpper());
}

QString shownId(const QByteArray& id) {
    return shownName(QString::fromLatin1(id).trimmed());
}

QString chunkPhrase(const QByteArray& id) {
    return QCoreApplication::translate("Losses", "the chunk %1").arg(shownId(id));
}

/// The text up to the zero that ends it; UTF-8 if it can be, else one byte a character.
QString textOf(const QByteArray& content) {
    const QByteArray bytes = content.left(qstrnlen(content.constData(), content.size()));
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

std::uint32_t number(RiffKind kind, const char* bytes) {
    return kind == RiffKind::Wave ? qFromLittleEndian<quint32>(bytes)
                                  : qFromBigEndian<quint32>(bytes);
}

void addInfoEntry(const QByteArray& id, const QByteArray& content, Inventory& inventory) {
    static const QHash<QByteArray, QString> keys = {
        {"INAM", QStringLiteral("TITLE")},       {"IART", QStringLiteral("ARTIST")},
        {"IPRD", QStringLiteral("ALBUM")},       {"ICRD", QStringLiteral("DATE")},
        {"IGNR", QStringLiteral("GENRE")},       {"ICMT", QStringLiteral("COMMENT")},
        {"ITRK", QStringLiteral("TRACKNUMBER")}, {"IPRT", QStringLiteral("TRACKNUMBER")},
        {"ICOP", QStringLiteral("COPYRIGHT")}};
    if (id == "ISFT") { // the program that wrote the file
        return;
    }
    inventory.add(QCoreApplication::translate("Losses", "the INFO entry %1").arg(shownId(id)),
                  keys.value(id, QStringLiteral("INFO:") + QString::fromLatin1(id)),
                  textOf(content));
}

/// A list of chunks inside a chunk; what it is a list of are its first four letters.
void addList(const QByteArray& content, Inventory& inventory) {
    if (!content.startsWith("INFO")) {
        inventory.addPiece(chunkPhrase("LIST " + content.left(idSize)));
        return;
    }
    qsizetype position = idSize;
    while (position + qsizetype(chunkHeaderSize) <= content.size()) {
        const qsizetype size = number(RiffKind::Wave, content.constData() + position + idSize);
        addInfoEntry(content.mid(position, idSize),
                     content.mid(position + qsizetype(chunkHeaderSize), size), inventory);
        position += qsizetype(chunkHeaderSize) + size + size % 2;
    }
}

/// The tag that says the same as a chunk of text of an AIFF file; empty when there is none.
QString aiffTextKey(const QByteArray& id) {
    static const QHash<QByteArray, QString> keys = {{"NAME", QStringLiteral("TITLE")},
                                                    {"AUTH", QStringLiteral("ARTIST")},
                                                    {"ANNO", QStringLiteral("COMMENT")},
                                                    {"(c) ", QStringLiteral("COPYRIGHT")}};
    return keys.value(id);
}

struct Chunk {
    QByteArray id;
    std::uint64_t start; ///< of the content
    std::uint64_t size;
};

class RiffWalk {
public:
    RiffWalk(FileContent& file, RiffKind kind, Inventory& inventory)
        : file_(file), kind_(kind), inventory_(inventory) {}

    bool run(std::uint64_t start);

private:
    std::optional<Chunk> chunkAt(std::uint64_t position);
    std::uint64_t sizeOf(const QByteArray& id, std::uint32_t stated, std::uint64_t left) const;
    void take(const Chunk& chunk);
    void readLargeSizes(const QByteArray& content);
    std::uint64_t endOf(const Chunk& chunk);
    void takeRest(std::uint64_t position);

    FileContent& file_;
    RiffKind kind_;
    Inventory& inventory_;
    QHash<QByteArray, std::uint64_t> largeSizes_;
};

/// Nothing when no chunk begins there.
std::optional<Chunk> RiffWalk::chunkAt(std::uint64_t position) {
    const QByteArray header = file_.peek(position, chunkHeaderSize);
    const QByteArray id = header.left(idSize);
    const auto isPrintable = [](char letter) { return letter >= ' ' && letter <= '~'; };
    if (header.size() < qsizetype(chunkHeaderSize) || !std::ranges::all_of(id, isPrintable)) {
        return std::nullopt;
    }
    const std::uint64_t start = position + chunkHeaderSize;
    const auto stated = number(kind_, header.constData() + idSize);
    return Chunk{id, start, sizeOf(id, stated, file_.size() - start)};
}

/// A recorder that was cut off has told no size; the sound goes on to the end then.
std::uint64_t RiffWalk::sizeOf(const QByteArray& id, std::uint32_t stated,
                               std::uint64_t left) const {
    const bool isSound = id == (kind_ == RiffKind::Wave ? "data" : "SSND");
    std::uint64_t size = stated;
    if (stated == sizeElsewhere) {
        size = largeSizes_.value(id, left);
    } else if (stated == 0 && isSound) {
        size = left;
    }
    return std::min(size, left);
}

/// The sizes that have no room in 32 bits, in the chunk ds64 of an RF64 file.
void RiffWalk::readLargeSizes(const QByteArray& content) {
    constexpr qsizetype dataSizeAt = 8;
    constexpr qsizetype tableAt = 28;
    constexpr qsizetype entrySize = 12;
    if (content.size() >= tableAt) {
        largeSizes_.insert("data", qFromLittleEndian<quint64>(content.constData() + dataSizeAt));
    }
    for (qsizetype at = tableAt; at + entrySize <= content.size(); at += entrySize) {
        largeSizes_.insert(content.mid(at, idSize),
                           qFromLittleEndian<quint64>(content.constData() + at + idSize));
    }
}

void RiffWalk::take(const Chunk& chunk) {
    if (chunk.id == "ds64") {
        readLargeSizes(file_.peek(chunk.start, std::min<std::uint64_t>(chunk.size, 4096)));
    }
    if (chunk.size == 0 || isTechnical(kind_, chunk.id)) {
        return;
    }
    // No FLAC file keeps a larger chunk, and only a tag with pictures can honestly be larger.
    constexpr std::uint64_t largestPiece = 0xFFFFFF;
    const bool isTag = chunk.id.toUpper() == "ID3 ";
    const auto content =
        isTag || chunk.size <= largestPiece ? file_.read(chunk.start, chunk.size) : std::nullopt;
    if (content) {
        addChunk(kind_, chunk.id, *content, inventory_);
    } else {
        inventory_.addPiece(chunkPhrase(chunk.id));
    }
}

/// Some programs forget the byte that makes an odd size even.
std::uint64_t RiffWalk::endOf(const Chunk& chunk) {
    const std::uint64_t end = chunk.start + chunk.size;
    const bool padded = chunk.size % 2 != 0;
    return padded && !chunkAt(end + 1) && chunkAt(end) ? end : end + (padded ? 1 : 0);
}

void RiffWalk::takeRest(std::uint64_t position) {
    if (position >= file_.size()) {
        return;
    }
    constexpr std::uint64_t enoughToSee = 65536;
    const std::uint64_t size = file_.size() - position;
    const QByteArray rest = file_.peek(position, enoughToSee);
    if (size <= enoughToSee && rest.count('\0') == rest.size()) {
        return;
    }
    const auto most = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
    const int bytes = static_cast<int>(std::min(size, most));
    inventory_.addPiece(
        QCoreApplication::translate("Losses", "%Ln bytes behind the last chunk", nullptr, bytes));
}

bool RiffWalk::run(std::uint64_t start) {
    constexpr int mostChunks = 100000;
    std::uint64_t position = start + riffHeaderSize;
    for (int count = 0; count < mostChunks; ++count) {
        const auto chunk = chunkAt(position);
        if (!chunk) {
            takeRest(position);
            return true;
        }
        take(*chunk);
        position = endOf(*chunk);
    }
    return false;
}

} // namespace

std::optional<RiffKind> riffKindOf(const QByteArray& beginning) {
    const QByteArray outer = beginning.left(idSize);
    const QByteArray inner = beginning.mid(8, idSize);
    if ((outer == "RIFF" || outer == "RF64" || outer == "BW64") && inner == "WAVE") {
        return RiffKind::Wave;
    }
    return outer == "FORM" && (inner == "AIFF" || inner == "AIFC") ? std::optional(RiffKind::Aiff)
                                                                   : std::nullopt;
}

bool readRiffInventory(FileContent& file, std::uint64_t start, Inventory& inventory) {
    const auto kind = riffKindOf(file.peek(start, riffHeaderSize));
    return kind && RiffWalk(file, *kind, inventory).run(start);
}

void addChunk(RiffKind kind, const QByteArray& id, const QByteArray& content,
              Inventory& inventory) {
    const char* family = kind == RiffKind::Wave ? "riff " : "aiff ";
    if (content.isEmpty() || isTechnical(kind, id) || inventory.isElsewhere(family + id, content)) {
        return;
    }
    const QString textKey = kind == RiffKind::Aiff ? aiffTextKey(id) : QString();
    if (id.toUpper() == "ID3 " && id3v2Size(content) > 0) {
        readId3v2Inventory(content, inventory);
    } else if (kind == RiffKind::Wave && id == "LIST") {
        addList(content, inventory);
    } else if (!textKey.isEmpty()) {
        inventory.add(chunkPhrase(id), textKey, textOf(content));
    } else {
        inventory.addPiece(chunkPhrase(id));
    }
}

} // namespace quav
