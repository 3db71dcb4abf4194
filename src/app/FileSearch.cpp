#include "app/FileSearch.h"

#include "app/FileKinds.h"
#include "app/TabWork.h"
#include "platform/DirectoryWalk.h"
#include "platform/Parallel.h"
#include "platform/PathNames.h"
#include "platform/SpecialFile.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <atomic>
#include <optional>
#include <vector>

namespace quav {

namespace {

constexpr size_t worthAThread = 1000;
constexpr size_t toldAtOnce = 64;

enum class Kind : unsigned char { NotLookedAt, Folder, Undecodable, Special, Valid, Foreign };

QString translated(const char* text) {
    return QCoreApplication::translate("BaseTab", text);
}

bool isUndecodable(const QString& path) {
    return path.contains(QChar::ReplacementCharacter) && !QFileInfo::exists(path);
}

/// Sentences about what a folder holds that cannot be used: names that are not UTF-8, folders that
/// cannot be read.
QStringList unusableIn(const DirectoryContents& contents) {
    QStringList sentences;
    for (const QString& path : contents.undecodable) {
        sentences << undecodableMessage(path);
    }
    for (const QString& folder : contents.unreadable) {
        sentences << translated(QT_TRANSLATE_NOOP("BaseTab", "The folder “%1” could not be read."))
                         .arg(folder);
    }
    return sentences;
}

/// Each path costs a look at the disk.
QStringList fullPaths(const QStringList& paths) {
    QStringList full(paths.size());
    QString* const to = full.data(); // no copy to be made by two threads at once
    inPieces(static_cast<size_t>(paths.size()), worthAThread, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; ++i) {
            to[i] = fullPath(paths[static_cast<qsizetype>(i)]);
        }
    });
    return full;
}

/// What is in the way of using a path that was named, in a sentence.
std::optional<QString> obstacleAt(const QString& path) {
    return isUndecodable(path) ? undecodableMessage(path) : whyNotOpened(path);
}

class Search {
public:
    Search(const QString& label, const QSet<QString>& listed, WorkProgress& progress)
        : label_(label), listed_(listed), progress_(progress) {}

    FoundFiles run(const QStringList& paths) {
        const std::vector<Kind> kinds = kindsOf(paths, [this](const QString& path) {
            return isFolder(path)        ? Kind::Folder
                   : isUndecodable(path) ? Kind::Undecodable
                   : whyNotOpened(path)  ? Kind::Special
                                         : kindOfFile(path);
        });
        for (size_t i = 0; i < kinds.size(); ++i) {
            const QString& path = paths[static_cast<qsizetype>(i)];
            if (kinds[i] == Kind::Folder) {
                getFiles(path);
            } else {
                take(path, kinds[i]);
            }
        }
        found_.isCancelled = progress_.isCancelled();
        return std::move(found_);
    }

private:
    Kind kindOfFile(const QString& path) const {
        return listed_.contains(path) || isValidFile(label_, path) ? Kind::Valid : Kind::Foreign;
    }

    /// Some files are read for it.
    template <typename KindOf>
    std::vector<Kind> kindsOf(const QStringList& paths, KindOf kindOf) {
        std::vector<Kind> kinds(static_cast<size_t>(paths.size()), Kind::NotLookedAt);
        const qint64 before = found_.files.size();
        std::atomic<qint64> looked = 0;
        inPieces(kinds.size(), worthAThread, [&](size_t first, size_t last) {
            for (size_t i = first; i < last && !progress_.isCancelled(); ++i) {
                kinds[i] = kindOf(paths[static_cast<qsizetype>(i)]);
                if (i % toldAtOnce == 0) {
                    progress_.tell(before + (looked += toldAtOnce));
                }
            }
        });
        return kinds;
    }

    void take(const QString& path, Kind kind) {
        switch (kind) {
        case Kind::Undecodable:
            found_.unusable << undecodableMessage(path);
            break;
        case Kind::Special:
            found_.unusable << whyNotOpened(path).value_or(QString());
            break;
        case Kind::Valid:
            found_.files << path;
            break;
        case Kind::Foreign:
            found_.skippedExtensions.insert(pathExtension(path));
            break;
        case Kind::Folder:
        case Kind::NotLookedAt:
            break;
        }
    }

    void getFiles(const QString& folder) {
        DirectoryContents contents =
            walkDirectory(folder, [this, before = found_.files.size()](qsizetype files) {
                progress_.tell(before + files);
                return !progress_.isCancelled();
            });
        found_.unusable << unusableIn(contents);
        for (const QString& special : contents.special) {
            // What nobody would take for a file of the tab needs no words.
            if (acceptedExtensions(label_).contains(formatWord(special))) {
                found_.unusable << whyNotOpened(special).value_or(QString());
            }
        }
        contents.files.removeIf(isBookkeepingFile);
        const std::vector<Kind> kinds =
            kindsOf(contents.files, [this](const QString& path) { return kindOfFile(path); });
        for (size_t i = 0; i < kinds.size(); ++i) {
            take(contents.files[static_cast<qsizetype>(i)], kinds[i]);
        }
    }

    const QString& label_;
    const QSet<QString>& listed_;
    WorkProgress& progress_;
    FoundFiles found_;
};

} // namespace

QString undecodableMessage(const QString& path) {
    return translated(QT_TRANSLATE_NOOP("BaseTab",
                                        "The name of “%1” is not valid UTF-8, so the file cannot "
                                        "be reached. Rename it and add it again."))
        .arg(path);
}

FoundFiles searchForTab(const QString& label, const QStringList& paths, const QSet<QString>& listed,
                        WorkProgress& progress) {
    return Search(label, listed, progress).run(fullPaths(paths));
}

FoundFiles searchForAny(const QStringList& paths, WorkProgress& progress) {
    FoundFiles found;
    const auto goOn = [&](qsizetype files) {
        progress.tell(found.files.size() + files);
        return !progress.isCancelled();
    };
    for (const QString& path : fullPaths(paths)) {
        if (isBookkeepingFile(path)) {
            continue;
        }
        if (auto obstacle = obstacleAt(path)) {
            found.unusable << *obstacle;
        } else if (!isFolder(path)) {
            found.files << path;
        } else {
            DirectoryContents contents = walkDirectory(path, goOn);
            found.unusable << unusableIn(contents);
            contents.files.removeIf([](const QString& file) {
                return isBookkeepingFile(file) || pathExtension(file).isEmpty();
            });
            found.files << contents.files;
        }
    }
    found.isCancelled = progress.isCancelled();
    return found;
}

} // namespace quav
