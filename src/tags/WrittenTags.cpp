#include "tags/WrittenTags.h"

#include "tags/TagStrings.h"

#include <QCoreApplication>

#include <taglib/flacpicture.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/xiphcomment.h>

namespace quav {
namespace {

using TagLib::FLAC::MetadataBlock;

constexpr unsigned int flacMarkerSize = 4;
constexpr unsigned int blockHeaderSize = 4;
constexpr unsigned int lastBlockFlag = 0x80;
constexpr long id3v1Size = 128;
constexpr unsigned int riffHeaderSize = 8;

/// The first field of `meant` that `found` does not hold like that.
QString differingField(const TagLib::ByteVector& meant, const TagLib::ByteVector& found) {
    const TagLib::Ogg::XiphComment before(meant);
    const TagLib::Ogg::XiphComment after(found);
    for (const auto& [key, values] : before.fieldListMap()) {
        const auto there = after.fieldListMap().find(key);
        if (there == after.fieldListMap().end() || there->second != values) {
            return fromTagLibString(key);
        }
    }
    return QCoreApplication::translate("TagLibTagsHelper", "comment block");
}

} // namespace

std::optional<FlacContent> contentOnDisk(TagLib::FLAC::File& file) {
    const long id3v2Size = file.hasID3v2Tag() ? file.ID3v2Tag()->header()->completeTagSize() : 0;
    const long marker = file.find("fLaC", id3v2Size);
    if (!file.isValid() || marker < 0) {
        return std::nullopt;
    }
    FlacContent content;
    long position = marker + flacMarkerSize;
    for (bool last = false; !last;) {
        file.seek(position);
        const auto header = file.readBlock(blockHeaderSize);
        if (header.size() < blockHeaderSize) {
            return std::nullopt;
        }
        const unsigned int kind = header.toUInt(0U, 1U);
        const unsigned int size = header.toUInt(1U, 3U);
        last = (kind & lastBlockFlag) != 0;
        switch (kind & ~lastBlockFlag) {
        case MetadataBlock::VorbisComment:
            content.comment = file.readBlock(size);
            break;
        case MetadataBlock::Picture:
            content.pictures.push_back(file.readBlock(size));
            break;
        default:
            break;
        }
        position += blockHeaderSize + static_cast<long>(size);
    }
    content.audioLength = file.length() - (file.hasID3v1Tag() ? id3v1Size : 0) - position;
    return content;
}

FlacContent contentToSave(TagLib::FLAC::File& file, const FlacContent& before) {
    FlacContent content;
    content.audioLength = before.audioLength;
    content.comment = file.xiphComment(true)->render(false);
    for (const auto* picture : file.pictureList()) {
        content.pictures.push_back(picture->render());
    }
    return content;
}

QString differenceBetween(const FlacContent& meant, const std::optional<FlacContent>& found) {
    if (!found) {
        return QCoreApplication::translate("TagLibTagsHelper",
                                           "The metadata blocks of the FLAC file cannot be read.");
    }
    if (found->audioLength != meant.audioLength) {
        return QCoreApplication::translate("TagLibTagsHelper",
                                           "The sound has another length after saving.");
    }
    if (found->comment != meant.comment) {
        return readsBackDifferently(differingField(meant.comment, found->comment));
    }
    return found->pictures == meant.pictures
               ? QString()
               : readsBackDifferently(QCoreApplication::translate("TagLibTagsHelper", "picture"));
}

QString readsBackDifferently(const QString& field) {
    return QCoreApplication::translate("TagLibTagsHelper", "The field %1 reads back differently.")
        .arg(field);
}

qint64 bytesBehindRiff(TagLib::File& file, bool bigEndian) {
    file.seek(0);
    const auto header = file.readBlock(riffHeaderSize);
    if (header.size() < riffHeaderSize) {
        return -1;
    }
    return file.length() - qint64(riffHeaderSize) - header.toUInt(4U, bigEndian);
}

} // namespace quav
