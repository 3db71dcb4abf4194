#include "codecs/ConversionTab.h"

#include "app/UserPrompts.h"
#include "checksums/ChecksumFiles.h"
#include "engine/QUAVTaskQueue.h"
#include "platform/MainThread.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quav {

namespace {

bool isWriteProtected(const QString& path) {
    return !QFileInfo(path).permissions().testFlag(QFileDevice::WriteOwner);
}

} // namespace

ConversionTab::ConversionTab(const QString& label, const ConversionOptions& rows,
                             const Services& services)
    : PlannedTab(label, rows, services), rows_(rows) {}

bool ConversionTab::hasUseFor(const QString& /*path*/) const {
    return true;
}

QString ConversionTab::outputFolder(const QString& source, const QString& chosenFolder,
                                    const OptionValues& values) const {
    return values[rows_.beside] ? folderOf(source) : chosenFolder;
}

void ConversionTab::overwriteAllOrNone(Plan& plan) const {
    using Existing = OutputGuard::Existing;
    const QStringList overwritten = existingOutputs(plan, Existing::Keep);
    if (overwritten.isEmpty()) {
        return;
    }
    for (Job& job : plan.jobs) {
        job.existing = Existing::Overwrite;
    }
    // Which output is meant, and which ones their owners wanted to keep as they are.
    QStringList locked;
    std::copy_if(overwritten.begin(), overwritten.end(), std::back_inserter(locked),
                 isWriteProtected);
    const QString details = locked.isEmpty() ? overwritten.first()
                                             : tr("These %Ln are write-protected:", nullptr,
                                                  static_cast<int>(locked.size())) +
                                                   u'\n' + namesForMessage(locked);
    plan.questions.push_back({tr("One of the output files already exists and will be "
                                 "overwritten.  Are you sure you want to continue?"),
                              details, tr("No"), tr("Yes"), false});
}

void ConversionTab::planChecksumFile(Plan& plan, const QString& path) {
    plan.checksumFiles << path;
    if (const auto question = checksumfiles::questionBeforeReplacing(path)) {
        plan.questions.push_back(*question);
    }
}

tl::expected<QString, PlannedTab::NoDestination> ConversionTab::askDestination() {
    if (!confirmDelete(options()[rows_.deleteOriginals])) {
        return tl::make_unexpected(NoDestination{});
    }
    if (options()[rows_.beside]) {
        return QString();
    }
    const auto folder = chooseOutputFolder();
    return folder ? tl::expected<QString, NoDestination>(*folder)
                  : tl::make_unexpected(NoDestination{});
}

std::shared_ptr<QUAVTask>
ConversionTab::makeTask(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const {
    const auto [task, conversion] = makeConversion(job, batch);
    conversion->setWishes({job.existing, options()[rows_.deleteOriginals],
                           options()[rows_.verifyAudio], options()[rows_.acceptLosses]});
    conversion->setKeptOriginals(kept_);
    return task;
}

void ConversionTab::aboutToQueue(const Tasks& tasks) {
    const auto kept = std::exchange(kept_, std::make_shared<KeptOriginals>());
    if (options()[rows_.deleteOriginals] && !options()[rows_.acceptLosses]) {
        askAfterwards(tasks, kept);
    }
}

void ConversionTab::askAfterwards(const Tasks& tasks, const std::shared_ptr<KeptOriginals>& kept) {
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
    const int count = static_cast<int>(originals.size());
    QStringList names;
    for (const KeptOriginals::Original& original : originals) {
        names << lastPathComponent(original.path);
    }
    if (!services().prompts.confirm(
            {tr("%Ln sources were kept, since not all of their tags, pictures and chunks are in "
                "the new files; the warnings say which. Delete them all the same?",
                nullptr, count),
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
