#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns files into FLAC.
class EncodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit EncodeTab(const Services& services);

    Plan plan(const OptionValues& values, const QString& chosenFolder) const override;

protected:
    std::shared_ptr<ConversionTask>
    makeConversion(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const override;
    std::shared_ptr<QUAVTask> makeFollowUp(const Plan& plan) const override;
};

} // namespace quav
