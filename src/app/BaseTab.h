#pragma once

#include "app/FactsReader.h"
#include "app/FileList.h"
#include "app/FileSearch.h"
#include "app/PresetChooser.h"
#include "app/Services.h"
#include "app/TabOptions.h"
#include "app/TabWork.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>

namespace quav {

/// How pressing a tab's button ended.
enum class CommandOutcome {
    Queued,      ///< the work is in the queue
    Running,     ///< the tab does it in the background; `commandEnded` tells how that ends
    Done,        ///< the work was small and has been done
    NothingToDo, ///< there was nothing to start
    Refused,     ///< something stood in the way; the user was told what
    Declined,    ///< the user answered a question with no, or cancelled a dialog
};

/// What all work tabs share: the list of input files and how it is filled, the dialogs, and the
/// checks before work starts. A tab holds no widget; a view shows it and presses its buttons.
class BaseTab : public QObject {
    Q_OBJECT

public:
    /// The table of options has to outlive the tab.
    BaseTab(QString label, const OptionTable& table, const Services& services);

    const QString& label() const { return label_; }
    FileList& files() { return files_; }

    /// The options as they stand.
    TabOptions& options() { return options_; }
    const TabOptions& options() const { return options_; }
    PresetChooser& presets() { return presets_; }

    QStringList fileNames() const { return files_.fileNames(); }

    /// Adds files without asking whether the tab can process them.
    void addFile(const QString& path);
    void addFoundFiles(const QStringList& paths);

    /// Adds files, and the files in folders, as far as the tab can process them: they are searched
    /// in the background, one call after the other, and `filesRead` follows each. The user is told
    /// of what was skipped.
    void addFiles(const QStringList& paths);

    /// The same with a search of one's own, which runs on another thread: it may touch only what
    /// outlives the tab.
    void addFound(const std::function<FoundFiles(WorkProgress&)>& search);

    /// What is known of the listed files, once somebody has started it.
    FactsReader& facts() { return facts_; }

    /// The searches for files, and the command's work.
    TabWork& searches() { return searches_; }
    TabWork& commandWork() { return commandWork_; }

    /// Cancels all that runs in the background; the program is about to end.
    void endWork();

    void addButtonClick();
    void clearButtonClick();
    virtual void clearFiles();

    /// The context menu's operations.
    void deleteSelectedRows(const QSet<int>& rows);
    void filterGivenExtension(const QString& extension);

    /// An option has changed.
    void changeDisplayOptions();

    /// Called whenever an option has changed, and when the tab is selected.
    virtual void displayRelevantOptions();

    /// The tab's button.
    virtual CommandOutcome executeCommand() = 0;

    /// A save dialog that opens in the directory, with a name to begin with.
    std::optional<QString> openSavePanel(const QString& directory, const QString& title,
                                         const QString& name = {});

    /// The full paths of what lies in a folder, one level deep, whose extension is this one in
    /// whatever capitals.
    static QStringList getFilesFromOutputDirectory(const QString& folder, const QString& extension);

Q_SIGNALS:
    void filesChanged();
    void optionsChanged();

    /// Files that were to be added are in the list, or the search was cancelled. Not complete when
    /// something could not be reached at all.
    void filesRead(bool isComplete);

    /// A command that was Running has ended.
    void commandEnded(quav::CommandOutcome outcome);

protected:
    /// Called after files were added.
    virtual void filesAdded();

    std::optional<QString> chooseOutputFolder();

    /// Does the command's work on a thread, with progress and a way to cancel it; see TabWork::run.
    template <typename Work, typename Then>
    void inBackground(const QString& title, Work work, Then then) {
        commandWork_.run(title, std::move(work), std::move(then));
    }

    /// Whether a command runs in the background; the user is told that he has to wait for it.
    bool refusesWhileWorking();

    /// Asks whether the originals are really to be deleted, unless the user does not want to be
    /// asked.
    bool confirmDelete(bool deleteOriginals);

    const Services& services() const { return services_; }

private:
    void take(const FoundFiles& found, FileList::Sorted sorted);
    void tellOfSkipped(const FoundFiles& found);
    void showBadFileMessage(const QString& text);

    QString label_;
    Services services_;
    FactsReader facts_;
    FileList files_{facts_.facts()};
    TabOptions options_;
    PresetChooser presets_;
    TabWork searches_;
    TabWork commandWork_;
};

} // namespace quav
