#include "tags/TagLibTagsHelper.h"

#include "tags/FlacTags.h"
#include "tags/RiffTags.h"
#include "tags/TagFiles.h"
#include "tags/WavpackTags.h"

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

TagsObject TagLibTagsHelper::tagsForWavpackFile(const QString& path) const {
    return readExisting(path, readWavpackTags);
}

TagResult TagLibTagsHelper::writeTagsForFLACFile(const QString& path, const TagsObject& tags,
                                                 bool writeEmptyTags) {
    problems_.clear();
    return openForWriting(path).and_then(
        [&] { return writeFlacTags(path, tags, writeEmptyTags, problems_); });
}

TagResult TagLibTagsHelper::writeTagsForAIFFFile(const QString& path, const TagsObject& tags) {
    problems_.clear();
    return openForWriting(path).and_then([&] { return writeAiffTags(path, tags); });
}

TagResult TagLibTagsHelper::writeTagsForWAVEFile(const QString& path, const TagsObject& tags) {
    problems_.clear();
    return openForWriting(path).and_then([&] { return writeWaveTags(path, tags); });
}

TagResult TagLibTagsHelper::writeTagsForWavpackFile(const QString& path, const TagsObject& tags,
                                                    bool writeEmptyTags) {
    problems_.clear();
    return openForWriting(path).and_then(
        [&] { return writeWavpackTags(path, tags, writeEmptyTags); });
}

void TagLibTagsHelper::setBlankTags(TagsObject& tags) {
    for (const auto field : TagsObject::textFields()) {
        tags.*field = QLatin1String("");
    }
    tags.albumArt = QImage();
}

} // namespace quav
