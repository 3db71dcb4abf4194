#include "cli/ConversionRun.h"

#include "cli/Terminal.h"

namespace quav {

ConversionRun::ConversionRun(const Options& options, Settings& settings, Terminal& terminal)
    : TabRun(options.run, settings, terminal), options_(options.conversion),
      tab_(qobject_cast<ConversionTab*>(workbench().controller().tab(options.tab))) {
    Q_ASSERT(tab_);
}

ConversionTab& ConversionRun::tab() {
    return *tab_;
}

int ConversionRun::run() {
    if (!setOptions() || !chooseOutput() || !addFiles()) {
        return exitstatus::refused;
    }
    tellOfNoKind();
    if (tab().files().rowCount() == 0) {
        return statusOf(CommandOutcome::NothingToDo);
    }
    if (runOptions().dryRun) {
        const auto& folder = prompts().outputFolder();
        return printPlan(folder ? folder->path() : QString());
    }
    return convert();
}

/// The tab passes over them in silence, but these were named.
void ConversionRun::tellOfNoKind() {
    for (const QString& path : namedFiles()) {
        if (tab().files().contains(path) && !tab().hasUseFor(path)) {
            noteUnusable();
            terminal().say(
                tr("“%1” is of no kind that can be converted and is skipped.").arg(path));
        }
    }
}

bool ConversionRun::chooseOutput() {
    if (options_.outputFolder) {
        const auto path = textOf(*options_.outputFolder);
        if (!path) {
            return false;
        }
        const auto folder = OutputFolder::at(*path);
        if (!folder) {
            terminal().say(folder.error());
            return false;
        }
        prompts().setOutputFolder(*folder);
        tab().options().setForThisRun(tab().rows().beside, false);
        return true;
    }
    if (!tab().options()[tab().rows().beside] && (runOptions().dryRun || !terminal().canAsk())) {
        terminal().say(tr("Where are the outputs to go? Say --output DIR or --beside."));
        return false;
    }
    return true;
}

int ConversionRun::convert() {
    auto& folder = prompts().outputFolder();
    if (folder) {
        if (const auto created = folder->create(); !created) {
            return refuse(created.error());
        }
    }
    CommandOutcome outcome{};
    const auto summary = press(outcome);
    if (!summary && folder) {
        folder->discard();
    }
    return summary ? statusOf(*summary) : statusOf(outcome);
}

} // namespace quav
