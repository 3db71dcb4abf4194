#pragma once

#include <QHash>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace quav {

/// One run of `shntool hash` over files of one folder, and what it has printed. Its digests come
/// with bare names, so files that share a name must not share a run.
class HashRun {
public:
    /// The runs over the files of a list: one a folder, and more only where the names are too long
    /// for one command line.
    static std::vector<HashRun> over(const QStringList& files, const QString& tool,
                                     const QProcessEnvironment& environment);

    const QString& folder() const { return folder_; }
    QStringList arguments() const;

    /// Takes one piece that it printed, with its line end.
    void take(const QString& piece);

    /// Notes why it did not get to its end, in a sentence. An entry that it was about to print is
    /// none.
    void fail(const QString& reason);
    const QString& failure() const { return failure_; }

    /// Whether every file has an entry.
    bool isComplete() const;

    /// A line with a digest, and the place of its file in the list.
    using Entry = std::pair<std::size_t, QString>;
    const std::vector<Entry>& entries() const { return entries_; }

    /// What there is to say of it: the tool's own words about files, and why it failed where that
    /// is not said with them.
    QStringList words() const;

    /// Each file that has no entry, and why; what else was complained of. A complaint that names no
    /// file comes without one.
    struct Remark {
        QString file;
        QString words;
        bool isDamage = false;
    };
    std::vector<Remark> remarks() const;

    /// What the tool has to say of files that have their entries all the same.
    QStringList warnings() const;

private:
    explicit HashRun(QString folder) : folder_(std::move(folder)) {}

    /// False when a name like it is in the run already.
    bool add(const QString& name, std::size_t place);
    std::optional<std::size_t> indexIn(const QString& complaint) const;
    bool isHashed(const QString& complaint) const;
    QString pathOf(std::size_t index) const;
    qsizetype mostLines() const;

    QString folder_;
    QStringList names_;
    std::vector<std::size_t> places_;     ///< of each name
    std::vector<bool> hashed_;            ///< each name
    QHash<QString, std::size_t> indexes_; ///< of the names, by what a line shows of them
    std::vector<Entry> entries_;
    bool lastIsCut_ = false;
    QStringList complaints_;
    QString failure_;
};

} // namespace quav
