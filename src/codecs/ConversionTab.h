#pragma once

#include "app/PlannedTab.h"
#include "codecs/Codec.h"
#include "codecs/ConversionOptions.h"
#include "engine/FileConversion.h"

#include <memory>
#include <vector>

namespace quav {

/// What the decode and the encode tab share: where outputs go, what is asked about them, and what
/// becomes of the sources.
class ConversionTab : public PlannedTab {
    Q_OBJECT

public:
    ConversionTab(const QString& label, const ConversionOptions& rows, const Services& services);

    /// The rows of the options that the tabs share.
    const ConversionOptions& rows() const { return rows_; }

    bool hasUseFor(const QString& path) const override;

protected:
    /// The task for one conversion of a plan. `batch` is there for tasks that report together.
    virtual ConvertingTask makeConversion(const Job& job,
                                          const std::shared_ptr<QUAVTaskResults>& batch) const = 0;

    /// The folder that the output of a source goes to.
    QString outputFolder(const QString& source, const QString& chosenFolder,
                         const OptionValues& values) const;

    /// When one of the outputs exists, all are made over what is there, and the plan asks.
    void overwriteAllOrNone(Plan& plan) const;

    /// A checksum file that is written when all is done. The plan asks when it is somebody else's.
    static void planChecksumFile(Plan& plan, const QString& path);

    tl::expected<QString, NoDestination> askDestination() override;
    std::shared_ptr<QUAVTask> makeTask(const Job& job,
                                       const std::shared_ptr<QUAVTaskResults>& batch) const final;
    void aboutToQueue(const Tasks& tasks) override;

private:
    void askAfterwards(const Tasks& tasks, const std::shared_ptr<KeptOriginals>& kept);
    void askAboutLosses(const std::vector<KeptOriginals::Original>& originals);

    const ConversionOptions& rows_;
    /// Those of the batch whose tasks are being made.
    std::shared_ptr<KeptOriginals> kept_ = std::make_shared<KeptOriginals>();
};

} // namespace quav
