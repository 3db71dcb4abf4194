#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <vector>

namespace quav {

/// The input files of a tab: full paths without duplicates, always in the order in which a file
/// browser lists them. Its rows show the names without their folders.
class FileList : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    bool contains(const QString& path) const { return known_.contains(path); }

    /// The paths in order.
    QStringList fileNames() const;

    /// Adds the paths that are not listed yet; sorts once.
    void add(const QStringList& paths);
    void remove(const QSet<int>& rows);
    void removeWithExtension(const QString& extension);
    void clear();

    /// The extensions of the listed files, as written, each once, sorted.
    QStringList extensions() const;

private:
    struct Entry {
        QByteArray sortKey;
        QString path;
    };

    static bool before(const Entry& a, const Entry& b);
    static std::vector<Entry> sortedEntries(const QStringList& paths);
    /// The paths that are not listed yet, which from now on count as listed.
    QStringList unknownAmong(const QStringList& paths);

    template <typename Condition>
    void removeWhere(Condition condition);

    std::vector<Entry> entries_;
    QSet<QString> known_;
};

} // namespace quav
