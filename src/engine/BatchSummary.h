#pragma once

#include "engine/TaskReport.h"
#include "engine/Verdict.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace quav {

/// How several tasks ended, and what they found out about files.
class BatchSummary {
    Q_DECLARE_TR_FUNCTIONS(BatchSummary)

public:
    void add(const TaskReport& report);

    int done() const { return done_; }
    int failed() const { return failed_; }
    int cancelled() const { return cancelled_; }
    int warnings() const { return warnings_; }
    /// Outputs whose sound was compared with that of their originals and is the same.
    int proven() const { return proven_; }
    /// Files that were checked.
    const VerdictCounts& files() const { return files_; }

    /// Whether a task failed or a file is not in order.
    bool hasFailures() const { return failed_ > 0 || !files_.allOk(); }

    /// A sentence for each number that is not 0, without names.
    QString text() const;

    /// The same in one line, with what failed before everything else, by its first names.
    QString line() const;

private:
    QStringList sentences() const;
    QString failures() const;

    int done_ = 0;
    int cancelled_ = 0;
    int failed_ = 0;
    int warnings_ = 0;
    int proven_ = 0;
    QStringList firstFailed_;
    VerdictCounts files_;
};

} // namespace quav
