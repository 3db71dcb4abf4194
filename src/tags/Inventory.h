#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

namespace quav {

/// What a file holds besides its sound, in one form for all containers, so that two files can be
/// compared. The reader of a container fills it. Phrases are what the user reads: "the tag MOOD".
class Inventory {
public:
    struct Field {
        QString phrase;
        QString key;        ///< the same for the same thing in every container
        QStringList values; ///< in a form in which equal values are the same text; none is empty
    };

    /// The parts are empty where the date has none or could not be understood.
    struct Date {
        QString phrase;
        QString text;
        QString year;
        QString month;
        QString day;
    };

    struct Picture {
        QByteArray bytes; ///< the encoded file
        QString description;
    };

    /// What the other file holds in just the same form need not be taken in here: `elsewhere` are
    /// its digests.
    explicit Inventory(QSet<QByteArray> elsewhere = {});

    /// A tag by the name that it has, or would have, in a FLAC file. Nothing is added for names
    /// that stand for something technical.
    void addTag(const QString& name, const QString& value);

    /// The same with a phrase of its own; `key` is a tag's name in a FLAC file or any other.
    void add(const QString& phrase, const QString& key, const QString& value);

    void addDate(const Date& date);
    void addPicture(const QByteArray& bytes, const QString& description);

    /// Something that is there as a whole or not at all, and that the other file does not have.
    void addPiece(const QString& phrase);

    /// Notes the digest of a block or chunk; true when the other file holds it just the same, so
    /// that nothing in it can be lost.
    bool isElsewhere(const QByteArray& kind, const QByteArray& content);

    /// True when the file holds so many values that they were not all taken in.
    bool isTooMuch() const;

    const std::vector<Field>& fields() const { return fields_; }
    const std::vector<Date>& dates() const { return dates_; }
    const std::vector<Picture>& pictures() const { return pictures_; }
    const QStringList& pieces() const { return pieces_; }
    const QSet<QByteArray>& digests() const { return digests_; }

private:
    void addValue(const QString& phrase, const QString& key, const QString& value);

    QSet<QByteArray> elsewhere_;
    QSet<QByteArray> digests_;
    std::vector<Field> fields_;
    std::size_t values_ = 0;
    QHash<QString, std::size_t> indexOfField_; ///< by key and phrase
    std::vector<Date> dates_;
    std::vector<Picture> pictures_;
    QStringList pieces_;
};

/// "the tag MOOD"; names come from files, so what would disturb a line of text is replaced.
QString tagPhrase(const QString& name);

/// A name from a file as it can be shown: on one line and not too long.
QString shownName(const QString& name);

} // namespace quav
