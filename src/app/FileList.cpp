#include "app/FileList.h"

#include "platform/ClockText.h"
#include "platform/NaturalOrder.h"
#include "platform/Parallel.h"
#include "platform/PathNames.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <mutex>
#include <numeric>
#include <tuple>
#include <utility>

namespace quav {

namespace {

constexpr size_t worthAThread = 5000;

// The widest text is among the longest ones; drawing thousands only to measure them takes long.
constexpr qsizetype measuredTexts = 64;

/// For each text a key by which it sorts.
std::vector<QByteArray> sortKeys(const std::vector<QString>& texts) {
    std::vector<QByteArray> keys(texts.size());
    inPieces(keys.size(), worthAThread, [&](size_t first, size_t last) {
        const NaturalOrder order; // serves one thread at a time
        for (size_t i = first; i < last; ++i) {
            keys[i] = order.sortKey(texts[i]);
        }
    });
    return keys;
}

/// "16/44.1": bits and thousands of samples per second; the channels where they are not two.
QString formatText(const FileFacts& facts, const QLocale& locale) {
    if (facts.sampleRate == 0) {
        return {};
    }
    const QString rate = locale.toString(facts.sampleRate / 1000.0, 'g', 6);
    QString text = facts.bits > 0 ? QStringLiteral("%1/%2").arg(facts.bits).arg(rate) : rate;
    switch (facts.channels) {
    case 1:
        return FileList::tr("%1 mono", "bits and kHz").arg(text);
    case 2:
        return text;
    default:
        return FileList::tr("%1, %n ch", "bits and kHz", facts.channels).arg(text);
    }
}

template <typename Key>
void sortBy(const std::vector<Key>& keys, Qt::SortOrder order, std::vector<int>& rows) {
    const auto key = [&](int row) -> const Key& { return keys[static_cast<size_t>(row)]; };
    std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) {
        return order == Qt::AscendingOrder ? key(a) < key(b) : key(b) < key(a);
    });
}

} // namespace

bool FileList::Sorted::Entry::operator<(const Entry& other) const {
    return std::tie(sortKey, path) < std::tie(other.sortKey, other.path);
}

FileList::Sorted::Sorted(const QStringList& paths) : entries_(static_cast<size_t>(paths.size())) {
    std::mutex mutex;
    std::vector<size_t> starts;
    inPieces(entries_.size(), worthAThread, [&](size_t first, size_t last) {
        const NaturalOrder order; // serves one thread at a time
        for (size_t i = first; i < last; ++i) {
            const QString& path = paths[static_cast<qsizetype>(i)];
            entries_[i] = {order.sortKey(path), path};
        }
        const auto begin = entries_.begin();
        std::sort(begin + static_cast<std::ptrdiff_t>(first),
                  begin + static_cast<std::ptrdiff_t>(last));
        const std::lock_guard lock(mutex);
        starts.push_back(first);
    });
    // The pieces are sorted each; merging them from the back needs only where they begin.
    std::sort(starts.begin(), starts.end(), std::greater());
    for (const size_t start : starts) {
        const auto middle = entries_.begin() + static_cast<std::ptrdiff_t>(start);
        const auto next = std::is_sorted_until(middle, entries_.end());
        std::inplace_merge(middle, next, entries_.end());
    }
    const auto isSame = [](const Entry& a, const Entry& b) { return a.path == b.path; };
    entries_.erase(std::unique(entries_.begin(), entries_.end(), isSame), entries_.end());
}

FileList::FileList(const ListFacts& facts, QObject* parent)
    : QAbstractTableModel(parent), facts_(facts) {}

int FileList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int FileList::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

const QString& FileList::pathAt(int row) const {
    const auto at = static_cast<size_t>(row);
    return entries_.at(shown_.empty() ? at : static_cast<size_t>(shown_.at(at))).path;
}

QVariant FileList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const QString& path = pathAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(path, index.column());
    case Qt::ToolTipRole:
        return tip(path);
    case Qt::TextAlignmentRole:
        return index.column() == Length || index.column() == Size
                   ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant();
    default:
        return {};
    }
}

QVariant FileList::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant((section == Length || section == Size ? Qt::AlignRight : Qt::AlignLeft) |
                        Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return tr("Name");
    case Folder:
        return tr("Folder");
    case Length:
        return tr("Length");
    case Format:
        return tr("Format");
    case Size:
        return tr("Size");
    default:
        return {};
    }
}

QString FileList::folderText(const QString& path) const {
    return hasFolders_ ? folderOf(path).mid(commonFolder_.size()) : QString();
}

QString FileList::text(const QString& path, int column) const {
    if (column == Name) {
        return lastPathComponent(path);
    }
    if (column == Folder) {
        return folderText(path);
    }
    const FileFacts* facts = facts_.of(path);
    if (!facts) {
        return {};
    }
    switch (column) {
    case Length:
        return facts->length.count() > 0
                   ? clockText(std::chrono::round<std::chrono::seconds>(facts->length))
                   : QString();
    case Format:
        return formatText(*facts, locale_);
    case Size:
        return facts->identity
                   ? locale_.formattedDataSize(facts->size(), facts->size() < 1'000'000'000 ? 0 : 2,
                                               QLocale::DataSizeSIFormat)
                   : QString();
    default:
        return {};
    }
}

QString FileList::tip(const QString& path) const {
    QStringList lines{path};
    if (const FileFacts* facts = facts_.of(path)) {
        if (facts->misalignment > 0) {
            lines << tr("%n bytes behind the last whole CD sector", nullptr, facts->misalignment);
        }
        if (!facts->trouble.isEmpty()) {
            lines << facts->trouble;
        }
    }
    return lines.join(u'\n');
}

QStringList FileList::fileNames() const {
    QStringList paths;
    paths.reserve(static_cast<qsizetype>(entries_.size()));
    std::transform(entries_.begin(), entries_.end(), std::back_inserter(paths),
                   [](const Entry& entry) { return entry.path; });
    return paths;
}

void FileList::add(Sorted sorted) {
    std::vector<Entry>& fresh = sorted.entries_;
    known_.reserve(known_.size() + static_cast<qsizetype>(fresh.size()));
    std::erase_if(fresh, [this](const Entry& entry) {
        const qsizetype before = known_.size();
        known_.insert(entry.path);
        return known_.size() == before;
    });
    if (fresh.empty()) {
        return;
    }
    beginResetModel();
    const auto middle = static_cast<std::ptrdiff_t>(entries_.size());
    std::move(fresh.begin(), fresh.end(), std::back_inserter(entries_));
    std::inplace_merge(entries_.begin(), entries_.begin() + middle, entries_.end());
    noteFolders();
    arrange();
    endResetModel();
}

/// The folder above all, cut at a slash.
void FileList::noteFolders() {
    hasFolders_ = false;
    if (entries_.empty()) {
        return;
    }
    const auto folderEnd = [](const QString& path) { return path.lastIndexOf(u'/') + 1; };
    const QString& first = entries_.front().path;
    commonFolder_ = first.left(folderEnd(first));
    for (const Entry& entry : entries_) {
        const QStringView folder = QStringView(entry.path).left(folderEnd(entry.path));
        hasFolders_ |= folder != commonFolder_;
        while (!folder.startsWith(commonFolder_)) {
            commonFolder_.truncate(commonFolder_.lastIndexOf(u'/', -2) + 1);
        }
    }
}

void FileList::sort(int column, Qt::SortOrder order) {
    sortColumn_ = column;
    sortOrder_ = order;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> entryOf;
    entryOf.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex& index : before) {
        entryOf.push_back(shown_.empty() ? index.row()
                                         : shown_.at(static_cast<size_t>(index.row())));
    }
    arrange();
    std::vector<int> rowOf(entries_.size());
    for (int row = 0; row < rowCount(); ++row) {
        const int entry = shown_.empty() ? row : shown_[static_cast<size_t>(row)];
        rowOf[static_cast<size_t>(entry)] = row;
    }
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto entry = static_cast<size_t>(entryOf[static_cast<size_t>(i)]);
        after << index(rowOf[entry], before[i].column());
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void FileList::arrange() {
    shown_ = sortColumn_ < 0 ? std::vector<int>() : arranged();
}

std::vector<int> FileList::arranged() const {
    std::vector<int> rows(entries_.size());
    std::iota(rows.begin(), rows.end(), 0);
    if (sortColumn_ == Length || sortColumn_ == Size) {
        std::vector<qint64> keys;
        for (const Entry& entry : entries_) {
            const FileFacts* facts = facts_.of(entry.path);
            keys.push_back(!facts                  ? -1
                           : sortColumn_ == Length ? facts->length.count()
                                                   : facts->size());
        }
        sortBy(keys, sortOrder_, rows);
        return rows;
    }
    if (sortColumn_ == Format) {
        std::vector<std::tuple<int, int, int>> keys;
        for (const Entry& entry : entries_) {
            const FileFacts* facts = facts_.of(entry.path);
            keys.push_back(facts ? std::tuple(facts->sampleRate, facts->bits, facts->channels)
                                 : std::tuple(-1, -1, -1));
        }
        sortBy(keys, sortOrder_, rows);
        return rows;
    }
    std::vector<QString> texts;
    texts.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        texts.push_back(text(entry.path, sortColumn_));
    }
    sortBy(sortKeys(texts), sortOrder_, rows);
    return rows;
}

void FileList::factsChanged(bool inWhole) {
    if (entries_.empty()) {
        return;
    }
    // Rows that move under the user's hands while more becomes known would help nobody.
    if (inWhole && sortColumn_ >= Length) {
        sort(sortColumn_, sortOrder_);
    }
    Q_EMIT dataChanged(index(0, Length), index(rowCount() - 1, Size));
}

QStringList FileList::longestTexts(Column column) const {
    std::vector<QStringView> texts;
    texts.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        const QStringView path(entry.path);
        const qsizetype slash = path.lastIndexOf(u'/');
        texts.push_back(column == Name ? path.mid(slash + 1)
                                       : path.left(slash).mid(commonFolder_.size()));
    }
    const auto most = std::min(measuredTexts, static_cast<qsizetype>(texts.size()));
    std::partial_sort(texts.begin(), texts.begin() + most, texts.end(),
                      [](QStringView a, QStringView b) { return a.size() > b.size(); });
    QStringList longest;
    std::transform(texts.begin(), texts.begin() + most, std::back_inserter(longest),
                   [](QStringView text) { return text.toString(); });
    return longest;
}

template <typename Condition>
void FileList::removeWhere(Condition condition) {
    beginResetModel();
    std::erase_if(entries_, [&](const Entry& entry) {
        const bool goes = condition(entry);
        if (goes) {
            known_.remove(entry.path);
        }
        return goes;
    });
    noteFolders();
    arrange();
    endResetModel();
}

void FileList::remove(const QSet<int>& rows) {
    QSet<QString> paths;
    for (const int row : rows) {
        paths.insert(pathAt(row));
    }
    removeWhere([&](const Entry& entry) { return paths.contains(entry.path); });
}

void FileList::removeWithExtension(const QString& extension) {
    removeWhere([&](const Entry& entry) { return pathExtension(entry.path) == extension; });
}

void FileList::clear() {
    removeWhere([](const Entry&) { return true; });
}

QStringList FileList::extensions() const {
    QSet<QString> distinct;
    for (const Entry& entry : entries_) {
        distinct.insert(pathExtension(entry.path));
    }
    QStringList sorted(distinct.begin(), distinct.end());
    sorted.sort();
    return sorted;
}

} // namespace quav
