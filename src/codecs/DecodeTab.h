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

    bool hasUseFor(const QString& path) const override;
    Plan plan(const OptionValues& values, const QString& chosenFolder) const override;

protected:
    void filesAdded() override;
    ConvertingTask makeConversion(const Job& job,
                                  const std::shared_ptr<QUAVTaskResults>& batch) const override;

private:
    /// The options for FLAC files show from the first FLAC file until the list is cleared.
    void showFLacOptions(bool visible);
    void planDecoding(const Codec& codec, const QString& source, const QString& folder,
                      const OptionValues& values, Plan& plan) const;
};

} // namespace quav
