#include "tags/TagLibTagsHelper.h"

#include "tags/FlacTags.h"
#include "tags/RiffTags.h"
#include "tags/TagError.h"

#include <QFileInfo>

#include <taglib/id3v2framefactory.h>

namespace quav {
namespace {

template <class Reader>
TagsObject readExisting(const QString& path, Reader read) {
    TagsObject tags;
    TagLibTagsHelper::setBlankTags(tags);
    if (QFileInfo(path).isFile()) {
        read(path, tags);
    }
    return tags;
}

/// False when there is no such file or it is read-only; a directory or device is no audio file.
bool isWritableFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() || !info.isWritable()) {
        return false;
    }
    if (!info.isFile()) {
        throw TagError::cannotOpenForTagging();
    }
    return true;
}

} // namespace

void TagLibTagsHelper::initialise() {
    TagLib::ID3v2::FrameFactory::instance()->setDefaultTextEncoding(TagLib::String::UTF8);
}

TagsObject TagLibTagsHelper::tagsForFlacFile(const QString& path) const {
    return readExisting(path, readFlacTags);
}

TagsObject TagLibTagsHelper::tagsForAIFFFile(const QString& path) const {
    return readExisting(path, readAiffTags);
}

TagsObject TagLibTagsHelper::tagsForWAVEFile(const QString& path) const {
    return readExisting(path, readWaveTags);
}

bool TagLibTagsHelper::writeTagsForFLACFile(const QString& path, const TagsObject& tags,
                                            bool writeEmptyTags) {
    problems_.clear();
    return isWritableFile(path) && writeFlacTags(path, tags, writeEmptyTags, problems_);
}

bool TagLibTagsHelper::writeTagsForAIFFFile(const QString& path, const TagsObject& tags) {
    problems_.clear();
    return isWritableFile(path) && writeAiffTags(path, tags);
}

bool TagLibTagsHelper::writeTagsForWAVEFile(const QString& path, const TagsObject& tags) {
    problems_.clear();
    return isWritableFile(path) && writeWaveTags(path, tags);
}

void TagLibTagsHelper::setBlankTags(TagsObject& tags) {
    for (const auto field : TagsObject::textFields()) {
        tags.*field = QLatin1String("");
    }
    tags.albumArt = QImage();
}

} // namespace quav
