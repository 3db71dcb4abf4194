#include "codecs/ConversionTab.h"

#include "app/UserPrompts.h"
#include "checksums/ChecksumFiles.h"
#include "codecs/ConversionTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QSet>

#include <algorithm>
#include <vector>

namespace quav {

ConversionTab::ConversionTab(const QString& label, QLatin1StringView besideKey,
                             const Services& services)
    : BaseTab(label, services), besideKey_(besideKey) {}

bool ConversionTab::besideSources() const {
    return services().settings.integer(besideKey_) != 0;
}

void ConversionTab::setBesideSources(bool beside) {
    services().settings.set(besideKey_, beside ? 1 : 0);
    Q_EMIT optionsChanged();
}

void ConversionTab::setDeleteOriginals(bool deleteOriginals) {
    deleteOriginals_ = deleteOriginals;
    Q_EMIT optionsChanged();
}

QString ConversionTab::outputFolder(const QString& source, const QString& chosenFolder) const {
    return besideSources() ? folderOf(source) : chosenFolder;
}

QStringList ConversionTab::obstacles(const ConversionPlan& plan) const {
    QStringList tools;
    for (const PlannedConversion& conversion : plan.conversions) {
        tools << conversion.tool;
    }
    QStringList sentences = services().tools.whatIsMissing(tools);
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
    const bool outputs =
        plan.overwritten.isEmpty() ||
        services().prompts.confirm({tr("One of the output files already exists and will be "
                                       "overwritten.  Are you sure you want to continue?"),
                                    plan.overwritten.first(), tr("No"), tr("Yes"), false});
    return outputs && std::all_of(plan.checksumFiles.begin(), plan.checksumFiles.end(),
                                  [this](const QString& path) {
                                      return checksumfiles::mayReplace(path, services().prompts);
                                  });
}

std::shared_ptr<QUAVTask> ConversionTab::makeFollowUp(const ConversionPlan& /*plan*/) const {
    return nullptr;
}

void ConversionTab::tellWhatIsLeftOut(const ConversionPlan& plan) {
    for (const QString& output : plan.outputsThatAreSources) {
        services().prompts.alert(tr("Output file \" %1\" already exists.skipping").arg(output), {});
    }
    if (!plan.unsupported.isEmpty()) {
        QStringList names;
        for (const QString& source : plan.unsupported) {
            names << lastPathComponent(source);
        }
        services().prompts.alert(
            tr("Files of these kinds cannot be converted here yet. They were left out."),
            names.join(u'\n'));
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
    const QStringList listed = fileNames();
    const ConversionPlan planned = plan(*folder);
    const QStringList inTheWay = obstacles(planned);
    if (!inTheWay.isEmpty()) {
        services().prompts.alert(inTheWay.first(), inTheWay.mid(1).join(u'\n'));
        return CommandOutcome::Refused;
    }
    if (!confirmOverwriting(planned)) {
        return CommandOutcome::Declined;
    }
    takeOff(listed, planned.unsupported);
    return start(planned);
}

void ConversionTab::takeOff(const QStringList& listed, const QStringList& staying) {
    // Files may have come while a question was open; they were never planned.
    const QSet<QString> planned(listed.begin(), listed.end());
    QStringList left = staying;
    for (const QString& file : fileNames()) {
        if (!planned.contains(file)) {
            left << file;
        }
    }
    clearFiles();
    if (!left.isEmpty()) {
        files().add(left);
        filesAdded();
    }
}

CommandOutcome ConversionTab::start(const ConversionPlan& plan) {
    tellWhatIsLeftOut(plan);
    const auto batch = std::make_shared<QUAVTaskResults>();
    std::vector<std::shared_ptr<QUAVTask>> tasks;
    for (const PlannedConversion& conversion : plan.conversions) {
        const auto task = makeTask(conversion, batch);
        task->setExisting(conversion.existing);
        task->setDeleteOriginal(deleteOriginals_);
        tasks.push_back(task);
    }
    batch->setTaskAfterSetDone(makeFollowUp(plan));
    services().queue.addTasks(tasks);
    return tasks.empty() ? CommandOutcome::NothingToDo : CommandOutcome::Queued;
}

} // namespace quav
