#pragma once

#include "app/Services.h"
#include "codecs/ToolComplaint.h"
#include "engine/OutputGuard.h"
#include "engine/QUAVAsyncNSTask.h"
#include "tags/TagResult.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

/// A tool turns one file into another. What all such tasks share: the output appears whole or not
/// at all, the tags follow, what the tool complains of is kept although it succeeded, and the
/// source is removed only when the user asked for it and nothing at all went wrong.
class ConversionTask : public QUAVAsyncNSTask {
public:
    ConversionTask(const QString& fileName, const QString& outputPath, const Services& services,
                   const QString& launchPath, const QStringList& arguments,
                   ComplaintReader complaintReader);

    const QString& fileName() const { return fileName_; }
    QString source() const override { return fileName_; }
    const QString& outputPath() const { return outputPath_; }

    bool deleteOriginal() const { return deleteOriginal_; }
    void setDeleteOriginal(bool deleteOriginal) { deleteOriginal_ = deleteOriginal; }

    /// What the command line does with an output that is there already; it is kept unless said.
    void setExisting(OutputGuard::Existing existing) { existing_ = existing; }

    void startTask() override;

protected:
    void cleanup() override;
    void finalCleanup() override;

    /// Copies the source's tags into the output, on a worker thread. When they could not be
    /// written, the reason in a sentence for the user; what it throws counts as the same.
    virtual TagResult copyTags() = 0;

    /// Adds a piece to the report and keeps the complaints in the lines that it completed.
    void report(const QString& piece);

    /// Notes what the output lacks: the user is told, and the source is kept.
    void noteProblems(const QStringList& sentences);

private:
    TagResult writeTags();
    void noteLosses(const QStringList& lost);
    void giveUpOutput();
    void fail(const QString& reason);
    void removeSource();

    Services services_;
    QString fileName_;
    QString outputPath_;
    bool deleteOriginal_ = false;
    OutputGuard::Existing existing_ = OutputGuard::Existing::Keep;
    ComplaintReader complaintReader_;
    std::optional<OutputGuard> guard_;
    QStringList complaints_;
    bool damaged_ = false;
};

} // namespace quav
