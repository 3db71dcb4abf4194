#pragma once

#include "app/BaseTab.h"
#include "codecs/ConversionOptions.h"
#include "codecs/ConversionPlan.h"
#include "engine/FileConversion.h"

#include <memory>
#include <vector>

namespace quav {

class ConversionTask;
class QUAVTask;
class QUAVTaskResults;

/// What the decode and the encode tab share: the plan, the checks, and handing the tasks to the
/// queue.
class ConversionTab : public BaseTab {
    Q_OBJECT

public:
    ConversionTab(const QString& label, const ConversionOptions& rows, const Services& services);

    /// The rows of the options that the tabs share.
    const ConversionOptions& rows() const { return rows_; }

    /// Whether a file, although the tab took it, is of a kind that it has no road for: skipped
    /// without a word.
    virtual bool isOfNoKind(const QString& source) const;

    /// What the tab's button would do for the files in the list. Reads the disk and changes
    /// nothing. `chosenFolder` counts unless outputs go beside the sources.
    virtual ConversionPlan plan(const QString& chosenFolder) const = 0;

    /// What keeps a plan from being started, as sentences for the user.
    QStringList obstacles(const ConversionPlan& plan) const;

    CommandOutcome executeCommand() override;

protected:
    /// The task for one conversion of a plan. `batch` is there for tasks that report together; one
    /// that does enters itself.
    virtual std::shared_ptr<ConversionTask>
    makeTask(const PlannedConversion& conversion,
             const std::shared_ptr<QUAVTaskResults>& batch) const = 0;

    /// The folder that the output of a source goes to.
    QString outputFolder(const QString& source, const QString& chosenFolder) const;

    /// What is to run when all tasks of a plan are done; nothing unless a tab has something.
    virtual std::shared_ptr<QUAVTask> makeFollowUp(const ConversionPlan& plan) const;

private:
    bool confirmOverwriting(const ConversionPlan& plan);
    void tellWhatIsLeftOut(const ConversionPlan& plan);
    void takeOff(const QStringList& listed, const QStringList& staying);
    CommandOutcome start(const ConversionPlan& plan);
    void askAfterwards(const std::vector<std::shared_ptr<QUAVTask>>& tasks,
                       const std::shared_ptr<KeptOriginals>& kept);
    void askAboutLosses(const std::vector<KeptOriginals::Original>& originals);

    const ConversionOptions& rows_;
};

} // namespace quav
