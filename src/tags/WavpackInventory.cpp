#include "tags/WavpackInventory.h"

#include "tags/RiffInventory.h"

#include <QCoreApplication>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace quav {
namespace {

constexpr std::uint64_t blockHeaderSize = 32;
constexpr std::uint64_t sizeAt = 4;
constexpr qsizetype samplesAt = 20;

quint32 numberAt(const QByteArray& bytes, qsizetype at) {
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

/// What is kept of the file that was encoded, besides its sound (WavPack 5 file format).
enum Piece : unsigned char {
    RiffHeader = 0x21,
    RiffTrailer = 0x22,
    OtherHeader = 0x23, ///< of AIFF, CAF, Wave64 and others
    OtherTrailer = 0x24,
};

/// The chunks in the bytes, from this place on. Of the one with the sound there is only the header.
void addChunks(const QByteArray& bytes, qsizetype position, Inventory& inventory) {
    constexpr qsizetype header = 8;
    while (position + header <= bytes.size()) {
        const QByteArray id = bytes.mid(position, 4);
        const qsizetype size = numberAt(bytes, position + 4);
        if (id == "data") {
            return;
        }
        addChunk(RiffKind::Wave, id, bytes.mid(position + header, size), inventory);
        position += header + size + size % 2;
    }
}

void addPiece(unsigned char kind, const QByteArray& bytes, Inventory& inventory) {
    constexpr qsizetype riffHeader = 12;
    constexpr qsizetype bareHeader = 128; // hardly more than a description of the sound
    switch (kind) {
    case RiffHeader:
        addChunks(bytes, riffHeader, inventory);
        break;
    case RiffTrailer:
        addChunks(bytes, 0, inventory);
        break;
    case OtherHeader:
        if (bytes.size() <= bareHeader) {
            break;
        }
        inventory.addPiece(QCoreApplication::translate(
            "Losses", "what stood before the sound in the file that it was made from"));
        break;
    case OtherTrailer:
        inventory.addPiece(QCoreApplication::translate(
            "Losses", "what followed the sound in the file that it was made from"));
        break;
    default:
        break;
    }
}

/// Walks through what a block holds before its samples. False when it does not add up.
bool addBlock(const QByteArray& block, Inventory& inventory) {
    constexpr unsigned char isLarge = 0x80;
    constexpr unsigned char isOdd = 0x40;
    constexpr unsigned char kindBits = 0x3f;
    for (qsizetype position = 0; position + 2 <= block.size();) {
        const auto id = static_cast<unsigned char>(block[position]);
        const bool large = (id & isLarge) != 0;
        const qsizetype header = large ? 4 : 2;
        if (position + header > block.size()) {
            return false;
        }
        const quint32 words = large ? numberAt(block, position) >> 8U
                                    : static_cast<unsigned char>(block[position + 1]);
        const qsizetype size = qsizetype{2} * words;
        position += header;
        if (position + size > block.size()) {
            return false;
        }
        addPiece(id & kindBits, block.mid(position, size - ((id & isOdd) != 0 ? 1 : 0)), inventory);
        position += size;
    }
    return true;
}

/// The name that a tag has in a FLAC file.
QString commonName(const QString& key) {
    const QString name = key.toUpper();
    return name == u"TRACK"  ? QStringLiteral("TRACKNUMBER")
           : name == u"DISC" ? QStringLiteral("DISCNUMBER")
                             : name;
}

void addItem(const QString& key, quint32 flags, const QByteArray& value, Inventory& inventory) {
    constexpr quint32 isBinary = 2;
    if ((flags & isBinary) == 0) {
        for (const QByteArray& one : value.split('\0')) {
            inventory.addTag(commonName(key), QString::fromUtf8(one));
        }
    } else if (key.startsWith(u"cover art", Qt::CaseInsensitive)) {
        inventory.addPicture(value.mid(value.indexOf('\0') + 1), {});
    } else {
        inventory.addPiece(tagPhrase(key));
    }
}

/// The items of an APEv2 tag; false when they do not add up.
bool addItems(const QByteArray& items, quint32 count, Inventory& inventory) {
    constexpr qsizetype itemHeader = 8;
    qsizetype position = 0;
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype keyEnd = items.indexOf('\0', position + itemHeader);
        if (position + itemHeader > items.size() || keyEnd < 0) {
            return false;
        }
        const qsizetype size = numberAt(items, position);
        const QString key =
            QString::fromLatin1(items.mid(position + itemHeader, keyEnd - position - itemHeader));
        if (keyEnd + 1 + size > items.size()) {
            return false;
        }
        addItem(key, numberAt(items, position + 4), items.mid(keyEnd + 1, size), inventory);
        position = keyEnd + 1 + size;
    }
    return true;
}

bool readTagsAtTheEnd(FileContent& file, Inventory& inventory) {
    constexpr std::uint64_t id3v1Size = 128;
    constexpr std::uint64_t footerSize = 32;
    std::uint64_t end = file.size();
    if (end > id3v1Size && file.peek(end - id3v1Size, 3) == "TAG") {
        inventory.addPiece(QCoreApplication::translate("Losses", "the ID3v1 tag"));
        end -= id3v1Size;
    }
    const QByteArray footer =
        end > footerSize ? file.peek(end - footerSize, footerSize) : QByteArray();
    if (!footer.startsWith("APETAGEX")) {
        return true;
    }
    constexpr qsizetype tagSizeAt = 12;
    constexpr qsizetype countAt = 16;
    const std::uint64_t size = numberAt(footer, tagSizeAt);
    if (size < footerSize || size > end) {
        return false;
    }
    const auto items = file.read(end - size, size - footerSize);
    return items && addItems(*items, numberAt(footer, countAt), inventory);
}

} // namespace

bool readWavpackInventory(FileContent& file, std::uint64_t start, Inventory& inventory) {
    std::uint64_t position = start;
    for (bool isFirst = true;; isFirst = false) {
        const QByteArray header = file.peek(position, blockHeaderSize);
        if (static_cast<std::uint64_t>(header.size()) < blockHeaderSize ||
            !header.startsWith("wvpk")) {
            break;
        }
        const std::uint64_t size = numberAt(header, sizeAt) + std::uint64_t{8};
        if (size < blockHeaderSize) {
            return false;
        }
        // Others hold samples and what it takes to decode them.
        if (isFirst || numberAt(header, samplesAt) == 0) {
            const auto block = file.read(position + blockHeaderSize, size - blockHeaderSize);
            if (!block || !addBlock(*block, inventory)) {
                return false;
            }
        }
        position += size;
    }
    return position > start && readTagsAtTheEnd(file, inventory);
}

} // namespace quav
