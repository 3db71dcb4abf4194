#include "app/BaseTab.h"

#include "app/UserPrompts.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace quav {

namespace {

// Long enough for the list to be drawn before the alert covers it.
constexpr std::chrono::milliseconds badFileDelay{500};

QStringList fullPaths(const QStringList& paths) {
    QStringList full;
    full.reserve(paths.size());
    std::transform(paths.begin(), paths.end(), std::back_inserter(full), fullPath);
    return full;
}

} // namespace

BaseTab::BaseTab(QString label, const OptionTable& table, const Services& services)
    : label_(std::move(label)), services_(services), options_(table, services.settings),
      presets_(options_, label_, services.settings, services.prompts) {
    connect(&options_, &TabOptions::changed, this, &BaseTab::changeDisplayOptions);
    connect(this, &BaseTab::filesChanged, this,
            [this] { facts_.setFiles(files_.fileNames(), files_.known()); });
    connect(&facts_, &FactsReader::changed, this, [this] { files_.factsChanged(false); });
    connect(&facts_, &FactsReader::finished, this, [this] {
        files_.factsChanged(true);
        ListFacts facts = options_.facts();
        facts.setFilesOf(facts_.facts());
        options_.setFacts(facts);
    });
}

void BaseTab::endWork() {
    searches_.cancelAll();
    commandWork_.cancelAll();
}

bool BaseTab::refusesWhileWorking() {
    if (commandWork_.isBusy()) {
        services_.prompts.alert(
            tr("This tab is still at work. Wait until it has finished, or cancel it."),
            commandWork_.title());
    }
    return commandWork_.isBusy();
}

void BaseTab::addFile(const QString& path) {
    addFoundFiles({path});
}

void BaseTab::addFoundFiles(const QStringList& paths) {
    files_.add(fullPaths(paths));
    filesAdded();
}

void BaseTab::addFiles(const QStringList& paths) {
    // What is listed by then may be more, which costs a second look and does no harm.
    addFound([label = label_, paths, listed = files_.known()](WorkProgress& progress) {
        return searchForTab(label, paths, listed, progress);
    });
}

void BaseTab::addFound(const std::function<FoundFiles(WorkProgress&)>& search) {
    searches_.run(
        tr("Adding files"),
        [search](WorkProgress& progress) {
            FoundFiles found = search(progress);
            FileList::Sorted sorted(found.isCancelled ? QStringList() : found.files);
            return std::pair(std::move(found), std::move(sorted));
        },
        [this](std::pair<FoundFiles, FileList::Sorted> result) {
            take(result.first, std::move(result.second));
        });
}

void BaseTab::take(const FoundFiles& found, FileList::Sorted sorted) {
    if (!found.isCancelled) {
        files_.add(std::move(sorted));
        filesAdded();
        tellOfSkipped(found);
    }
    Q_EMIT filesRead(!found.isCancelled && found.unusable.isEmpty());
}

void BaseTab::tellOfSkipped(const FoundFiles& found) {
    if (!found.unusable.isEmpty()) {
        showBadFileMessage(found.unusable.join(u'\n'));
    }
    if (!found.skippedExtensions.isEmpty() &&
        services_.settings.boolean(keys::warnOnFilesSkipped)) {
        showBadFileMessage(
            files_.rowCount() == 0
                ? tr("File types not supported by this tab")
                : tr("Some files types were not recognized by this tab and were skipped"));
    }
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
