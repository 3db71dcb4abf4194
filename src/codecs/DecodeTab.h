#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns compressed lossless files back into WAV or AIFF.
class DecodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit DecodeTab(const Services& services);

    /// The format word of the outputs: "WAV" or "AIFF".
    const QString& outputFormat() const { return outputFormat_; }
    void setOutputFormat(const QString& word);

    bool decodeFlacThroughErrors() const { return decodeFlacThroughErrors_; }
    void setDecodeFlacThroughErrors(bool on);
    bool keepForeignMetadata() const { return keepForeignMetadata_; }
    void setKeepForeignMetadata(bool on);

    /// The options for FLAC files show from the first FLAC file until the list is cleared.
    bool flacOptionsVisible() const { return flacOptionsVisible_; }

    void clearFiles() override;

    bool isOfNoKind(const QString& source) const override;
    ConversionPlan plan(const QString& chosenFolder) const override;

protected:
    void filesAdded() override;
    std::shared_ptr<ConversionTask>
    makeTask(const PlannedConversion& conversion,
             const std::shared_ptr<QUAVTaskResults>& batch) const override;

private:
    void showFLacOptions(bool visible);
    void planFlac(const QString& source, const QString& folder, ConversionPlan& plan) const;

    QString outputFormat_ = QStringLiteral("WAV");
    bool decodeFlacThroughErrors_ = false;
    bool keepForeignMetadata_ = false;
    bool flacOptionsVisible_ = false;
};

} // namespace quav
