#include "tags/WavpackTags.h"

#include "tags/TagError.h"
#include "tags/TagFiles.h"
#include "tags/TagStrings.h"
#include "tags/WrittenTags.h"

#include <QCoreApplication>
#include <QFile>

#include <taglib/apefooter.h>
#include <taglib/apetag.h>
#include <taglib/wavpackfile.h>

namespace quav {
namespace {

namespace APE = TagLib::APE;
using TagLib::WavPack::File;

constexpr long id3v1Size = 128;

struct TextField {
    TagsObject::Text TagsObject::*field;
    TagLib::String (APE::Tag::*get)() const;
    void (APE::Tag::*set)(const TagLib::String& text);
};

constexpr TextField textFields[] = {
    {&TagsObject::titleText, &APE::Tag::title, &APE::Tag::setTitle},
    {&TagsObject::artistText, &APE::Tag::artist, &APE::Tag::setArtist},
    {&TagsObject::albumText, &APE::Tag::album, &APE::Tag::setAlbum},
    {&TagsObject::commentText, &APE::Tag::comment, &APE::Tag::setComment},
    {&TagsObject::genreText, &APE::Tag::genre, &APE::Tag::setGenre}};

struct NumberField {
    TagsObject::Text TagsObject::*field;
    unsigned int (APE::Tag::*get)() const;
    void (APE::Tag::*set)(unsigned int number);
};

constexpr NumberField numberFields[] = {
    {&TagsObject::yearText, &APE::Tag::year, &APE::Tag::setYear},
    {&TagsObject::trackText, &APE::Tag::track, &APE::Tag::setTrack}};

void writeFields(APE::Tag& tag, const TagsObject& tags) {
    for (const auto& [field, get, set] : textFields) {
        if (hasText(tags.*field)) {
            (tag.*set)(tagLibString(*(tags.*field)));
        }
    }
    for (const auto& [field, get, set] : numberFields) {
        if (hasText(tags.*field) && (tags.*field)->toUInt() > 0) {
            (tag.*set)((tags.*field)->toUInt());
        }
    }
}

/// The bytes of a file without the tags at its end.
long soundLength(File& file) {
    const long tag =
        file.hasAPETag() ? static_cast<long>(file.APETag()->footer()->completeTagSize()) : 0;
    return file.length() - tag - (file.hasID3v1Tag() ? id3v1Size : 0);
}

/// Only binary items keep their bytes as such.
bool isSame(const APE::Item& a, const APE::Item& b) {
    return a.type() == b.type() && (a.type() == APE::Item::Binary ? a.binaryData() == b.binaryData()
                                                                  : a.values() == b.values());
}

/// What saving must lead to; no items where there was nothing to save.
struct Content {
    long soundLength = 0;
    APE::ItemListMap items;
};

/// The file is closed afterwards: before, part of it may not have been written.
tl::expected<Content, QString> saveTags(const QString& path, const TagsObject& tags,
                                        bool writeEmptyTags) {
    File file(QFile::encodeName(path).constData());
    if (!holdsAudio(file)) {
        throw TagError::cannotOpenForTagging();
    }
    const long length = soundLength(file);
    if (writeEmptyTags) {
        file.strip();
    }
    APE::Tag& tag = *file.APETag(true);
    writeFields(tag, tags);
    if (tag.isEmpty() && !writeEmptyTags) {
        return Content{length, {}};
    }
    if (!file.save()) {
        return notSaved(
            path, QCoreApplication::translate("TagLibTagsHelper", "The file could not be saved."));
    }
    return Content{length, tag.itemListMap()};
}

/// What is not in the file as it was meant to be; empty when all is.
QString difference(const Content& meant, File& found) {
    if (!holdsAudio(found) || soundLength(found) != meant.soundLength) {
        return QCoreApplication::translate("TagLibTagsHelper",
                                           "The sound has another length after saving.");
    }
    const APE::ItemListMap items =
        found.hasAPETag() ? found.APETag()->itemListMap() : APE::ItemListMap();
    for (const auto& [key, item] : meant.items) {
        const auto there = items.find(key);
        if (there == items.end() || !isSame(there->second, item)) {
            return readsBackDifferently(fromTagLibString(key));
        }
    }
    return {};
}

} // namespace

void readWavpackTags(const QString& path, TagsObject& tags) {
    File file(QFile::encodeName(path).constData(), false);
    const APE::Tag* tag = file.isValid() ? file.APETag() : nullptr;
    if (!tag) {
        return;
    }
    for (const auto& [field, get, set] : textFields) {
        tags.*field = fromTagLibString((tag->*get)());
    }
    for (const auto& [field, get, set] : numberFields) {
        if (const unsigned int number = (tag->*get)(); number > 0) {
            tags.*field = QString::number(number);
        }
    }
}

TagResult writeWavpackTags(const QString& path, const TagsObject& tags, bool writeEmptyTags) {
    const auto content = saveTags(path, tags, writeEmptyTags);
    if (!content) {
        return tl::make_unexpected(content.error());
    }
    File saved(QFile::encodeName(path).constData());
    const QString wrong = difference(*content, saved);
    return wrong.isEmpty() ? TagResult() : notSaved(path, wrong);
}

} // namespace quav
