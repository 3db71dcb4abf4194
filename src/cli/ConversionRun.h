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
    enum class Direction { Encode, Decode };

    /// The settings must keep their changes in memory: the options of one run change them.
    ConversionRun(Direction direction, ConversionOptions options, Settings& settings,
                  Terminal& terminal);

    /// The exit status.
    int run();

private:
    ConversionTab& tab();
    void setOptions();
    bool chooseOutput();
    bool addFiles();
    int printPlan();
    int convert();
    int refuse(const QString& reason);
    void waitForTheEnd(StopSignals& signals);
    void stop(int howManyTimes);
    int exitStatus(const RunSummary& summary) const;

    Direction direction_;
    ConversionOptions options_;
    Terminal& terminal_;
    TerminalPrompts prompts_;
    NoDesktop desktop_;
    Workbench workbench_;
    bool somethingUnusable_ = false;
};

} // namespace quav
