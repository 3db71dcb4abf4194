#pragma once

#include "app/Services.h"
#include "codecs/ToolComplaint.h"
#include "engine/BoundedLines.h"
#include "engine/FileConversion.h"
#include "engine/QUAVAsyncNSTask.h"
#include "tags/TagResult.h"

#include <QString>
#include <QStringList>

namespace quav {

/// A tool turns one file into another: what all such tasks share. What makes it safe is the
/// conversion's; here the tool's words are read, and what it complains of is kept although it
/// succeeded.
class ConversionTask : public QUAVAsyncNSTask {
public:
    ConversionTask(const QString& fileName, const QString& outputPath, const Services& services,
                   const QString& launchPath, const QStringList& arguments,
                   ComplaintReader complaintReader);

    const QString& fileName() const { return conversion_.source(); }
    QString source() const override { return fileName(); }
    const QString& outputPath() const { return conversion_.output(); }
    QString output() const override { return outputPath(); }

    FileConversion& conversion() { return conversion_; }

    bool deleteOriginal() const { return conversion_.wishes().deleteOriginal; }
    void setDeleteOriginal(bool deleteOriginal);

    void startTask() override;
    void abandon() override;
    void stillAtWork() override { conversion_.stillAtWork(); }

protected:
    void cleanup() override;
    void finalCleanup() override;

    /// Copies the source's tags into the output, on a worker thread. When they could not be
    /// written, the reason in a sentence for the user; what it throws counts as the same.
    virtual TagResult copyTags() = 0;

    /// Adds a piece to the report and keeps the complaints in the lines that it completed.
    void report(const QString& piece);

    /// What the user should know of the tags that were written, in sentences.
    void noteProblems(const QStringList& sentences);

private:
    FileConversion conversion_;
    ComplaintReader complaintReader_;
    static constexpr qsizetype mostComplaints = 20;
    BoundedLines complaints_{mostComplaints};
};

} // namespace quav
