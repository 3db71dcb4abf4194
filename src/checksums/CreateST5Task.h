#pragma once

#include "checksums/HashRun.h"
#include "engine/QUAVAsyncNSTaskFileOutputRedirection.h"
#include "engine/Verdict.h"

#include <QCoreApplication>
#include <QStringList>

#include <atomic>
#include <vector>

namespace quav {

/// Writes an ST5 file: runs `shntool hash` over audio files, once a folder, and keeps the digests
/// that it prints, in the order of the files.
class CreateST5Task : public QUAVAsyncNSTaskFileOutputRedirection {
    Q_DECLARE_TR_FUNCTIONS(CreateST5Task)

public:
    /// `fileName` is the ST5 file; there is one audio file at least.
    CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                  const QStringList& files);

    void startTask() override;
    void terminateTool() override;
    void abandon() override;

protected:
    void processTaskOutput(const QString& text) override;
    void cleanup() override;
    void finalCleanup() override;

private:
    CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                  std::vector<HashRun> runs);

    bool stopRequested() const { return cancelled() || abandoned_; }
    void take(const QString& text, HashRun& run);
    void runToItsEnd(HashRun& run);
    void runTheOthers();
    QStringList entries() const;
    Verdicts verdicts() const;
    QString save(const QString& header);
    QString words() const;

    QString launchPath_;
    std::vector<HashRun> runs_; ///< the task itself is the first one
    RunningChildren children_;  ///< the others
    std::atomic<bool> abandoned_ = false;
};

} // namespace quav
