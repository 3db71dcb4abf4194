#pragma once

#include "app/PlannedTab.h"
#include "cli/Options.h"
#include "cli/TerminalPrompts.h"
#include "cli/TerminalView.h"
#include "platform/DesktopServices.h"
#include "workbench/Workbench.h"

#include <QCoreApplication>

#include <optional>

namespace quav {

class Settings;
class StopSignals;
class Terminal;

/// A command that presses the button of a tab: what all such commands share. It fills the tab's
/// list with the files that were given, waits until the queue is empty and says how it went.
class TabRun {
    Q_DECLARE_TR_FUNCTIONS(TabRun)

public:
    TabRun(const TabRun&) = delete;
    TabRun& operator=(const TabRun&) = delete;
    virtual ~TabRun();

protected:
    TabRun(RunOptions options, Settings& settings, Terminal& terminal);

    virtual PlannedTab& tab() = 0;

    /// Gives the tab the options of this run: those of the preset, and over them those that were
    /// given. False, after a message, for a preset that cannot be used, and for a flag that means
    /// nothing for the target.
    bool setOptions();

    /// Fills the list. False when something that was named does not exist.
    bool addFiles();

    /// The files that were named, as far as they could be reached.
    const QStringList& namedFiles() const { return namedFiles_; }

    /// Presses the button and waits for the end of the work; none when nothing was queued or done,
    /// and `outcome` says why.
    std::optional<BatchSummary> press(CommandOutcome& outcome);

    /// Only prints what the button would do, with what the user chose as the destination; the exit
    /// status.
    int printPlan(const QString& destination);

    /// What an outcome other than finished work makes of the exit status.
    int statusOf(CommandOutcome outcome);
    int statusOf(const BatchSummary& summary) const;

    /// Called before the button is pressed, for what a tab tells by itself and what it does while
    /// the button is held.
    virtual void connectTab(TerminalView& view, const StopSignals& signals);

    int refuse(const QString& reason);
    void noteUnusable() { somethingUnusable_ = true; }
    bool somethingUnusable() const { return somethingUnusable_; }

    static bool isUtf8(const QByteArray& bytes);
    /// The path in full; none, after a message, for bytes that are no UTF-8.
    std::optional<QString> textOf(const QByteArray& path);

    Terminal& terminal() { return terminal_; }
    TerminalPrompts& prompts() { return prompts_; }
    Workbench& workbench() { return workbench_; }
    const RunOptions& runOptions() const { return options_; }

private:
    bool setPreset();
    bool hasEffect(const OptionInfo& option);
    bool takes(const QStringList& paths);
    CommandOutcome waitForTheCommand();
    void waitForTheEnd(StopSignals& signals);
    void stop(int howManyTimes);

    RunOptions options_;
    Terminal& terminal_;
    TerminalPrompts prompts_;
    NoDesktop desktop_;
    Workbench workbench_;
    QStringList namedFiles_;
    bool somethingUnusable_ = false;
};

} // namespace quav
