#pragma once

#include "cli/TabRun.h"

namespace quav {

/// `encode` and `decode`.
class ConversionRun : private TabRun {
    Q_DECLARE_TR_FUNCTIONS(ConversionRun)

public:
    /// The options' command is one of the two.
    ConversionRun(const Options& options, Settings& settings, Terminal& terminal);

    /// The exit status.
    int run();

private:
    ConversionTab& tab() override;
    void tellOfNoKind();
    bool chooseOutput();
    int convert();

    Options::Command command_;
    ConversionArguments options_;
};

} // namespace quav
