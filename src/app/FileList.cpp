#include "app/FileList.h"

#include "platform/NaturalOrder.h"
#include "platform/Parallel.h"
#include "platform/PathNames.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <mutex>
#include <tuple>
#include <utility>

namespace quav {

namespace {

constexpr size_t worthAThread = 5000;

} // namespace

bool FileList::before(const Entry& a, const Entry& b) {
    return std::tie(a.sortKey, a.path) < std::tie(b.sortKey, b.path);
}

int FileList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant FileList::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || index.row() >= rowCount()) {
        return {};
    }
    const QString& path = entries_[static_cast<size_t>(index.row())].path;
    switch (role) {
    case Qt::DisplayRole:
        return lastPathComponent(path);
    case Qt::ToolTipRole:
        return path;
    default:
        return {};
    }
}

QStringList FileList::fileNames() const {
    QStringList paths;
    paths.reserve(static_cast<qsizetype>(entries_.size()));
    std::transform(entries_.begin(), entries_.end(), std::back_inserter(paths),
                   [](const Entry& entry) { return entry.path; });
    return paths;
}

void FileList::add(const QStringList& paths) {
    std::vector<Entry> fresh = sortedEntries(unknownAmong(paths));
    if (fresh.empty()) {
        return;
    }
    beginResetModel();
    const auto middle = static_cast<std::ptrdiff_t>(entries_.size());
    std::move(fresh.begin(), fresh.end(), std::back_inserter(entries_));
    std::inplace_merge(entries_.begin(), entries_.begin() + middle, entries_.end(), before);
    endResetModel();
}

QStringList FileList::unknownAmong(const QStringList& paths) {
    QStringList unknown;
    known_.reserve(known_.size() + paths.size());
    for (const QString& path : paths) {
        const qsizetype knownBefore = known_.size();
        known_.insert(path);
        if (known_.size() > knownBefore) {
            unknown << path;
        }
    }
    return unknown;
}

std::vector<FileList::Entry> FileList::sortedEntries(const QStringList& paths) {
    std::vector<Entry> entries(static_cast<size_t>(paths.size()));
    std::mutex mutex;
    std::vector<size_t> starts;
    inPieces(entries.size(), worthAThread, [&](size_t first, size_t last) {
        const NaturalOrder order; // serves one thread at a time
        for (size_t i = first; i < last; ++i) {
            const QString& path = paths[static_cast<qsizetype>(i)];
            entries[i] = {order.sortKey(path), path};
        }
        const auto begin = entries.begin();
        std::sort(begin + static_cast<std::ptrdiff_t>(first),
                  begin + static_cast<std::ptrdiff_t>(last), before);
        const std::lock_guard lock(mutex);
        starts.push_back(first);
    });
    // The pieces are sorted each; merging them from the back needs only where they begin.
    std::sort(starts.begin(), starts.end(), std::greater());
    for (const size_t start : starts) {
        const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(start);
        const auto next = std::is_sorted_until(middle, entries.end(), before);
        std::inplace_merge(middle, next, entries.end(), before);
    }
    return entries;
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
    endResetModel();
}

void FileList::remove(const QSet<int>& rows) {
    QSet<QString> paths;
    for (const int row : rows) {
        paths.insert(entries_.at(static_cast<size_t>(row)).path);
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
