#pragma once

#include "app/BaseTab.h"
#include "codecs/ConversionPlan.h"

#include <memory>
#include <vector>

namespace quav {

class ConversionTask;

/// What the decode and the encode tab share: the plan, the checks, and handing the tasks to the
/// queue.
class ConversionTab : public BaseTab {
    Q_OBJECT

public:
    using BaseTab::BaseTab;

    bool deleteOriginals() const { return deleteOriginals_; }
    void setDeleteOriginals(bool deleteOriginals);

    /// Whether each output is written next to its source instead of into a chosen folder.
    virtual bool besideSources() const = 0;
    virtual void setBesideSources(bool beside) = 0;

    enum class Existing { Keep, Overwrite };

    /// What the tab's button would do for the files in the list. Reads the disk and changes
    /// nothing. `chosenFolder` counts unless outputs go beside the sources.
    virtual ConversionPlan plan(const QString& chosenFolder, Existing existing) const = 0;

    /// What keeps a plan from being started, as sentences for the user.
    QStringList obstacles(const ConversionPlan& plan) const;

    CommandOutcome executeCommand() override;

protected:
    virtual std::vector<std::shared_ptr<ConversionTask>> makeTasks(const ConversionPlan& plan) = 0;

    /// The folder that the output of a source goes to.
    QString outputFolder(const QString& source, const QString& chosenFolder) const;

private:
    bool confirmOverwriting(const ConversionPlan& plan);
    void tellWhatIsLeftOut(const ConversionPlan& plan);
    CommandOutcome start(const ConversionPlan& plan);

    bool deleteOriginals_ = false;
};

} // namespace quav
