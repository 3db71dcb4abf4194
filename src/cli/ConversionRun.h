#pragma once

#include "cli/TabRun.h"
#include "codecs/ConversionTab.h"

namespace quav {

/// `encode` and `decode`.
class ConversionRun : private TabRun {
    Q_DECLARE_TR_FUNCTIONS(ConversionRun)

public:
    /// The options' tab is one of the two.
    ConversionRun(const Options& options, Settings& settings, Terminal& terminal);

    /// The exit status.
    int run();

private:
    ConversionTab& tab() override;
    void tellOfNoKind();
    bool chooseOutput();
    int convert();

    ConversionArguments options_;
    ConversionTab* tab_;
};

} // namespace quav
