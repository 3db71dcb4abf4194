#include "codecs/ConversionTab.h"

#include "app/UserPrompts.h"
#include "checksums/ChecksumFiles.h"
#include "codecs/ConversionTask.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <vector>

namespace quav {

namespace {

/// A long list as a dialog can show it.
QString namesForMessage(QStringList names) {
    constexpr qsizetype most = 20;
    const qsizetype more = names.size() - most;
    if (more > 0) {
        names = names.first(most);
        names << ConversionTab::tr("and %L1 more").arg(more);
    }
    return names.join(u'\n');
}

bool isWriteProtected(const QString& path) {
    return !QFileInfo(path).permissions().testFlag(QFileDevice::WriteOwner);
}

/// Which output is meant, and which ones their owners wanted to keep as they are.
QString overwritingDetails(const ConversionPlan& plan) {
    QStringList locked;
    std::copy_if(plan.overwritten.begin(), plan.overwritten.end(), std::back_inserter(locked),
                 isWriteProtected);
    if (locked.isEmpty()) {
        return plan.overwritten.first();
    }
    return (locked.size() == 1
                ? ConversionTab::tr("This one is write-protected:")
                : ConversionTab::tr("These %L1 are write-protected:").arg(locked.size())) +
           u'\n' + namesForMessage(locked);
}

} // namespace

ConversionTab::ConversionTab(const QString& label, const ConversionOptions& rows,
                             const Services& services)
    : BaseTab(label, rows, services), rows_(rows) {}

bool ConversionTab::isOfNoKind(const QString& /*source*/) const {
    return false;
}

QString ConversionTab::outputFolder(const QString& source, const QString& chosenFolder) const {
    return options()[rows_.beside] ? folderOf(source) : chosenFolder;
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
                                    overwritingDetails(plan), tr("No"), tr("Yes"), false});
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
    for (const QString& source : plan.special) {
        services().prompts.alert(whyNotOpened(source).value_or(QString()), {});
    }
    if (!plan.unsupported.isEmpty()) {
        QStringList names;
        for (const QString& source : plan.unsupported) {
            names << lastPathComponent(source);
        }
        services().prompts.alert(
            tr("Files of these kinds cannot be converted here yet. They were left out."),
            namesForMessage(names));
    }
    if (!plan.unwritable.isEmpty()) {
        services().prompts.alert(
            tr("The folders of these files cannot be written to. They were left out."),
            namesForMessage(plan.unwritable));
    }
}

CommandOutcome ConversionTab::executeCommand() {
    if (files().rowCount() == 0) {
        return CommandOutcome::NothingToDo;
    }
    if (!confirmDelete(options()[rows_.deleteOriginals])) {
        return CommandOutcome::Declined;
    }
    const auto folder = options()[rows_.beside] ? std::optional<QString>(QString()) : chooseOutputFolder();
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
    takeOff(listed, planned.unsupported + planned.unwritable);
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
    const bool deletes = options()[rows_.deleteOriginals];
    const bool acceptsLosses = options()[rows_.acceptLosses];
    const auto batch = std::make_shared<QUAVTaskResults>();
    const auto kept = std::make_shared<KeptOriginals>();
    std::vector<std::shared_ptr<QUAVTask>> tasks;
    for (const PlannedConversion& conversion : plan.conversions) {
        const auto task = makeTask(conversion, batch);
        task->conversion().setWishes(
            {conversion.existing, deletes, options()[rows_.verifyAudio], acceptsLosses});
        task->conversion().setKeptOriginals(kept);
        tasks.push_back(task);
    }
    if (deletes && !acceptsLosses) {
        askAfterwards(tasks, kept);
    }
    batch->setTaskAfterSetDone(makeFollowUp(plan));
    services().queue.addTasks(tasks);
    return tasks.empty() ? CommandOutcome::NothingToDo : CommandOutcome::Queued;
}

void ConversionTab::askAfterwards(const std::vector<std::shared_ptr<QUAVTask>>& tasks,
                                  const std::shared_ptr<KeptOriginals>& kept) {
    // Only compared, so that it does not matter that tasks go.
    auto* batch = new QObject(this);
    const auto running = std::make_shared<std::unordered_set<const QUAVTask*>>();
    for (const auto& task : tasks) {
        running->insert(task.get());
    }
    connect(&services().queue, &QUAVTaskQueue::taskFinished, batch,
            [this, batch, running, kept](const std::shared_ptr<QUAVTask>& task) {
                if (running->erase(task.get()) == 0 || !running->empty()) {
                    return;
                }
                batch->deleteLater();
                // Behind the end of the last task, and before that of a program that waits for it.
                services().queue.mainThread().post([this, kept] { askAboutLosses(kept->take()); });
            });
}

void ConversionTab::askAboutLosses(const std::vector<KeptOriginals::Original>& originals) {
    if (originals.empty()) {
        return;
    }
    const auto count = originals.size();
    QStringList names;
    for (const KeptOriginals::Original& original : originals) {
        names << lastPathComponent(original.path);
    }
    if (!services().prompts.confirm(
            {count == 1
                 ? tr("One source was kept, since not all of its tags, pictures and chunks are in "
                      "the new file; its warning says which. Delete it all the same?")
                 : tr("%L1 sources were kept, since not all of their tags, pictures and chunks are "
                      "in the new files; the warnings say which. Delete them all the same?")
                       .arg(count),
             namesForMessage(names), tr("Keep"), tr("Delete"), false,
             QStringLiteral("--accept-losses")})) {
        return;
    }
    QStringList troubles;
    for (const KeptOriginals::Original& original : originals) {
        const QString trouble =
            FileIdentity::of(original.path) != original.identity
                ? tr("the original has changed since it was read")
            : FileIdentity::of(original.output) != original.outputIdentity
                ? tr("“%1” is no longer the file that was made of it").arg(original.output)
                : deleteOriginal(original.path, services().settings, services().desktop);
        if (!trouble.isEmpty()) {
            troubles << QStringLiteral("%1: %2").arg(original.path, trouble);
        }
    }
    if (!troubles.isEmpty()) {
        services().prompts.alert(tr("Not every source could be deleted."),
                                 namesForMessage(troubles));
    }
}

} // namespace quav
