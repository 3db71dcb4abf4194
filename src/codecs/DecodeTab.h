#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns compressed lossless files back into WAV or AIFF.
class DecodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit DecodeTab(const Services& services);

    void clearFiles() override;

    bool isOfNoKind(const QString& source) const override;
    ConversionPlan plan(const QString& chosenFolder) const override;

protected:
    void filesAdded() override;
    std::shared_ptr<ConversionTask>
    makeTask(const PlannedConversion& conversion,
             const std::shared_ptr<QUAVTaskResults>& batch) const override;

private:
    /// The options for FLAC files show from the first FLAC file until the list is cleared.
    void showFLacOptions(bool visible);
    void planFlac(const QString& source, const QString& folder, ConversionPlan& plan) const;

};

} // namespace quav
