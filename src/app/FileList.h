#pragma once

#include "app/ListFacts.h"

#include <QAbstractTableModel>
#include <QByteArray>
#include <QLocale>
#include <QSet>
#include <QStringList>

#include <vector>

namespace quav {

/// The input files of a tab: full paths without duplicates, always in the order in which a file
/// browser lists them. Its rows show the names without their folders, and what is known of the
/// files; sorting the rows changes no order of the paths.
class FileList : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Folder, Length, Format, Size, ColumnCount };

    /// Files in the list's order, each once: what takes long of adding them, done beforehand.
    class Sorted {
    public:
        Sorted() = default;
        /// Any thread.
        explicit Sorted(const QStringList& paths);

    private:
        friend class FileList;
        struct Entry {
            QByteArray sortKey;
            QString path;

            bool operator<(const Entry& other) const;
        };
        std::vector<Entry> entries_;
    };

    explicit FileList(const ListFacts& facts, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Of the rows only; a column of -1 gives them the order of the paths again.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    bool contains(const QString& path) const { return known_.contains(path); }
    /// All paths; a cheap copy.
    const QSet<QString>& known() const { return known_; }

    /// The paths in order.
    QStringList fileNames() const;

    /// Adds the paths that are not listed yet; sorts once.
    void add(const QStringList& paths) { add(Sorted(paths)); }
    void add(Sorted sorted);
    void remove(const QSet<int>& rows);
    void removeWithExtension(const QString& extension);
    void clear();

    /// The extensions of the listed files, as written, each once, sorted.
    QStringList extensions() const;

    /// Whether not all files lie in the same folder.
    bool hasFolders() const { return hasFolders_; }

    /// Some of the longest texts of a column that is told by the paths, the widest among them.
    QStringList longestTexts(Column column) const;

    /// More is known of the files; `inWhole` when all of it is.
    void factsChanged(bool inWhole);

private:
    using Entry = Sorted::Entry;

    const QString& pathAt(int row) const;
    QString folderText(const QString& path) const;
    QString text(const QString& path, int column) const;
    QString tip(const QString& path) const;
    void noteFolders();
    void arrange();
    std::vector<int> arranged() const;

    template <typename Condition>
    void removeWhere(Condition condition);

    const ListFacts& facts_;
    QLocale locale_;
    std::vector<Entry> entries_;
    std::vector<int> shown_; ///< the entry of each row; empty while they are alike
    QSet<QString> known_;
    QString commonFolder_; ///< with a slash at its end
    bool hasFolders_ = false;
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace quav
