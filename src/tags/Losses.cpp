#include "tags/Losses.h"

#include "platform/PathNames.h"
#include "tags/FileContent.h"
#include "tags/FlacInventory.h"
#include "tags/Id3v2Inventory.h"
#include "tags/Inventory.h"
#include "tags/RiffInventory.h"
#include "tags/WavpackInventory.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QImage>

#include <algorithm>
#include <optional>
#include <utility>

namespace quav {
namespace {

/// A kind of file, and who reads what it holds from the place where `beginning` stands.
struct Container {
    bool (*begins)(const QByteArray& beginning);
    bool (*read)(FileContent& file, std::uint64_t start, Inventory& inventory);
};

constexpr Container containers[] = {
    {[](const QByteArray& beginning) { return beginning.startsWith("fLaC"); }, readFlacInventory},
    {[](const QByteArray& beginning) { return riffKindOf(beginning).has_value(); },
     readRiffInventory},
    {[](const QByteArray& beginning) { return beginning.startsWith("wvpk"); },
     readWavpackInventory}};

/// Takes in the ID3v2 tags in front of a file, which may be of any kind, and returns where they
/// end.
std::optional<std::uint64_t> readTagsInFront(FileContent& file, Inventory& inventory) {
    constexpr std::uint64_t headerSize = 10;
    constexpr int mostTags = 32;
    std::uint64_t position = 0;
    for (int count = 0;; ++count) {
        const std::uint64_t size = id3v2Size(file.peek(position, headerSize));
        if (size == 0) {
            return position;
        }
        if (count == mostTags) {
            return std::nullopt;
        }
        const auto tag = file.read(position, size);
        if (!tag) {
            return std::nullopt;
        }
        readId3v2Inventory(*tag, inventory);
        position += size;
    }
}

/// Nothing when the file cannot be read as any container that we know.
std::optional<Inventory> inventoryOf(const QString& path, const QSet<QByteArray>& elsewhere) {
    auto opened = RegularFile::open(path);
    if (!opened) {
        return std::nullopt;
    }
    FileContent file(*std::move(opened));
    Inventory inventory(elsewhere);
    const auto start = readTagsInFront(file, inventory);
    if (!start) {
        return std::nullopt;
    }
    constexpr std::uint64_t enoughToSee = 12;
    const QByteArray beginning = file.peek(*start, enoughToSee);
    const auto* container = std::ranges::find_if(
        containers, [&](const Container& kind) { return kind.begins(beginning); });
    if (container == std::end(containers) || !container->read(file, *start, inventory) ||
        inventory.isTooMuch()) {
        return std::nullopt;
    }
    return inventory;
}

QStringList withoutDuplicates(QStringList list) {
    list.removeDuplicates();
    return list;
}

using ValuesByKey = QHash<QString, QSet<QString>>;

/// What of one tag is missing; empty when nothing is.
QString lostOf(const Inventory::Field& field, const ValuesByKey& there) {
    const QSet<QString> found = there.value(field.key);
    const QStringList values = withoutDuplicates(field.values);
    if (found.contains(values.join(QStringLiteral("; ")))) {
        return {};
    }
    const auto missing = std::ranges::count_if(
        values, [&found](const QString& value) { return !found.contains(value); });
    if (missing == 0) {
        return {};
    }
    if (found.isEmpty()) {
        return field.phrase;
    }
    if (values.size() == 1) {
        return QCoreApplication::translate("Losses", "the value of %1").arg(field.phrase);
    }
    const int count = static_cast<int>(missing);
    return QCoreApplication::translate("Losses", "%Ln values of %1", nullptr, count)
        .arg(field.phrase);
}

QStringList lostFields(const Inventory& source, const Inventory& output) {
    ValuesByKey there;
    for (const auto& field : output.fields()) {
        for (const QString& value : field.values) {
            there[field.key].insert(value);
        }
    }
    QStringList lost;
    for (const auto& field : source.fields()) {
        lost << lostOf(field, there);
    }
    return lost;
}

/// Whether one of the dates, all of the same year, has that part.
bool hasPart(const std::vector<Inventory::Date>& dates, const QString& part,
             QString Inventory::Date::*which) {
    return part.isEmpty() || std::ranges::any_of(dates, [&](const Inventory::Date& date) {
               return date.*which == part;
           });
}

QStringList lostOf(const Inventory::Date& date, const std::vector<Inventory::Date>& there) {
    std::vector<Inventory::Date> sameYear;
    for (const auto& other : there) {
        if (other.text == date.text) {
            return {};
        }
        if (!date.year.isEmpty() && other.year == date.year) {
            sameYear.push_back(other);
        }
    }
    if (sameYear.empty()) {
        return {there.empty()
                    ? date.phrase
                    : QCoreApplication::translate("Losses", "the value of %1").arg(date.phrase)};
    }
    QStringList lost;
    if (!hasPart(sameYear, date.month, &Inventory::Date::month)) {
        lost << QCoreApplication::translate("Losses", "the month of the date");
    }
    if (!hasPart(sameYear, date.day, &Inventory::Date::day)) {
        lost << QCoreApplication::translate("Losses", "the day of the date");
    }
    return lost;
}

QStringList lostDates(const Inventory& source, const Inventory& output) {
    QStringList lost;
    for (const auto& date : source.dates()) {
        lost << lostOf(date, output.dates());
    }
    return lost;
}

QByteArray digestOf(QByteArrayView bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Blake2b_256);
}

/// What the picture shows, whatever it is encoded as; empty when it cannot be decoded.
QByteArray pixelsOf(const QByteArray& encoded) {
    const QImage picture = QImage::fromData(encoded);
    if (picture.isNull()) {
        return {};
    }
    const bool isDeep = picture.depth() > 32 || picture.format() == QImage::Format_Grayscale16;
    const QImage common =
        picture.convertToFormat(isDeep ? QImage::Format_RGBA64 : QImage::Format_ARGB32);
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    hash.addData(QByteArray::number(common.width()) + 'x' + QByteArray::number(common.height()));
    hash.addData(QByteArrayView(common.constBits(), common.sizeInBytes()));
    return hash.result();
}

/// The pictures of the output, to be looked up by what they show.
class ShownPictures {
public:
    explicit ShownPictures(const std::vector<Inventory::Picture>& pictures) : pictures_(&pictures) {
        for (const auto& picture : pictures) {
            bytes_.insert(digestOf(picture.bytes));
            descriptions_.insert(picture.description);
        }
    }

    bool show(const Inventory::Picture& picture) {
        if (bytes_.contains(digestOf(picture.bytes))) {
            return true;
        }
        if (pictures_->empty()) {
            return false;
        }
        // Decoding takes its time, and is not needed where the files are the same.
        const QByteArray pixels = pixelsOf(picture.bytes);
        if (!std::exchange(decoded_, true)) {
            for (const auto& shown : *pictures_) {
                pixels_.insert(pixelsOf(shown.bytes));
            }
        }
        return !pixels.isEmpty() && pixels_.contains(pixels);
    }

    bool describe(const Inventory::Picture& picture) const {
        return picture.description.isEmpty() || descriptions_.contains(picture.description);
    }

private:
    const std::vector<Inventory::Picture>* pictures_;
    QSet<QByteArray> bytes_;
    QSet<QByteArray> pixels_;
    QSet<QString> descriptions_;
    bool decoded_ = false;
};

QStringList lostPictures(const Inventory& source, const Inventory& output) {
    ShownPictures there(output.pictures());
    int pictures = 0;
    int descriptions = 0;
    for (const auto& picture : source.pictures()) {
        if (!there.show(picture)) {
            ++pictures;
        } else if (!there.describe(picture)) {
            ++descriptions;
        }
    }
    QStringList lost;
    if (pictures > 0) {
        lost << QCoreApplication::translate("Losses", "%Ln pictures", nullptr, pictures);
    }
    if (descriptions > 0) {
        lost << QCoreApplication::translate("Losses", "the descriptions of %Ln pictures", nullptr,
                                            descriptions);
    }
    return lost;
}

QStringList notCompared(const QString& path) {
    return {QCoreApplication::translate("Losses", "tags of “%1” that could not be compared")
                .arg(shownName(lastPathComponent(path)))};
}

QStringList shortened(QStringList lost) {
    constexpr qsizetype mostShown = 100;
    lost.removeAll(QString());
    lost.removeDuplicates();
    const qsizetype more = lost.size() - mostShown;
    if (more > 1) {
        lost.resize(mostShown);
        lost << QCoreApplication::translate("Losses", "%n others", nullptr, int(more));
    }
    return lost;
}

} // namespace

QStringList lostBetween(const QString& source, const QString& output) {
    const auto there = inventoryOf(output, {});
    if (!there) {
        return notCompared(output);
    }
    const auto held = inventoryOf(source, there->digests());
    if (!held) {
        return notCompared(source);
    }
    return shortened(lostFields(*held, *there) + lostDates(*held, *there) +
                     lostPictures(*held, *there) + held->pieces());
}

} // namespace quav
