#pragma once

#include "app/FileList.h"
#include "app/PresetChooser.h"
#include "app/Services.h"
#include "app/TabOptions.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

struct DirectoryContents;

/// How pressing a tab's button ended.
enum class CommandOutcome {
    Queued,      ///< the work is in the queue
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

    /// Adds files, and the files in folders, as far as the tab can process them. The user is told
    /// of what was skipped. False when something could not be reached at all.
    bool addFiles(const QStringList& paths);

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

protected:
    /// Called after files were added.
    virtual void filesAdded();

    std::optional<QString> chooseOutputFolder();

    /// Asks whether the originals are really to be deleted, unless the user does not want to be
    /// asked.
    bool confirmDelete(bool deleteOriginals);

    const Services& services() const { return services_; }

private:
    struct Gathered {
        QStringList files;
        QSet<QString> skippedExtensions;
        QStringList unusable; ///< sentences about what cannot be carried
    };

    enum class Kind : unsigned char { Folder, Undecodable, Special, Valid, Foreign };

    Kind kindOf(const QString& path) const;
    Gathered gather(const QStringList& paths) const;
    void gatherFolder(const QString& path, Gathered& gathered) const;
    void showBadFileMessage(const QString& text);

    QString label_;
    Services services_;
    FileList files_;
    TabOptions options_;
    PresetChooser presets_;
};

/// Sentences about what a folder holds that cannot be used: names that are not UTF-8, folders that
/// cannot be read.
QStringList unusableIn(const DirectoryContents& contents);

/// True for a path whose name was not UTF-8, so that the file cannot be reached.
bool isUndecodable(const QString& path);

QString undecodableMessage(const QString& path);

} // namespace quav
