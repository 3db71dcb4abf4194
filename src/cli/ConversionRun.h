#pragma once

#include "cli/Options.h"
#include "cli/OutputFolder.h"
#include "cli/TerminalPrompts.h"
#include "platform/DesktopServices.h"
#include "workbench/Workbench.h"

namespace quav {

class Settings;
class StopSignals;
class Terminal;
struct RunSummary;

/// `encode` and `decode`: presses the button of the tab for the files that were given, waits until
/// the queue is empty and says how it went.
class ConversionRun {
    Q_DECLARE_TR_FUNCTIONS(ConversionRun)

public:
    /// `command` is one of the two. The settings must keep their changes in memory: the options of
    /// one run change them.
    ConversionRun(Options::Command command, ConversionOptions options, Settings& settings,
                  Terminal& terminal);

    /// The exit status.
    int run();

private:
    ConversionTab& tab();
    void setOptions();
    void setEncodeOptions();
    void setDecodeOptions();
    bool chooseOutput();
    bool addFiles();
    bool takes(const QStringList& paths);
    int printPlan();
    int convert();
    int refuse(const QString& reason);
    void waitForTheEnd(StopSignals& signals);
    void stop(int howManyTimes);
    int exitStatus(const RunSummary& summary) const;

    Options::Command command_;
    ConversionOptions options_;
    Terminal& terminal_;
    TerminalPrompts prompts_;
    NoDesktop desktop_;
    Workbench workbench_;
    bool somethingUnusable_ = false;
};

} // namespace quav
