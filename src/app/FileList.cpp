#include "app/FileList.h"

#include "platform/PathNames.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

namespace quav {

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
    QStringList unknown;
    known_.reserve(known_.size() + paths.size());
    for (const QString& path : paths) {
        const qsizetype before = known_.size();
        known_.insert(path);
        if (known_.size() > before) {
            unknown << path;
        }
    }
    if (unknown.isEmpty()) {
        return;
    }
    std::vector<QByteArray> sortKeys = order_.sortKeys(unknown);
    std::vector<Entry> fresh;
    fresh.reserve(sortKeys.size());
    for (size_t i = 0; i < sortKeys.size(); ++i) {
        fresh.push_back({std::move(sortKeys[i]), unknown[static_cast<qsizetype>(i)]});
    }
    const auto before = [](const Entry& a, const Entry& b) {
        return std::tie(a.sortKey, a.path) < std::tie(b.sortKey, b.path);
    };
    std::sort(fresh.begin(), fresh.end(), before);
    beginResetModel();
    const auto middle = static_cast<std::ptrdiff_t>(entries_.size());
    std::move(fresh.begin(), fresh.end(), std::back_inserter(entries_));
    std::inplace_merge(entries_.begin(), entries_.begin() + middle, entries_.end(), before);
    endResetModel();
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
