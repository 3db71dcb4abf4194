#include "tags/Inventory.h"

#include "tags/TagDates.h"
#include "tags/TagStrings.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QLatin1StringView>

#include <algorithm>
#include <utility>

namespace quav {
namespace {

const QString dateKey = QStringLiteral("DATE");
/// Understanding a date takes its time, and only a hostile file has more; of those the texts alone
/// are compared.
constexpr std::size_t mostDates = 16;

/// More values than any honest file has; memory need not follow what a hostile one holds.
constexpr std::size_t mostValues = 100000;

const QString genreKey = QStringLiteral("GENRE");

/// Made by encoders for themselves or for decoders.
bool isTechnical(const QString& name) {
    static const QSet<QString> names = {QStringLiteral("ENCODER"),
                                        QStringLiteral("ENCODER_SETTINGS"),
                                        QStringLiteral("ENCODERSETTINGS"),
                                        QStringLiteral("ENCODER SETTINGS"),
                                        QStringLiteral("ENCODER_OPTIONS"),
                                        QStringLiteral("ENCODING"),
                                        QStringLiteral("TLEN"),
                                        QStringLiteral("TSIZ"),
                                        QStringLiteral("WAVEFORMATEXTENSIBLE_CHANNEL_MASK")};
    return names.contains(name);
}

/// Different names for the same thing.
QString commonKey(const QString& name) {
    static const QHash<QString, QString> keys = {
        {QStringLiteral("DESCRIPTION"), QStringLiteral("COMMENT")},
        {QStringLiteral("YEAR"), dateKey},
        {QStringLiteral("TOTALTRACKS"), QStringLiteral("TRACKTOTAL")},
        {QStringLiteral("TOTALDISCS"), QStringLiteral("DISCTOTAL")},
        {QStringLiteral("ALBUM ARTIST"), QStringLiteral("ALBUMARTIST")},
        {QStringLiteral("UNSYNCEDLYRICS"), QStringLiteral("LYRICS")}};
    const QString key = name.toUpper();
    return keys.value(key, key);
}

/// The key of the total that a number may bring along, as in "3/12"; empty for what is no number.
QString totalOf(const QString& key) {
    return key == u"TRACKNUMBER"  ? QStringLiteral("TRACKTOTAL")
           : key == u"DISCNUMBER" ? QStringLiteral("DISCTOTAL")
                                  : QString();
}

bool isNumber(const QString& key) {
    return !totalOf(key).isEmpty() || key == u"TRACKTOTAL" || key == u"DISCTOTAL";
}

QString comparable(const QString& key, const QString& value) {
    if (key == genreKey) {
        return genreName(value);
    }
    bool isWhole = false;
    const uint number = isNumber(key) ? value.toUInt(&isWhole) : 0;
    return isWhole ? QString::number(number) : value;
}

} // namespace

Inventory::Inventory(QSet<QByteArray> elsewhere) : elsewhere_(std::move(elsewhere)) {}

void Inventory::addTag(const QString& name, const QString& value) {
    if (!isTechnical(name.toUpper())) {
        add(tagPhrase(name), name, value);
    }
}

void Inventory::add(const QString& phrase, const QString& key, const QString& value) {
    if (value.isEmpty()) {
        return;
    }
    const QString common = commonKey(key);
    const QString total = totalOf(common);
    const qsizetype slash = total.isEmpty() ? -1 : value.indexOf(u'/');
    if (common == dateKey && dates_.size() < mostDates) {
        const auto date = parseTagDate(value, DateSource::VorbisComment);
        addDate(date ? Date{phrase, value, date->year, date->month, date->day}
                     : Date{phrase, value, {}, {}, {}});
    } else if (slash >= 0) {
        addValue(phrase, common, value.left(slash));
        addValue(tagPhrase(total), total, value.mid(slash + 1));
    } else {
        addValue(phrase, common, value);
    }
}

void Inventory::addValue(const QString& phrase, const QString& key, const QString& value) {
    if (value.isEmpty() || isTooMuch() || ++values_ > mostValues) {
        return;
    }
    const QString place = key + u'\n' + phrase;
    const auto known = indexOfField_.constFind(place);
    const std::size_t index = known == indexOfField_.constEnd() ? fields_.size() : *known;
    if (index == fields_.size()) {
        indexOfField_.insert(place, index);
        fields_.push_back({phrase, key, {}});
    }
    fields_[index].values.append(comparable(key, value));
}

bool Inventory::isTooMuch() const {
    return values_ > mostValues;
}

void Inventory::addDate(const Date& date) {
    dates_.push_back(date);
}

void Inventory::addPicture(const QByteArray& bytes, const QString& description) {
    pictures_.push_back({bytes, description});
}

void Inventory::addPiece(const QString& phrase) {
    pieces_.append(phrase);
}

bool Inventory::isElsewhere(const QByteArray& kind, const QByteArray& content) {
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    hash.addData(kind + '\0');
    hash.addData(content);
    const QByteArray digest = hash.result();
    digests_.insert(digest);
    return elsewhere_.contains(digest);
}

QString tagPhrase(const QString& name) {
    return QCoreApplication::translate("Losses", "the tag %1").arg(shownName(name.toUpper()));
}

QString shownName(const QString& name) {
    constexpr qsizetype longest = 60;
    QString shown = name.size() > longest ? name.left(longest) + u'…' : name;
    const auto disturbs = [](QChar character) {
        return !character.isPrint() && !character.isSurrogate();
    };
    std::ranges::replace_if(shown, disturbs, QChar(QChar::ReplacementCharacter));
    return shown;
}

} // namespace quav
