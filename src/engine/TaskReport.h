#pragma once

#include "engine/OutputProof.h"
#include "engine/ReportText.h"
#include "engine/Verdict.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace quav {

class QUAVTask;

/// What has become of one task. Whatever tells the user of it, the window, the terminal or JSON,
/// has it from here. Small: what may be long is shared with the results of the task.
struct TaskReport {
    enum class Outcome : unsigned char { Done, Failed, Cancelled };

    Outcome outcome = Outcome::Done;
    QString name;                           ///< the task as the user is told of it
    QString source;                         ///< path; empty for a task without one file to read
    QString output;                         ///< path; empty for one without one file to write
    QString reason;                         ///< why it failed, in one line; empty if it did not
    QStringList warnings;                   ///< lines; what there is to know although it succeeded
    SharedVerdicts verdicts = noVerdicts(); ///< on the files that it checked
    VerdictCounts files;                    ///< how many of them are what
    QStringList written;                    ///< paths of files that it has made and that stay
    OutputProof proof;                      ///< of the one output
    ReportText said;                        ///< all that it and its tool said, if it failed

    /// Whether there is something to look at: it failed, or a file is not in order.
    bool hasFailures() const { return outcome == Outcome::Failed || !files.allOk(); }

    /// A line about the task without the name, which some tools put before their words.
    QString withoutName(const QString& line) const;

    /// All there is to read about a failure: the reason, unless what was said has it, and that.
    ReportText failureText() const;
};

/// What users are told of a task by: the name of its source, or else its title.
QString nameOf(const QUAVTask& task);

/// The report on a task that has just ended. Main thread.
TaskReport reportOf(const QUAVTask& task);

/// The same with only those files that are not in order, and of these the first ten thousand: to be
/// kept when the task and its results are gone.
TaskReport failuresOf(const TaskReport& report);

/// Several such reports to be read one after the other: first a line for each failure, then what
/// the tools said.
ReportText failuresText(const std::vector<TaskReport>& reports);

} // namespace quav
