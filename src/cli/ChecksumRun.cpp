#include "cli/ChecksumRun.h"

#include "cli/Terminal.h"
#include "platform/PathNames.h"
#include "platform/StopSignals.h"

namespace quav {

ChecksumRun::ChecksumRun(const Options& options, Settings& settings, Terminal& terminal)
    : TabRun(options.run, settings, terminal), options_(options.checksum) {}

ChecksumTab& ChecksumRun::tab() {
    return workbench().tab<ChecksumTab>();
}

void ChecksumRun::connectTab(TerminalView& view, const StopSignals& signals) {
    QObject::connect(&signals, &StopSignals::stopRequested, &tab(), &ChecksumTab::stopWriting);
    QObject::connect(&tab(), &ChecksumTab::fingerprintsWritten, &view, &TerminalView::finished);
}

int ChecksumRun::run() {
    tab().options().setForThisRun(checksumOptions().command, options_.command);
    if (!setOptions()) {
        return exitstatus::refused;
    }
    if (options_.save) {
        tab().options().setForThisRun(checksumOptions().sourceSave, false);
    }
    if (const auto status = choosePath()) {
        return *status;
    }
    if (!addFiles()) {
        return exitstatus::refused;
    }
    tellWhatIsLeftOut();
    if (runOptions().dryRun) {
        return printPlan(prompts().savePath().value_or(QString()));
    }
    CommandOutcome outcome = CommandOutcome::NothingToDo;
    const auto summary = press(outcome);
    if (prompts().wantsSavePath()) {
        return refuse(tr("The files lie in several folders. Say --save PATH."));
    }
    return summary ? statusOf(*summary) : statusOf(outcome);
}

std::optional<int> ChecksumRun::choosePath() {
    if (options_.command != ChecksumCommand::Create ||
        tab().options()[checksumOptions().sourceSave]) {
        return std::nullopt;
    }
    if (!options_.save) {
        return terminal().canAsk() && !runOptions().dryRun
                   ? std::nullopt
                   : std::optional(refuse(tr("Where is the checksum file to go? Say "
                                             "--save PATH or --beside.")));
    }
    const auto path = textOf(*options_.save);
    if (!path) {
        return exitstatus::refused;
    }
    const QString full = fullPath(*path);
    if (isFolder(full)) {
        return refuse(tr("“%1” is a folder.").arg(*path));
    }
    if (!isFolder(folderOf(full))) {
        return refuse(tr("There is no folder for “%1”.").arg(*path));
    }
    const auto question = checksumfiles::questionBeforeReplacing(full);
    if (question && !runOptions().dryRun && !prompts().confirm(*question)) {
        return exitstatus::declined;
    }
    prompts().setSavePath(full);
    return std::nullopt;
}

/// Files that were named and that the command has no use for; those in folders nobody named.
void ChecksumRun::tellWhatIsLeftOut() {
    for (const QString& path : namedFiles()) {
        if (!isFolder(path) && !tab().hasUseFor(path)) {
            noteUnusable();
            const bool isOtherList =
                options_.command == ChecksumCommand::Verify &&
                checksumlist::kindOf(path, checksumlist::Reading::Tolerant).has_value();
            terminal().say((isOtherList
                                ? tr("“%1” can only be read with --tolerant. It was left out.")
                                : tr("“%1” is of no kind for this command. It was left out."))
                               .arg(path));
        }
    }
}

} // namespace quav
