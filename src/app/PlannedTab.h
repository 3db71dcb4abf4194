#pragma once

#include "app/BaseTab.h"
#include "app/Plan.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <memory>
#include <optional>
#include <vector>

namespace quav {

class QUAVTask;
class QUAVTaskResults;

/// A tab whose button starts work on the files in its list. The work is planned before anything is
/// touched; the plan is what is asked about, printed, refused or started, and only making it and
/// its tasks is each tab's own.
class PlannedTab : public BaseTab {
    Q_OBJECT

public:
    using BaseTab::BaseTab;

    /// What the button would do for the files in the list. Reads the disk and changes nothing.
    /// `destination` is the folder or the file that the user chose; empty where the options say
    /// where outputs go.
    virtual Plan plan(const OptionValues& values, const QString& destination) const = 0;

    /// What keeps a plan from being started, as sentences for the user.
    QStringList obstacles(const Plan& plan) const;

    /// Whether the chosen work does anything with a file, although the tab took it. May read its
    /// beginning.
    virtual bool hasUseFor(const QString& path) const = 0;

    /// Asks, refuses, queues and clears the list.
    CommandOutcome executeCommand() final;

protected:
    using Tasks = std::vector<std::shared_ptr<QUAVTask>>;

    /// Why there is no destination.
    struct NoDestination {
        bool clearsList = false;
    };

    /// Asks whatever has to be known before the work can be planned.
    virtual tl::expected<QString, NoDestination> askDestination() = 0;

    /// The task for a job. One that reports with the others of its batch is given `batch`.
    virtual std::shared_ptr<QUAVTask>
    makeTask(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const = 0;

    /// Does a plan at once whose work is not for the queue, and takes its files off the list; none
    /// for every other plan.
    virtual std::optional<CommandOutcome> executeAtOnce(const Plan& plan);

    /// Called with all tasks of a plan, before they are queued.
    virtual void aboutToQueue(const Tasks& tasks);

    /// What is to run when all tasks of a plan are done; nothing unless a tab has something.
    virtual std::shared_ptr<QUAVTask> makeFollowUp(const Plan& plan) const;

    /// Asks the questions of a plan; true when all are answered with yes.
    bool confirm(const Plan& plan);

    /// A long list as a dialog can show it.
    static QString namesForMessage(QStringList names);

private:
    QStringList missingTools(const Plan& plan) const;
    void tellWhatIsLeftOut(const Plan& plan);
    void takeOff(const QStringList& listed, const Plan& plan);
    CommandOutcome queue(const Plan& plan);
};

} // namespace quav
