#pragma once

#include "codecs/Converting.h"
#include "codecs/ToolComplaint.h"
#include "engine/BoundedLines.h"
#include "engine/QUAVAsyncNSTask.h"

#include <QString>
#include <QStringList>

namespace quav {

/// A single tool turns one file into another. What it complains of is kept although it succeeded.
class ConversionTask : public Converting<QUAVAsyncNSTask> {
public:
    ConversionTask(const QString& fileName, const QString& outputPath, const Services& services,
                   const QString& launchPath, const QStringList& arguments,
                   ComplaintReader complaintReader);

    const QString& outputPath() const { return conversion().output(); }

    void startTask() override;

protected:
    void cleanup() override;
    void finalCleanup() override;

    /// Adds a piece to the report and keeps the complaints in the lines that it completed.
    void report(const QString& piece);

private:
    ComplaintReader complaintReader_;
    static constexpr qsizetype mostComplaints = 20;
    BoundedLines complaints_{mostComplaints};
};

} // namespace quav
