#include "checksums/CreateMD5Task.h"

#include "checksums/ChecksumFiles.h"
#include "checksums/ChecksumList.h"
#include "checksums/FileHash.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"

#include <QFileInfo>

#include <utility>

namespace quav {

CreateMD5Task::CreateMD5Task(TaskHost& queue, const QStringList& files, const QString& outputPath)
    : BackgroundTask(queue), fileNames_(files), outputPath_(outputPath) {
    setTitle(tr("Create MD5 checksum file"));
}

bool CreateMD5Task::areAllSameDirectory(const QStringList& paths) {
    return checksumfiles::areAllSameDirectory(paths);
}

QString CreateMD5Task::nameFromFolder(const QString& file, const QString& folder) {
    const QString inside = joinPath(folder, {});
    const bool isDeeper = file.startsWith(inside) && folderOf(file) != folder;
    return isDeeper ? u'/' + file.mid(inside.size()) : lastPathComponent(file);
}

void CreateMD5Task::doStartTask() {
    showProgress(tr("Creating MD5 checksum file"), 0);
    doCreateMd5();
}

void CreateMD5Task::doCreateMd5() {
    QString text = checksumfiles::header(ChecksumKind::Md5, QDateTime::currentDateTime());
    const bool inOneFolder = areAllSameDirectory(fileNames_);
    const QString folder = folderOf(outputPath_);
    Verdicts verdicts;
    FileHash::md5HashesOfFilesAtPaths(
        fileNames_,
        [&](qsizetype index, const FileHash::Digest& digest) {
            const QString& file = fileNames_[index];
            const QString fileName = lastPathComponent(file);
            const QString name = inOneFolder ? fileName : nameFromFolder(file, folder);
            showMainLine(fileName);
            showCount(tr("Creating MD5 Hash"), index + 1, fileNames_.size());
            text += QStringLiteral("%1 *%2\n").arg(digest.value_or(QStringLiteral("(null)")), name);
            if (!digest) {
                verdicts.push_back(
                    checksumfiles::unreadable(outputPath_, file, digest.error().code));
                addWarning(tr("“%1” could not be read: %2")
                               .arg(file, checksumfiles::reasonOf(digest.error().code)));
            } else if (!checksumlist::isReadBack(ChecksumKind::Md5, name)) {
                addWarning(checksumlist::notReadBack(file));
            }
        },
        [this](double share) {
            raiseProgress(share);
            return !stopRequested();
        });
    if (stopRequested()) {
        return;
    }
    warnOfLists();
    showStatus({});
    checksumfiles::write(outputPath_, text);
    noteWritten(outputPath_);
    results()->appendVerdicts(std::move(verdicts), *this);
}

/// Entries for lists are entries for files that change when the lists are made anew, as this one is
/// now.
void CreateMD5Task::warnOfLists() {
    QStringList others;
    for (const QString& file : fileNames_) {
        if (isOutput(file)) {
            addWarning(
                tr("“%1” is itself in the list, as it was before: this entry will always fail")
                    .arg(file));
        } else if (checksumlist::kindByName(file) == ChecksumKind::Md5) {
            others << file;
        }
    }
    if (!others.isEmpty()) {
        addWarning(tr("%Ln of the files are MD5 lists, too, such as “%1”: their entries will fail "
                      "once those lists are made again",
                      nullptr, static_cast<int>(others.size()))
                       .arg(others.first()));
    }
}

/// Whether the list is about to be written over this file, by whatever path. A second name of the
/// old list stays what it is.
bool CreateMD5Task::isOutput(const QString& file) const {
    return file == outputPath_ ||
           (isSameFile(file, outputPath_) &&
            QFileInfo(file).canonicalFilePath() == QFileInfo(outputPath_).canonicalFilePath());
}

void CreateMD5Task::beforeEnd() {
    // The list is the result; there is nothing more to read, unless something went wrong.
    results()->setHasResults(error());
}

} // namespace quav
