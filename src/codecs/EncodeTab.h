#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns files into FLAC.
class EncodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit EncodeTab(const Services& services);

    /// The compression level, 0 to 8.
    int flacLevel() const;
    void setFlacLevel(int level);
    bool flacVerify() const { return flacVerify_; }
    void setFlacVerify(bool on);
    bool flacLax() const { return flacLax_; }
    void setFlacLax(bool on);
    bool flacKeepForeignMetadata() const { return flacKeepForeignMetadata_; }
    void setFlacKeepForeignMetadata(bool on);
    /// Whether a fingerprint file is written into each output folder afterwards.
    bool generateFFP() const { return generateFFP_; }
    void setGenerateFFP(bool on);

    /// Stores the options that the settings keep.
    void displayRelevantOptions() override;

    ConversionPlan plan(const QString& chosenFolder) const override;

protected:
    std::shared_ptr<ConversionTask>
    makeTask(const PlannedConversion& conversion,
             const std::shared_ptr<QUAVTaskResults>& batch) const override;
    std::shared_ptr<QUAVTask> makeFollowUp(const ConversionPlan& plan) const override;

private:
    bool flacVerify_;
    bool flacLax_ = false;
    bool flacKeepForeignMetadata_;
    bool generateFFP_;
};

} // namespace quav
