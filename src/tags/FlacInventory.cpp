#include "tags/FlacInventory.h"

#include "tags/RiffInventory.h"

#include <QCoreApplication>
#include <QtEndian>

#include <optional>

namespace quav {
namespace {

enum BlockType : unsigned char {
    StreamInfo,
    Padding,
    Application,
    SeekTable,
    VorbisComment,
    CueSheet,
    Picture
};

/// Reads fields one after the other; a field that is not all there is empty and ends it all.
class Fields {
public:
    explicit Fields(QByteArray bytes) : bytes_(std::move(bytes)) {}

    bool isDamaged() const { return damaged_; }
    bool atEnd() const { return position_ >= bytes_.size(); }

    std::uint32_t littleEndian() { return damagedOr<quint32>(qFromLittleEndian<quint32>); }
    std::uint32_t bigEndian() { return damagedOr<quint32>(qFromBigEndian<quint32>); }

    QByteArray bytes(std::uint64_t count) {
        if (damaged_ || count > static_cast<std::uint64_t>(bytes_.size() - position_)) {
            damaged_ = true;
            return {};
        }
        const qsizetype from = position_;
        position_ += static_cast<qsizetype>(count);
        return bytes_.mid(from, static_cast<qsizetype>(count));
    }
    QByteArray rest() { return bytes(static_cast<std::uint64_t>(bytes_.size() - position_)); }

private:
    template <typename Number>
    Number damagedOr(Number (*read)(const void*)) {
        const QByteArray number = bytes(sizeof(Number));
        return damaged_ ? Number(0) : read(number.constData());
    }

    QByteArray bytes_;
    qsizetype position_ = 0;
    bool damaged_ = false;
};

bool addPictureBlock(const QByteArray& content, Inventory& inventory) {
    Fields fields(content);
    fields.bigEndian();               // what it shows
    fields.bytes(fields.bigEndian()); // its MIME type
    const QByteArray description = fields.bytes(fields.bigEndian());
    fields.bytes(4 * sizeof(quint32)); // width, height, depth, colours
    const std::uint32_t size = fields.bigEndian();
    if (fields.isDamaged()) {
        return false;
    }
    // Some programs wrote a size that is too large for the block.
    inventory.addPicture(fields.rest().left(static_cast<qsizetype>(size)),
                         QString::fromUtf8(description));
    return true;
}

void addComment(const QByteArray& name, const QByteArray& value, Inventory& inventory) {
    const QString key = QString::fromUtf8(name);
    const bool isPicture = key.compare(u"METADATA_BLOCK_PICTURE", Qt::CaseInsensitive) == 0;
    if (!isPicture || !addPictureBlock(QByteArray::fromBase64(value), inventory)) {
        inventory.addTag(key, QString::fromUtf8(value));
    }
}

bool addCommentBlock(const QByteArray& content, Inventory& inventory) {
    Fields fields(content);
    fields.bytes(fields.littleEndian()); // the encoder
    const std::uint32_t count = fields.littleEndian();
    for (std::uint32_t i = 0; i < count && !fields.isDamaged(); ++i) {
        const QByteArray comment = fields.bytes(fields.littleEndian());
        const qsizetype equals = comment.indexOf('=');
        if (equals >= 0) {
            addComment(comment.left(equals), comment.mid(equals + 1), inventory);
        } else if (!comment.isEmpty()) {
            addComment({}, comment, inventory);
        }
    }
    return !fields.isDamaged();
}

/// A chunk of the WAV or AIFF file that the sound came from; only the header of the sound's own.
void addStoredChunk(RiffKind kind, const QByteArray& chunk, Inventory& inventory) {
    Fields fields(chunk);
    const QByteArray id = fields.bytes(4);
    const std::uint32_t size = kind == RiffKind::Wave ? fields.littleEndian() : fields.bigEndian();
    const QByteArray content = fields.rest();
    addChunk(kind, id, content.left(static_cast<qsizetype>(size)), inventory);
}

void addApplication(const QByteArray& content, Inventory& inventory) {
    const QByteArray id = content.left(4);
    if (id == "riff") {
        addStoredChunk(RiffKind::Wave, content.mid(4), inventory);
    } else if (id == "aiff") {
        addStoredChunk(RiffKind::Aiff, content.mid(4), inventory);
    } else if (!inventory.isElsewhere("application", content)) {
        inventory.addPiece(QCoreApplication::translate("Losses", "the application block “%1”")
                               .arg(shownName(QString::fromLatin1(id))));
    }
}

bool addBlock(unsigned char type, const QByteArray& content, Inventory& inventory) {
    if (type == Application) {
        addApplication(content, inventory);
        return true;
    }
    if (inventory.isElsewhere("block " + QByteArray::number(type), content)) {
        return true;
    }
    switch (type) {
    case VorbisComment:
        return addCommentBlock(content, inventory);
    case Picture:
        return addPictureBlock(content, inventory);
    case CueSheet:
        inventory.addPiece(QCoreApplication::translate("Losses", "the cue sheet"));
        return true;
    default:
        inventory.addPiece(
            QCoreApplication::translate("Losses", "the metadata block of type %1").arg(type));
        return true;
    }
}

bool isTechnical(unsigned char type) {
    return type == StreamInfo || type == Padding || type == SeekTable;
}

/// Tags that do not belong into a FLAC file, but that some programs put at its end.
void addTagsAtTheEnd(const FileContent& file, Inventory& inventory) {
    constexpr std::uint64_t id3v1Size = 128;
    constexpr std::uint64_t apeFooterSize = 32;
    std::uint64_t end = file.size();
    const auto add = [&](std::uint64_t size, const char* marker, const QString& phrase) {
        const QByteArray tag = end > size ? file.peek(end - size, size) : QByteArray();
        if (!tag.startsWith(marker)) {
            return;
        }
        end -= size;
        if (!inventory.isElsewhere(marker, tag)) {
            inventory.addPiece(phrase);
        }
    };
    add(id3v1Size, "TAG", QCoreApplication::translate("Losses", "the ID3v1 tag"));
    add(apeFooterSize, "APETAGEX", QCoreApplication::translate("Losses", "the APE tag"));
}

} // namespace

bool readFlacInventory(FileContent& file, std::uint64_t start, Inventory& inventory) {
    constexpr std::uint64_t markerSize = 4;
    constexpr std::uint64_t headerSize = 4;
    constexpr quint32 lastFlag = 0x80000000U;
    std::uint64_t position = start + markerSize;
    for (bool last = false; !last;) {
        const auto bytes = file.read(position, headerSize);
        if (!bytes) {
            return false;
        }
        const quint32 header = qFromBigEndian<quint32>(bytes->constData());
        const auto type = static_cast<unsigned char>(header >> 24 & 0x7fU);
        const quint32 size = header & 0xffffffU;
        last = (header & lastFlag) != 0;
        position += headerSize;
        if (!isTechnical(type)) {
            const auto content = file.read(position, size);
            if (!content || !addBlock(type, *content, inventory)) {
                return false;
            }
        }
        position += size;
    }
    addTagsAtTheEnd(file, inventory);
    return position <= file.size();
}

} // namespace quav
