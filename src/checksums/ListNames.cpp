#include "checksums/ListNames.h"

#include "checksums/CreateMD5Task.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QHash>

namespace quav::listnames {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("ListNames", text);
}

/// Where a verification looks for a name.
QString placeOf(const QString& name, const QString& list) {
    return joinPath(folderOf(list), name.startsWith(u'/') ? name.mid(1) : name);
}

struct Trouble {
    qsizetype astray = 0;   ///< entries that do not lead to their file
    qsizetype repeated = 0; ///< names that stand more than once
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

QString counted(qsizetype count, const char* one, const char* many) {
    return count == 1 ? tr(one) : tr(many).arg(count);
}

QString inWords(const Trouble& trouble) {
    QStringList sentences;
    if (trouble.astray > 0) {
        sentences << counted(
            trouble.astray,
            QT_TRANSLATE_NOOP("ListNames", "1 name in this list will not lead to its file."),
            QT_TRANSLATE_NOOP("ListNames", "%L1 names in this list will not lead to their files."));
    }
    if (trouble.repeated > 0) {
        sentences << counted(
            trouble.repeated, QT_TRANSLATE_NOOP("ListNames", "1 name stands in it more than once."),
            QT_TRANSLATE_NOOP("ListNames", "%L1 names stand in it more than once."));
    }
    return sentences.join(u' ');
}

QString advice(ChecksumKind kind, const QStringList& files) {
    QString text = tr(QT_TRANSLATE_NOOP(
        "ListNames", "To get lists that verify, make one for the files of each folder and save it "
                     "beside them (--beside)."));
    if (kind == ChecksumKind::Md5) {
        text += u' ' + tr(QT_TRANSLATE_NOOP("ListNames",
                                            "An MD5 list may also lie above its files, in “%1”."))
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
    const QString example = tr(QT_TRANSLATE_NOOP("ListNames", "“%1” would be “%2” in “%3”."))
                                .arg(files[trouble.example], names[trouble.example], list);
    const QString question =
        tr(QT_TRANSLATE_NOOP("ListNames", "Are you sure you want to continue?"));
    return Question{inWords(trouble) + QStringLiteral("  ") + question,
                    example + u'\n' + advice(kind, files), tr(QT_TRANSLATE_NOOP("ListNames", "No")),
                    tr(QT_TRANSLATE_NOOP("ListNames", "Yes")), false};
}

} // namespace quav::listnames
