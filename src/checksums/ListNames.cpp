#include "checksums/ListNames.h"

#include "checksums/CreateMD5Task.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QHash>

namespace quav::listnames {

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(ListNames)
};

/// Where a verification looks for a name.
QString placeOf(const QString& name, const QString& list) {
    return joinPath(folderOf(list), name.startsWith(u'/') ? name.mid(1) : name);
}

struct Trouble {
    int astray = 0;         ///< entries that do not lead to their file
    int repeated = 0;       ///< names that stand more than once
    qsizetype example = -1; ///< one of the entries
};

Trouble troubleWith(const QStringList& names, const QStringList& files, const QString& list) {
    Trouble trouble;
    QHash<QString, int> counts;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const int count = ++counts[names[i]];
        const QString place = placeOf(names[i], list);
        const bool isAstray = place != files[i] && !isSameFile(place, files[i]);
        trouble.astray += isAstray ? 1 : 0;
        trouble.repeated += count == 2 ? 1 : 0;
        if (trouble.example < 0 && (isAstray || count == 2)) {
            trouble.example = i;
        }
    }
    return trouble;
}

QString inWords(const Trouble& trouble) {
    QStringList sentences;
    if (trouble.astray > 0) {
        sentences << Words::tr("%Ln names in this list will not lead to their files.", nullptr,
                               trouble.astray);
    }
    if (trouble.repeated > 0) {
        sentences << Words::tr("%Ln names stand in it more than once.", nullptr, trouble.repeated);
    }
    return sentences.join(u' ');
}

QString advice(ChecksumKind kind, const QStringList& files) {
    QString text =
        Words::tr("To get lists that verify, make one for the files of each folder and save it "
                  "beside them (--beside).");
    if (kind == ChecksumKind::Md5) {
        text += u' ' + Words::tr("An MD5 list may also lie above its files, in “%1”.")
                           .arg(checksumfiles::commonFolder(files));
    }
    return text;
}

} // namespace

QStringList namesIn(const QString& list, ChecksumKind kind, const QStringList& files) {
    const bool withFolders =
        kind == ChecksumKind::Md5 && !checksumfiles::areAllSameDirectory(files);
    const QString folder = folderOf(list);
    QStringList names;
    names.reserve(files.size());
    for (const QString& file : files) {
        names << (withFolders ? CreateMD5Task::nameFromFolder(file, folder)
                              : lastPathComponent(file));
    }
    return names;
}

std::optional<Question> questionBeforeNaming(ChecksumKind kind, const QStringList& files,
                                             const QString& list) {
    const QStringList names = namesIn(list, kind, files);
    const Trouble trouble = troubleWith(names, files, list);
    if (trouble.example < 0) {
        return std::nullopt;
    }
    const QString example = Words::tr("“%1” would be “%2” in “%3”.")
                                .arg(files[trouble.example], names[trouble.example], list);
    const QString question = Words::tr("Are you sure you want to continue?");
    return Question{inWords(trouble) + QStringLiteral("  ") + question,
                    example + u'\n' + advice(kind, files), Words::tr("No"), Words::tr("Yes"),
                    false};
}

} // namespace quav::listnames
