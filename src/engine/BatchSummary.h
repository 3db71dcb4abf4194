#pragma once

#include "engine/Verdict.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace quav {

class QUAVTask;

/// How the tasks ended that were queued since the queue was last empty, and what they found out
/// about files.
class BatchSummary {
    Q_DECLARE_TR_FUNCTIONS(BatchSummary)

public:
    void add(const QUAVTask& task);

    int failed() const { return failed_; }

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
    QStringList firstFailed_;
    VerdictCounts files_{Verdicts()};
};

} // namespace quav
