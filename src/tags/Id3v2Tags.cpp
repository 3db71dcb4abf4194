#include "tags/Id3v2Tags.h"

#include "tags/AlbumArt.h"
#include "tags/TagDates.h"
#include "tags/TagStrings.h"

#include <QStringList>

#include <taglib/attachedpictureframe.h>
#include <taglib/commentsframe.h>
#include <taglib/textidentificationframe.h>

#include <memory>

namespace quav {
namespace {

using TagLib::ID3v2::AttachedPictureFrame;
using TagLib::ID3v2::CommentsFrame;
using TagLib::ID3v2::Tag;
using TagLib::ID3v2::TextIdentificationFrame;
using Text = TagsObject::Text;

/// The text of the first frame of that id; nothing when there is none.
Text frameText(const Tag& tag, const char* id) {
    const auto& frames = tag.frameList(id);
    if (frames.isEmpty()) {
        return std::nullopt;
    }
    return fromTagLibString(frames.front()->toString());
}

void replaceTextFrame(Tag& tag, const char* id, const QString& text) {
    auto frame = std::make_unique<TextIdentificationFrame>(id, TagLib::String::UTF8);
    frame->setText(tagLibString(text));
    tag.removeFrames(id);
    tag.addFrame(frame.release()); // the tag owns it from here on
}

void readPlainText(const TagLib::String& text, Text& field) {
    if (!text.isEmpty()) {
        field = fromTagLibString(text);
    }
}

/// All distinct values of the first frame of that id, joined with "; ".
void readTexts(const Tag& tag, const char* id, Text& field) {
    const auto& frames = tag.frameList(id);
    const auto* frame =
        frames.isEmpty() ? nullptr : dynamic_cast<const TextIdentificationFrame*>(frames.front());
    if (!frame || frame->toString().isEmpty()) {
        return;
    }
    const bool isGenre = frame->frameID() == "TCON";
    QStringList texts;
    for (const auto& value : frame->fieldList()) {
        const QString text = fromTagLibString(value);
        texts.append(isGenre ? genreName(text) : text);
    }
    texts.removeAll(QString());
    texts.removeDuplicates();
    field = texts.join(QStringLiteral("; "));
}

void readFrame(const Tag& tag, const char* id, Text& field) {
    if (auto text = frameText(tag, id)) {
        field = std::move(text);
    }
}

void readNumberAndTotal(const Tag& tag, const char* id, Text& number, Text& total) {
    const auto text = frameText(tag, id);
    if (!text) {
        return;
    }
    const auto slash = text->indexOf(QLatin1Char('/'));
    number = text->left(slash);
    if (slash >= 0) {
        total = text->mid(slash + 1);
    }
}

void readYearAndDate(const Tag& tag, TagsObject& tags) {
    readFrame(tag, "TYER", tags.yearText);
    const auto dayAndMonth = frameText(tag, "TDAT");
    if (dayAndMonth && dayAndMonth->size() == 4) {
        tags.dayText = dayAndMonth->left(2);
        tags.monthText = dayAndMonth->right(2);
    }
}

void readDate(const Tag& tag, TagsObject& tags) {
    const auto text = frameText(tag, "TDRC");
    if (!text) {
        readYearAndDate(tag, tags);
        return;
    }
    if (const auto date = parseTagDate(*text, DateSource::Id3v2)) {
        tags.yearText = date->year;
        tags.monthText = date->month;
        tags.dayText = date->day;
    }
}

void readPicture(const Tag& tag, TagsObject& tags) {
    const auto& frames = tag.frameList("APIC");
    if (frames.isEmpty()) {
        return;
    }
    if (const auto* frame = dynamic_cast<const AttachedPictureFrame*>(frames.front())) {
        tags.albumArt = pictureOf(frame->picture());
    }
}

/// Only the comment without a description is the user's; others carry data of other programs
/// (sound check, CD identifiers) that must not be overwritten.
CommentsFrame& plainComment(Tag& tag) {
    for (auto* frame : tag.frameList("COMM")) {
        auto* comment = dynamic_cast<CommentsFrame*>(frame);
        if (comment && comment->description().isEmpty()) {
            return *comment;
        }
    }
    auto created = std::make_unique<CommentsFrame>(TagLib::String::UTF8);
    CommentsFrame& comment = *created;
    tag.addFrame(created.release()); // the tag owns it from here on
    return comment;
}

void writeComment(Tag& tag, const QString& text) {
    CommentsFrame& comment = plainComment(tag);
    comment.setTextEncoding(TagLib::String::UTF8);
    comment.setText(tagLibString(text));
}

void writeNumberAndTotal(Tag& tag, const char* id, const Text& number, const Text& total) {
    if (!hasText(number) && !hasText(total)) {
        return;
    }
    if (!hasText(total)) {
        replaceTextFrame(tag, id, *number);
        return;
    }
    // A number from a FLAC file may bring a total of its own.
    const QString whole = hasText(number) ? *number : frameText(tag, id).value_or(QString());
    replaceTextFrame(tag, id, whole.section(QLatin1Char('/'), 0, 0) + QLatin1Char('/') + *total);
}

void writePicture(Tag& tag, const QImage& art) {
    const auto png = pngOf(art);
    if (png.isEmpty()) {
        return;
    }
    auto frame = std::make_unique<AttachedPictureFrame>();
    frame->setMimeType(albumArtMimeType);
    frame->setPicture(png);
    tag.addFrame(frame.release()); // the tag owns it from here on
}

} // namespace

void readId3v2Tags(const Tag& tag, TagsObject& tags) {
    readTexts(tag, "TIT2", tags.titleText);
    readTexts(tag, "TPE1", tags.artistText);
    readTexts(tag, "TALB", tags.albumText);
    readTexts(tag, "TCON", tags.genreText);
    readTexts(tag, "TCOM", tags.composerText);
    readTexts(tag, "TPE2", tags.albumArtistText);
    readPlainText(tag.comment(), tags.commentText);
    readNumberAndTotal(tag, "TPOS", tags.discText, tags.discTotalText);
    readNumberAndTotal(tag, "TRCK", tags.trackText, tags.trackTotalText);
    readDate(tag, tags);
    readPicture(tag, tags);
}

void writeId3v2Tags(Tag& tag, const TagsObject& tags) {
    const auto write = [&tag](const char* id, const Text& text) {
        if (hasText(text)) {
            replaceTextFrame(tag, id, *text);
        }
    };
    write("TIT2", tags.titleText);
    write("TPE1", tags.artistText);
    write("TALB", tags.albumText);
    write("TCON", tags.genreText);
    if (hasText(tags.commentText)) {
        writeComment(tag, *tags.commentText);
    }
    write("TPE2", tags.albumArtistText);
    write("TCOM", tags.composerText);
    writeNumberAndTotal(tag, "TRCK", tags.trackText, tags.trackTotalText);
    writeNumberAndTotal(tag, "TPOS", tags.discText, tags.discTotalText);
    writePicture(tag, tags.albumArt);
}

void writeId3v2YearAndDate(Tag& tag, const TagsObject& tags) {
    if (!hasText(tags.yearText)) {
        return;
    }
    tag.removeFrames("TDRC"); // also what reading turns the TYER of an ID3v2.3 tag into
    replaceTextFrame(tag, "TYER", *tags.yearText);
    if (hasText(tags.monthText) && hasText(tags.dayText)) {
        replaceTextFrame(tag, "TDAT", *tags.dayText + *tags.yearText);
    }
}

} // namespace quav
