#pragma once

#include "checksums/ChecksumTab.h"
#include "cli/TabRun.h"

#include <optional>

namespace quav {

/// `checksum create`, `verify` and `test`.
class ChecksumRun : private TabRun {
    Q_DECLARE_TR_FUNCTIONS(ChecksumRun)

public:
    ChecksumRun(const Options& options, Settings& settings, Terminal& terminal);

    /// The exit status.
    int run();

private:
    ChecksumTab& tab() override;
    void connectTab(TerminalView& view, const StopSignals& signals) override;
    /// Chooses where the checksum file goes; an exit status when it can go nowhere.
    std::optional<int> choosePath();
    void tellWhatIsLeftOut();

    ChecksumArguments options_;
};

} // namespace quav
