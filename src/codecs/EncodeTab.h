#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns files into FLAC.
class EncodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit EncodeTab(const Services& services);

    ConversionPlan plan(const QString& chosenFolder) const override;

protected:
    std::shared_ptr<ConversionTask>
    makeTask(const PlannedConversion& conversion,
             const std::shared_ptr<QUAVTaskResults>& batch) const override;
    std::shared_ptr<QUAVTask> makeFollowUp(const ConversionPlan& plan) const override;
};

} // namespace quav
