#include "codecs/ConversionTab.h"

#include "app/UserPrompts.h"
#include "codecs/ConversionTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"

#include <QSet>

namespace quav {

void ConversionTab::setDeleteOriginals(bool deleteOriginals) {
    deleteOriginals_ = deleteOriginals;
    Q_EMIT optionsChanged();
}

QString ConversionTab::outputFolder(const QString& source, const QString& chosenFolder) const {
    return besideSources() ? folderOf(source) : chosenFolder;
}

QStringList ConversionTab::obstacles(const ConversionPlan& plan) const {
    QStringList sentences;
    QSet<QString> tools;
    for (const PlannedConversion& conversion : plan.conversions) {
        tools.insert(conversion.tool);
    }
    for (const QString& tool : tools) {
        if (!services().tools.has(tool)) {
            sentences << services().tools.whatIsMissing(tool);
        }
    }
    if (const auto folder = firstUnusableFolder(plan)) {
        sentences << *folder;
    }
    if (const auto pair = firstSharedOutput(plan)) {
        sentences << tr("“%1” and “%2” would both write the same output file. Convert them one "
                        "after the other into different folders.")
                         .arg(pair->first, pair->second);
    }
    return sentences;
}

bool ConversionTab::confirmOverwriting(const ConversionPlan& plan) {
    return plan.overwritten.isEmpty() ||
           services().prompts.confirm({tr("One of the output files already exists and will be "
                                          "overwritten.  Are you sure you want to continue?"),
                                       plan.overwritten.first(), tr("No"), tr("Yes"), false});
}

void ConversionTab::tellWhatIsLeftOut(const ConversionPlan& plan) {
    for (const QString& output : plan.outputsThatAreSources) {
        services().prompts.alert(tr("Output file \" %1\" already exists.skipping").arg(output), {});
    }
    if (!plan.unsupported.isEmpty()) {
        services().prompts.alert(tr("“%1” is of a kind that this version cannot convert here.")
                                     .arg(lastPathComponent(plan.unsupported.first())),
                                 tr("Such files stay in the list: %n", nullptr,
                                    static_cast<int>(plan.unsupported.size())));
    }
}

CommandOutcome ConversionTab::executeCommand() {
    if (files().rowCount() == 0) {
        return CommandOutcome::NothingToDo;
    }
    if (!confirmDelete(deleteOriginals_)) {
        return CommandOutcome::Declined;
    }
    const auto folder = besideSources() ? std::optional<QString>(QString()) : chooseOutputFolder();
    if (!folder) {
        return CommandOutcome::Declined;
    }
    ConversionPlan planned = plan(*folder, Existing::Keep);
    const QStringList inTheWay = obstacles(planned);
    if (!inTheWay.isEmpty()) {
        services().prompts.alert(inTheWay.first(), inTheWay.mid(1).join(u'\n'));
        return CommandOutcome::Refused;
    }
    if (!planned.overwritten.isEmpty()) {
        if (!confirmOverwriting(planned)) {
            return CommandOutcome::Declined;
        }
        planned = plan(*folder, Existing::Overwrite);
    }
    return start(planned);
}

CommandOutcome ConversionTab::start(const ConversionPlan& plan) {
    tellWhatIsLeftOut(plan);
    const auto tasks = makeTasks(plan);
    for (const auto& task : tasks) {
        task->setDeleteOriginal(deleteOriginals_);
    }
    clearFiles();
    if (!plan.unsupported.isEmpty()) {
        files().add(plan.unsupported);
        filesAdded();
    }
    services().queue.addTasks({tasks.begin(), tasks.end()});
    return tasks.empty() ? CommandOutcome::NothingToDo : CommandOutcome::Queued;
}

} // namespace quav
