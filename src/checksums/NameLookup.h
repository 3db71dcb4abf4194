#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

/// Finds the files that a list names below its folder, also under names that the disk spells
/// otherwise: in the other Unicode normal form, and in other capitals where just one file has the
/// name then. A folder is read once, and only when a name is not there as it is written.
class NameLookup {
public:
    explicit NameLookup(QString folder) : folder_(std::move(folder)) {}

    /// The path of a name, whatever it begins with; not looked up on the disk.
    QString joined(const QString& name) const;

    /// The path of the first of the names that has a file, and if none has, of the first one that
    /// has it in another spelling. When there is no file at all, the first name's path.
    QString find(const QStringList& names);

private:
    /// The names of one folder; an empty one where several are the same.
    struct Names {
        QHash<QString, QString> byForm; ///< by their composed form
        QHash<QString, QString> byCase; ///< by that without capitals
    };

    std::optional<QString> findOtherwise(const QString& name);
    QString realName(const QString& folder, const QString& name);
    const Names& namesIn(const QString& folder);

    QString folder_;
    QHash<QString, Names> folders_; ///< by their paths without links
};

} // namespace quav
