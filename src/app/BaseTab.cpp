#include "app/BaseTab.h"

#include "app/FileKinds.h"
#include "app/UserPrompts.h"
#include "platform/DirectoryWalk.h"
#include "platform/Parallel.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>
#include <vector>

namespace quav {

namespace {

// Long enough for the list to be drawn before the alert covers it.
constexpr std::chrono::milliseconds badFileDelay{500};

constexpr size_t worthAThread = 1000;

QStringList fullPaths(const QStringList& paths) {
    QStringList full;
    full.reserve(paths.size());
    std::transform(paths.begin(), paths.end(), std::back_inserter(full), fullPath);
    return full;
}

} // namespace

QString undecodableMessage(const QString& path) {
    return BaseTab::tr("The name of “%1” is not valid UTF-8, so the file cannot be reached. Rename "
                       "it and add it again.")
        .arg(path);
}

bool isUndecodable(const QString& path) {
    return path.contains(QChar::ReplacementCharacter) && !QFileInfo::exists(path);
}

QStringList unusableIn(const DirectoryContents& contents) {
    QStringList sentences;
    for (const QString& path : contents.undecodable) {
        sentences << undecodableMessage(path);
    }
    for (const QString& folder : contents.unreadable) {
        sentences << BaseTab::tr("The folder “%1” could not be read.").arg(folder);
    }
    return sentences;
}

BaseTab::BaseTab(QString label, const OptionTable& table, const Services& services)
    : label_(std::move(label)), services_(services), options_(table, services.settings),
      presets_(options_, label_, services.settings, services.prompts) {
    connect(&options_, &TabOptions::changed, this, &BaseTab::changeDisplayOptions);
}

void BaseTab::addFile(const QString& path) {
    addFoundFiles({path});
}

void BaseTab::addFoundFiles(const QStringList& paths) {
    files_.add(fullPaths(paths));
    filesAdded();
}

void BaseTab::gatherFolder(const QString& path, Gathered& gathered) const {
    const DirectoryContents contents = walkDirectory(path);
    gathered.unusable << unusableIn(contents);
    for (const QString& special : contents.special) {
        // What nobody would take for a file of the tab needs no words.
        if (acceptedExtensions(label_).contains(formatWord(special))) {
            gathered.unusable << whyNotOpened(special).value_or(QString());
        }
    }
    for (const QString& file : contents.files) {
        if (isBookkeepingFile(file)) {
            continue;
        }
        if (isValidFile(label_, file)) {
            gathered.files << file;
        } else {
            gathered.skippedExtensions.insert(pathExtension(file));
        }
    }
}

BaseTab::Kind BaseTab::kindOf(const QString& path) const {
    if (isFolder(path)) {
        return Kind::Folder;
    }
    if (isUndecodable(path)) {
        return Kind::Undecodable;
    }
    if (whyNotOpened(path)) {
        return Kind::Special;
    }
    return files_.contains(path) || isValidFile(label_, path) ? Kind::Valid : Kind::Foreign;
}

BaseTab::Gathered BaseTab::gather(const QStringList& paths) const {
    // Each path costs a look at the disk, and some are read.
    std::vector<Kind> kinds(static_cast<size_t>(paths.size()));
    inPieces(kinds.size(), worthAThread, [&](size_t first, size_t last) {
        for (size_t i = first; i < last; ++i) {
            kinds[i] = kindOf(paths[static_cast<qsizetype>(i)]);
        }
    });
    Gathered gathered;
    for (size_t i = 0; i < kinds.size(); ++i) {
        const QString& path = paths[static_cast<qsizetype>(i)];
        switch (kinds[i]) {
        case Kind::Folder:
            gatherFolder(path, gathered);
            break;
        case Kind::Undecodable:
            gathered.unusable << undecodableMessage(path);
            break;
        case Kind::Special:
            gathered.unusable << whyNotOpened(path).value_or(QString());
            break;
        case Kind::Valid:
            gathered.files << path;
            break;
        case Kind::Foreign:
            gathered.skippedExtensions.insert(pathExtension(path));
            break;
        }
    }
    return gathered;
}

bool BaseTab::addFiles(const QStringList& paths) {
    const Gathered gathered = gather(fullPaths(paths));
    files_.add(gathered.files);
    filesAdded();
    if (!gathered.unusable.isEmpty()) {
        showBadFileMessage(gathered.unusable.join(u'\n'));
    }
    if (!gathered.skippedExtensions.isEmpty() &&
        services_.settings.boolean(keys::warnOnFilesSkipped)) {
        showBadFileMessage(
            files_.rowCount() == 0
                ? tr("File types not supported by this tab")
                : tr("Some files types were not recognized by this tab and were skipped"));
    }
    return gathered.unusable.isEmpty();
}

void BaseTab::showBadFileMessage(const QString& text) {
    services_.prompts.alertAfter(badFileDelay, text);
}

void BaseTab::filesAdded() {
    Q_EMIT filesChanged();
}

void BaseTab::addButtonClick() {
    const QStringList chosen =
        services_.prompts.chooseFiles(tr("Choose files for processing"), tr("Add Files"));
    if (!chosen.isEmpty()) {
        addFiles(chosen);
    }
}

void BaseTab::clearButtonClick() {
    clearFiles();
}

void BaseTab::clearFiles() {
    files_.clear();
    Q_EMIT filesChanged();
}

void BaseTab::deleteSelectedRows(const QSet<int>& rows) {
    files_.remove(rows);
    Q_EMIT filesChanged();
}

void BaseTab::filterGivenExtension(const QString& extension) {
    files_.removeWithExtension(extension);
    Q_EMIT filesChanged();
}

void BaseTab::changeDisplayOptions() {
    displayRelevantOptions();
}

void BaseTab::displayRelevantOptions() {
    Q_EMIT optionsChanged();
}

std::optional<QString> BaseTab::chooseOutputFolder() {
    return services_.prompts.chooseFolder(tr("Choose output directory"));
}

std::optional<QString> BaseTab::openSavePanel(const QString& directory, const QString& title,
                                              const QString& name) {
    return services_.prompts.chooseSavePath(title, directory, name);
}

bool BaseTab::confirmDelete(bool deleteOriginals) {
    if (!deleteOriginals || !services_.settings.boolean(keys::warnOnDelete)) {
        return true;
    }
    return services_.prompts.confirm({tr("You have chosen to delete the original files.  Are you "
                                         "sure you want to continue?"),
                                      {},
                                      tr("Yes"),
                                      tr("No"),
                                      true});
}

QStringList BaseTab::getFilesFromOutputDirectory(const QString& folder, const QString& extension) {
    const QString wanted = extension.toUpper();
    QStringList found;
    const QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString& name : names) {
        if (formatWord(name) == wanted) {
            found << joinPath(folder, name);
        }
    }
    return found;
}

} // namespace quav
