#include "tags/Id3v2Inventory.h"

#include "tags/TagStrings.h"

#include <QCoreApplication>
#include <QCryptographicHash>

#include <taglib/attachedpictureframe.h>
#include <taglib/commentsframe.h>
#include <taglib/generalencapsulatedobjectframe.h>
#include <taglib/id3v2extendedheader.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2synchdata.h>
#include <taglib/id3v2tag.h>
#include <taglib/privateframe.h>
#include <taglib/tbytevectorstream.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tfile.h>
#include <taglib/uniquefileidentifierframe.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <taglib/urllinkframe.h>

#include <algorithm>

namespace quav {
namespace {

namespace ID3v2 = TagLib::ID3v2;

/// TagLib reads a tag from a file only; this one is in memory and nothing but a tag.
class TagInMemory : public TagLib::File {
public:
    explicit TagInMemory(TagLib::IOStream* stream) : File(stream) {}

    TagLib::Tag* tag() const override { return nullptr; }
    TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }
};

QString losses(const char* text) {
    return QCoreApplication::translate("Losses", text);
}

/// The name that the same thing has in a FLAC file; others are known by their id.
QString tagName(const QString& id) {
    static const QHash<QString, QString> names = {
        {QStringLiteral("TIT2"), QStringLiteral("TITLE")},
        {QStringLiteral("TPE1"), QStringLiteral("ARTIST")},
        {QStringLiteral("TPE2"), QStringLiteral("ALBUMARTIST")},
        {QStringLiteral("TPE3"), QStringLiteral("CONDUCTOR")},
        {QStringLiteral("TALB"), QStringLiteral("ALBUM")},
        {QStringLiteral("TCON"), QStringLiteral("GENRE")},
        {QStringLiteral("TCOM"), QStringLiteral("COMPOSER")},
        {QStringLiteral("TRCK"), QStringLiteral("TRACKNUMBER")},
        {QStringLiteral("TPOS"), QStringLiteral("DISCNUMBER")},
        {QStringLiteral("TDRC"), QStringLiteral("DATE")},
        {QStringLiteral("TBPM"), QStringLiteral("BPM")},
        {QStringLiteral("TSRC"), QStringLiteral("ISRC")},
        {QStringLiteral("TCOP"), QStringLiteral("COPYRIGHT")},
        {QStringLiteral("TEXT"), QStringLiteral("LYRICIST")},
        {QStringLiteral("TPUB"), QStringLiteral("PUBLISHER")},
        {QStringLiteral("TSSE"), QStringLiteral("ENCODER")}};
    return names.value(id, id);
}

/// What the user calls a frame that is no plain text.
QString framePhrase(const ID3v2::Frame& frame, const QString& id) {
    const auto named = [](const char* text, const TagLib::String& name) {
        return losses(text).arg(shownName(fromTagLibString(name)));
    };
    if (const auto* data = dynamic_cast<const ID3v2::PrivateFrame*>(&frame)) {
        return named(QT_TRANSLATE_NOOP("Losses", "the private data of “%1”"), data->owner());
    }
    if (const auto* data = dynamic_cast<const ID3v2::UniqueFileIdentifierFrame*>(&frame)) {
        return named(QT_TRANSLATE_NOOP("Losses", "the identifier of “%1”"), data->owner());
    }
    if (const auto* data = dynamic_cast<const ID3v2::GeneralEncapsulatedObjectFrame*>(&frame)) {
        return named(QT_TRANSLATE_NOOP("Losses", "the embedded file “%1”"), data->fileName());
    }
    if (const auto* link = dynamic_cast<const ID3v2::UserUrlLinkFrame*>(&frame)) {
        return named(QT_TRANSLATE_NOOP("Losses", "the link “%1”"), link->description());
    }
    static const QHash<QString, const char*> phrases = {
        {QStringLiteral("SYLT"), QT_TRANSLATE_NOOP("Losses", "the synchronised lyrics")},
        {QStringLiteral("POPM"), QT_TRANSLATE_NOOP("Losses", "the rating (POPM)")},
        {QStringLiteral("PCNT"), QT_TRANSLATE_NOOP("Losses", "the play counter (PCNT)")},
        {QStringLiteral("CHAP"), QT_TRANSLATE_NOOP("Losses", "the chapters")}};
    const char* phrase = phrases.value(id);
    return phrase ? losses(phrase) : tagPhrase(id);
}

void addText(const ID3v2::TextIdentificationFrame& frame, const QString& id, Inventory& inventory) {
    QStringList values;
    for (const auto& value : frame.fieldList()) {
        values.append(fromTagLibString(value));
    }
    QString name = tagName(id);
    if (const auto* named = dynamic_cast<const ID3v2::UserTextIdentificationFrame*>(&frame)) {
        name = fromTagLibString(named->description());
        values = values.mid(1);
    }
    for (const QString& value : values) {
        inventory.addTag(name.isEmpty() ? id : name, value);
    }
}

void addComment(const ID3v2::CommentsFrame& frame, Inventory& inventory) {
    const QString text = fromTagLibString(frame.text());
    const QString description = fromTagLibString(frame.description());
    if (description.isEmpty()) {
        inventory.addTag(QStringLiteral("COMMENT"), text);
    } else {
        inventory.add(
            QCoreApplication::translate("Losses", "the comment “%1”").arg(shownName(description)),
            QStringLiteral("COMM:") + description, text);
    }
}

void addFrame(const ID3v2::Frame& frame, Inventory& inventory) {
    const auto idBytes = frame.frameID();
    const QString id = QString::fromLatin1(idBytes.data(), static_cast<qsizetype>(idBytes.size()));
    if (const auto* picture = dynamic_cast<const ID3v2::AttachedPictureFrame*>(&frame)) {
        const auto bytes = picture->picture();
        inventory.addPicture({bytes.data(), static_cast<qsizetype>(bytes.size())},
                             fromTagLibString(picture->description()));
    } else if (const auto* text = dynamic_cast<const ID3v2::TextIdentificationFrame*>(&frame)) {
        addText(*text, id, inventory);
    } else if (const auto* comment = dynamic_cast<const ID3v2::CommentsFrame*>(&frame)) {
        addComment(*comment, inventory);
    } else if (const auto* lyrics = dynamic_cast<const ID3v2::UnsynchronizedLyricsFrame*>(&frame)) {
        inventory.add(QCoreApplication::translate("Losses", "the lyrics"), QStringLiteral("LYRICS"),
                      fromTagLibString(lyrics->text()));
    } else {
        const auto rendered = frame.render();
        const QByteArray bytes(rendered.data(), static_cast<qsizetype>(rendered.size()));
        const auto digest = QCryptographicHash::hash(bytes, QCryptographicHash::Blake2b_256);
        inventory.add(framePhrase(frame, id), id, QString::fromLatin1(digest.toHex()));
    }
}

QString firstText(const ID3v2::Tag& tag, const char* id) {
    const auto& frames = tag.frameList(id);
    return frames.isEmpty() ? QString() : fromTagLibString(frames.front()->toString());
}

/// The date of the frames TYER and TDAT. The latter is day and month, or, as our writer has it,
/// day and year.
Inventory::Date oldDate(const QString& year, const QString& rest) {
    Inventory::Date date{tagPhrase(QStringLiteral("DATE")), year + u' ' + rest, year, {}, {}};
    if (rest.size() == 4) {
        date.day = rest.left(2);
        date.month = rest.right(2);
    } else if (!year.isEmpty() && rest.size() > year.size() && rest.endsWith(year)) {
        date.day = rest.chopped(year.size());
    }
    return date;
}

/// TagLib has already joined the frames of an older tag to one, but keeps what it joined.
bool isMerged(const QString& id, const QString& date) {
    return (id == u"TDAT" && date.size() > 4) || (id == u"TIME" && date.contains(u'T'));
}

void addFrames(const ID3v2::Tag& tag, Inventory& inventory) {
    const QString date = firstText(tag, "TDRC");
    const QString year = firstText(tag, "TYER");
    const QString rest = firstText(tag, "TDAT");
    if (!year.isEmpty() || rest.size() == 4) {
        inventory.addDate(oldDate(year, rest));
    }
    const bool restIsUsed = rest.size() == 4 || (!year.isEmpty() && rest.endsWith(year));
    for (const auto* frame : tag.frameList()) {
        const auto bytes = frame->frameID();
        const QString id = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
        const bool isDatePart = id == u"TYER" || (id == u"TDAT" && restIsUsed) ||
                                (tag.header()->majorVersion() < 4 && isMerged(id, date));
        if (!isDatePart) {
            addFrame(*frame, inventory);
        }
    }
}

/// TagLib stops in silence at a frame that it cannot make sense of; everything behind would be
/// missing from the comparison.
bool wasReadWhole(const ID3v2::Tag& tag, const TagLib::ByteVector& bytes) {
    const auto& header = *tag.header();
    constexpr unsigned int newestVersion = 4;
    auto body = bytes.mid(ID3v2::Header::size(), header.tagSize());
    if (header.unsynchronisation() && header.majorVersion() < newestVersion) {
        body = ID3v2::SynchData::decode(body);
    }
    std::size_t position = tag.extendedHeader() ? tag.extendedHeader()->size() : 0;
    const std::size_t frameHeader = header.majorVersion() < 3 ? 6 : 10;
    for (const auto* frame : tag.frameList()) {
        position += frameHeader + frame->size();
    }
    const auto rest = static_cast<std::ptrdiff_t>(std::min<std::size_t>(position, body.size()));
    return header.majorVersion() <= newestVersion &&
           std::all_of(body.begin() + rest, body.end(), [](char byte) { return byte == 0; });
}

} // namespace

std::uint64_t id3v2Size(const QByteArray& beginning) {
    constexpr qsizetype headerSize = 10;
    if (beginning.size() < headerSize || !beginning.startsWith("ID3")) {
        return 0;
    }
    constexpr int footerFlag = 0x10;
    std::uint64_t size = 0;
    for (int i = 6; i < headerSize; ++i) {
        size = size << 7 | (static_cast<unsigned char>(beginning[i]) & 0x7fU);
    }
    return size + ((beginning[5] & footerFlag) != 0 ? 2 * headerSize : headerSize);
}

void readId3v2Inventory(const QByteArray& bytes, Inventory& inventory) {
    const TagLib::ByteVector vector(bytes.constData(), static_cast<unsigned int>(bytes.size()));
    TagLib::ByteVectorStream stream(vector);
    TagInMemory file(&stream);
    const ID3v2::Tag tag(&file, 0);
    addFrames(tag, inventory);
    if (!wasReadWhole(tag, vector)) {
        inventory.addPiece(
            QCoreApplication::translate("Losses", "a part of an ID3v2 tag that cannot be read"));
    }
}

} // namespace quav
