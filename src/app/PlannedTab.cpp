#include "app/PlannedTab.h"

#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/SpecialFile.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace quav {

namespace {

QStringList toolsOf(const Job& job) {
    QStringList tools;
    for (const ToolCall& step : job.steps) {
        if (!step.tool.isEmpty() && !tools.contains(step.tool)) {
            tools << step.tool;
        }
    }
    return tools;
}

QStringList lastPathComponents(const QStringList& paths) {
    QStringList names;
    std::transform(paths.begin(), paths.end(), std::back_inserter(names), lastPathComponent);
    return names;
}

} // namespace

QString PlannedTab::namesForMessage(QStringList names) {
    constexpr qsizetype most = 20;
    const int more = static_cast<int>(names.size() - most);
    if (more > 0) {
        names = names.first(most);
        names << tr("and %Ln more", nullptr, more);
    }
    return names.join(u'\n');
}

QStringList PlannedTab::missingTools(const Plan& plan) const {
    QSet<QStringList> sets;
    for (const Job& job : plan.jobs) {
        sets << toolsOf(job);
    }
    QStringList all;
    for (const QStringList& tools : sets) {
        if (!plan.needsAllTools && services().tools.whatIsMissing(tools).isEmpty()) {
            return {};
        }
        all << tools;
    }
    all.sort();
    return services().tools.whatIsMissing(all);
}

QStringList PlannedTab::obstacles(const Plan& plan) const {
    QStringList sentences = plan.obstacles + missingTools(plan);
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

bool PlannedTab::confirm(const Plan& plan) {
    return std::all_of(
        plan.questions.begin(), plan.questions.end(),
        [this](const Question& question) { return services().prompts.confirm(question); });
}

void PlannedTab::tellWhatIsLeftOut(const Plan& plan) {
    using Why = LeftOut::Why;
    UserPrompts& prompts = services().prompts;
    for (const QString& output : plan.leftOutPaths(Why::OwnOutput)) {
        prompts.alert(tr("Output file \" %1\" already exists.skipping").arg(output), {});
    }
    for (const QString& source : plan.leftOutPaths(Why::NoFile)) {
        prompts.alert(whyNotOpened(source).value_or(QString()), {});
    }
    if (const QStringList paths = plan.leftOutPaths(Why::NotYet); !paths.isEmpty()) {
        prompts.alert(tr("Files of these kinds cannot be converted here yet. They were left out."),
                      namesForMessage(lastPathComponents(paths)));
    }
    if (const QStringList paths = plan.leftOutPaths(Why::Unwritable); !paths.isEmpty()) {
        prompts.alert(tr("The folders of these files cannot be written to. They were left out."),
                      namesForMessage(paths));
    }
}

CommandOutcome PlannedTab::executeCommand() {
    if (files().rowCount() == 0) {
        return CommandOutcome::NothingToDo;
    }
    if (refusesWhileWorking()) {
        return CommandOutcome::Refused;
    }
    const auto destination = askDestination();
    if (!destination) {
        if (destination.error().clearsList) {
            clearFiles();
        }
        return CommandOutcome::Declined;
    }
    const QStringList listed = fileNames();
    const Plan planned = plan(options().values(), *destination);
    const QStringList inTheWay = obstacles(planned);
    if (!inTheWay.isEmpty()) {
        services().prompts.alert(inTheWay.first(), inTheWay.mid(1).join(u'\n'));
        return CommandOutcome::Refused;
    }
    if (!confirm(planned)) {
        return CommandOutcome::Declined;
    }
    if (const auto outcome = executeAtOnce(planned)) {
        return *outcome;
    }
    takeOff(listed, planned);
    tellWhatIsLeftOut(planned);
    return queue(planned);
}

/// Takes what was planned off the list. Files may have come while a question was open.
void PlannedTab::takeOff(const QStringList& listed, const Plan& plan) {
    const QSet<QString> planned(listed.begin(), listed.end());
    QStringList left;
    for (const LeftOut& file : plan.leftOut) {
        if (file.stays()) {
            left << file.path;
        }
    }
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

CommandOutcome PlannedTab::queue(const Plan& plan) {
    const auto batch = std::make_shared<QUAVTaskResults>();
    Tasks tasks;
    tasks.reserve(plan.jobs.size());
    for (const Job& job : plan.jobs) {
        const auto task = makeTask(job, batch);
        if (task->results() == batch) {
            batch->addTaskInSet(*task);
        }
        tasks.push_back(task);
    }
    aboutToQueue(tasks);
    batch->setTaskAfterSetDone(makeFollowUp(plan));
    services().queue.addTasks(tasks);
    return tasks.empty() ? CommandOutcome::NothingToDo : CommandOutcome::Queued;
}

std::optional<CommandOutcome> PlannedTab::executeAtOnce(const Plan& /*plan*/) {
    return std::nullopt;
}

void PlannedTab::aboutToQueue(const Tasks& /*tasks*/) {}

std::shared_ptr<QUAVTask> PlannedTab::makeFollowUp(const Plan& /*plan*/) const {
    return nullptr;
}

} // namespace quav
