#pragma once

#include "app/BaseTab.h"
#include "app/Services.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

namespace quav {

/// Knows the tabs in their order and which one is selected, takes the files that are dropped on
/// the program or opened with it to the right one, and guards quitting. It knows tabs only as
/// BaseTab, and the "about" tab only by its label.
class QUAVController : public QObject {
    Q_OBJECT

public:
    explicit QUAVController(const Services& services);

    /// Adds a tab behind those already there, before "about".
    void addTab(BaseTab& tab);

    /// The labels in order, "about" last.
    QStringList tabLabels() const;

    /// The tab of a label; none for "about" and for labels that do not exist.
    BaseTab* tab(const QString& label) const;

    void selectTab(int index);
    void selectTab(const QString& label);
    /// Its label.
    const QString& selectedTabViewItem() const { return selected_; }

    QUAVTaskQueue& taskQueue() const { return services_.queue; }

    /// Files that were dropped on the program or opened with it. They are searched in the
    /// background; of those that are for a selected tab its `filesRead` tells.
    void addFiles(const QStringList& paths);

    static bool isValidFile(const QString& tabLabel, const QString& path);

    /// Whether the program may end; asks when tasks are in the queue.
    bool applicationShouldTerminate();

    /// Whether the main window may close, which ends the program.
    bool windowShouldClose();

    void applicationWillTerminate();

    /// The searches for files that are for no selected tab.
    TabWork& searches() { return searches_; }

Q_SIGNALS:
    void selectedTabChanged(const QString& label);

private:
    void routeFromAbout(const FoundFiles& found);
    /// The tab that takes a file which was dropped while no work tab was selected; empty: none.
    QString takerOf(const QString& path) const;

    Services services_;
    QStringList labels_; ///< of the tabs, in their order
    QHash<QString, BaseTab*> tabMap_;
    QString selected_;
    TabWork searches_; ///< for files that are dropped while no work tab is selected
};

} // namespace quav
