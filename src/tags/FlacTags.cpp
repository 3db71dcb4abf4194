#include "tags/FlacTags.h"

#include "platform/Version.h"
#include "tags/AlbumArt.h"
#include "tags/TagDates.h"
#include "tags/TagError.h"
#include "tags/TagFiles.h"
#include "tags/TagStrings.h"
#include "tags/WrittenTags.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QStringList>

#include <taglib/flacfile.h>
#include <taglib/flacpicture.h>
#include <taglib/xiphcomment.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quav {
namespace {

using TagLib::Ogg::XiphComment;

enum class Values { Joined, First };

struct FieldKey {
    TagsObject::Text TagsObject::*field;
    const char* key;
    Values values;
};

/// The comment and the date are not here: they have rules of their own.
constexpr FieldKey fieldKeys[] = {{&TagsObject::titleText, "TITLE", Values::Joined},
                                  {&TagsObject::artistText, "ARTIST", Values::Joined},
                                  {&TagsObject::albumArtistText, "ALBUMARTIST", Values::Joined},
                                  {&TagsObject::albumText, "ALBUM", Values::Joined},
                                  {&TagsObject::discText, "DISCNUMBER", Values::First},
                                  {&TagsObject::discTotalText, "DISCTOTAL", Values::First},
                                  {&TagsObject::trackText, "TRACKNUMBER", Values::First},
                                  {&TagsObject::trackTotalText, "TRACKTOTAL", Values::First},
                                  {&TagsObject::genreText, "GENRE", Values::Joined},
                                  {&TagsObject::composerText, "COMPOSER", Values::Joined}};

constexpr const char* commentKey = "COMMENT";
constexpr const char* descriptionKey = "DESCRIPTION";
constexpr const char* dateKey = "DATE";
constexpr const char* encoderKey = "ENCODER";

/// The length of a metadata block has 24 bits. TagLib writes longer blocks too, and nothing can
/// read the file then.
constexpr std::size_t largestBlock = 0xFFFFFF;

/// The numbers in a picture block, which come besides its MIME type, description and data.
constexpr std::size_t pictureFieldsSize = 32;

QString joined(const TagLib::StringList& values) {
    QStringList texts;
    for (const auto& value : values) {
        texts.append(fromTagLibString(value));
    }
    texts.removeDuplicates();
    return texts.join(QStringLiteral("; "));
}

/// Nothing when the key does not occur.
TagsObject::Text value(const XiphComment& comment, const char* key, Values values) {
    const auto& fields = comment.fieldListMap();
    const auto found = fields.find(key);
    if (found == fields.end() || found->second.isEmpty()) {
        return std::nullopt;
    }
    return values == Values::First ? fromTagLibString(found->second.front())
                                   : joined(found->second);
}

bool isOwnKey(const TagLib::String& key) {
    const auto hasKey = [&key](const FieldKey& entry) { return key == entry.key; };
    return key == commentKey || key == descriptionKey || key == dateKey || key == encoderKey ||
           std::ranges::any_of(fieldKeys, hasKey);
}

void readDate(const XiphComment& comment, TagsObject& tags) {
    const auto text = value(comment, dateKey, Values::First);
    const auto date = parseTagDate(text.value_or(QString()), DateSource::VorbisComment);
    if (date) {
        tags.yearText = date->year;
        tags.monthText = date->month;
        tags.dayText = date->day;
    }
}

void readComment(const XiphComment& comment, TagsObject& tags) {
    for (const auto& [field, key, values] : fieldKeys) {
        if (auto text = value(comment, key, values)) {
            tags.*field = std::move(text);
        }
    }
    auto text = value(comment, descriptionKey, Values::Joined);
    if (!text) {
        text = value(comment, commentKey, Values::Joined);
    }
    if (text) {
        tags.commentText = std::move(text);
    }
    readDate(comment, tags);
    for (const auto& [key, values] : comment.fieldListMap()) {
        if (!isOwnKey(key.upper())) {
            tags.customTagsDictionary.insert(fromTagLibString(key), joined(values));
        }
    }
}

void removeOldTags(TagLib::FLAC::File& file) {
    XiphComment& comment = *file.xiphComment(true);
    std::vector<TagLib::String> keys;
    for (const auto& [key, values] : comment.fieldListMap()) {
        if (key.upper() != encoderKey) {
            keys.push_back(key);
        }
    }
    for (const auto& key : keys) {
        comment.removeFields(key);
    }
    comment.removeAllPictures(); // those that other programs keep inside a comment field
    file.removePictures();
}

void writeFields(XiphComment& comment, const TagsObject& tags) {
    const auto write = [&comment](const char* key, const TagsObject::Text& text) {
        if (hasText(text)) {
            comment.addField(key, tagLibString(*text), true);
        }
    };
    for (const auto& [field, key, values] : fieldKeys) {
        write(key, tags.*field);
    }
    write(commentKey, tags.commentText);
    write(descriptionKey, tags.commentText);
    write(encoderKey, QStringLiteral("Quav %1").arg(shortVersion()));
}

void writePicture(TagLib::FLAC::File& file, const QImage& art, QStringList& problems) {
    const auto png = pngOf(art);
    if (png.isEmpty()) {
        return;
    }
    if (pictureFieldsSize + std::strlen(albumArtMimeType) + png.size() > largestBlock) {
        problems.append(QCoreApplication::translate(
            "TagLibTagsHelper", "The picture is too large for a FLAC file and was left out."));
        return;
    }
    auto picture = std::make_unique<TagLib::FLAC::Picture>();
    picture->setType(TagLib::FLAC::Picture::FrontCover);
    picture->setMimeType(albumArtMimeType);
    picture->setWidth(art.width());
    picture->setHeight(art.height());
    picture->setColorDepth(art.bitPlaneCount());
    picture->setData(png);
    file.addPicture(picture.release()); // the file owns it from here on
}

void writeCustomTags(XiphComment& comment, const QMap<QString, QString>& customTags) {
    for (auto tag = customTags.cbegin(); tag != customTags.cend(); ++tag) {
        if (tag.key().isEmpty() || tag.value().isEmpty()) {
            continue;
        }
        qInfo().noquote() << "setting custom tag:" << tag.key() << tag.value();
        const auto key = tagLibString(tag.key());
        // Adding under a name that the format forbids does nothing and says nothing.
        if (!XiphComment::checkKey(key)) {
            qWarning().noquote() << "Error setting custom tag:" << tag.key();
            continue;
        }
        comment.addField(key, tagLibString(tag.value()), true);
    }
}

/// An empty form field reaches the record as "0" and stands for a missing month or day.
bool isMonthOrDay(const TagsObject::Text& text) {
    return hasText(text) && *text != QLatin1String("0");
}

void writeDate(XiphComment& comment, const TagsObject& tags) {
    if (!hasText(tags.yearText)) {
        return;
    }
    QString date = *tags.yearText;
    if (isMonthOrDay(tags.monthText) && isMonthOrDay(tags.dayText)) {
        date = QStringList{date, *tags.monthText, *tags.dayText}.join(QLatin1Char('-'));
    }
    comment.addField(dateKey, tagLibString(date), true);
}

/// Returns what the file should hold now, for comparing once it is closed.
tl::expected<FlacContent, QString> saveTags(const QString& path, const TagsObject& tags,
                                            bool writeEmptyTags, QStringList& problems) {
    TagLib::FLAC::File file(QFile::encodeName(path).constData());
    if (!holdsAudio(file)) {
        throw TagError::cannotOpenForTagging();
    }
    const auto before = contentOnDisk(file);
    if (!before) {
        return tl::make_unexpected(QCoreApplication::translate(
            "TagLibTagsHelper", "The metadata blocks of the FLAC file cannot be read."));
    }
    if (writeEmptyTags) {
        removeOldTags(file);
    }
    XiphComment& comment = *file.xiphComment(true);
    writeFields(comment, tags);
    writePicture(file, tags.albumArt, problems);
    writeCustomTags(comment, tags.customTagsDictionary);
    writeDate(comment, tags);
    auto content = contentToSave(file, *before);
    if (content.comment.size() > largestBlock) {
        return tl::make_unexpected(QCoreApplication::translate(
            "TagLibTagsHelper", "The tags are too large for a FLAC file."));
    }
    if (!file.save()) {
        return notSaved(
            path, QCoreApplication::translate("TagLibTagsHelper", "The file could not be saved."));
    }
    return content;
}

} // namespace

void readFlacTags(const QString& path, TagsObject& tags) {
    TagLib::FLAC::File file(QFile::encodeName(path).constData(), false);
    if (!file.isValid()) {
        return;
    }
    if (file.hasXiphComment()) {
        readComment(*file.xiphComment(), tags);
    }
    if (const auto pictures = file.pictureList(); !pictures.isEmpty()) {
        tags.albumArt = pictureOf(pictures.front()->data());
    }
}

TagResult writeFlacTags(const QString& path, const TagsObject& tags, bool writeEmptyTags,
                        QStringList& problems) {
    const auto content = saveTags(path, tags, writeEmptyTags, problems);
    if (!content) {
        return tl::make_unexpected(content.error());
    }
    TagLib::FLAC::File saved(QFile::encodeName(path).constData(), false);
    const QString difference = differenceBetween(*content, contentOnDisk(saved));
    if (!difference.isEmpty()) {
        return notSaved(path, difference);
    }
    return {};
}

} // namespace quav
