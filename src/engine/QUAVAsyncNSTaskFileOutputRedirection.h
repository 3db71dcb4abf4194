#pragma once

#include "engine/QUAVAsyncNSTask.h"

namespace quav {

/// Runs a tool and writes what it printed to a file instead of showing it.
class QUAVAsyncNSTaskFileOutputRedirection : public QUAVAsyncNSTask {
public:
    QUAVAsyncNSTaskFileOutputRedirection(const QString& fileName, TaskHost& queue,
                                         const QString& launchPath, const QStringList& arguments);

    /// Shown on the row's status line while the tool runs; empty: nothing is.
    void setSubTitle(const QString& subTitle) { subTitle_ = subTitle; }

    void startTask() override;

protected:
    /// The file that receives the output.
    const QString& fileName() const { return fileName_; }

    void cleanup() override;
    void finalCleanup() override;

private:
    QString fileName_;
    QString subTitle_;
};

} // namespace quav
