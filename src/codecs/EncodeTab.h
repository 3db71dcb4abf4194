#pragma once

#include "codecs/ConversionTab.h"

#include <memory>

namespace quav {

/// Turns files into files of one of the codecs.
class EncodeTab : public ConversionTab {
    Q_OBJECT

public:
    explicit EncodeTab(const Services& services);

    Plan plan(const OptionValues& values, const QString& chosenFolder) const override;

protected:
    ConvertingTask makeConversion(const Job& job,
                                  const std::shared_ptr<QUAVTaskResults>& batch) const override;
    std::shared_ptr<QUAVTask> makeFollowUp(const Plan& plan) const override;

private:
    static bool isFileClash(const QStringList& files, const QStringList& outputFiles);
    void refuseClash(Plan& plan) const;
};

} // namespace quav
