#pragma once

#include "engine/BoundedLines.h"
#include "engine/FailureReason.h"
#include "engine/OutputProof.h"
#include "engine/TaskHost.h"
#include "engine/TaskRow.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

namespace quav {

class QUAVTaskResults;
struct TaskReport;

/// One unit of work: a decode, an encode, a verification. It has a row in the list of tasks, which
/// it keeps current, and a share in the report of its set.
///
/// A task belongs to the main thread. Its workers own nothing but the hand-over fields (the two
/// texts, the value, the flags), which they set from wherever they run before they `push` them to
/// the row. A subclass sets `error` before it stops, calls the base `stopTask` last, and then
/// `reportCompletion`, once.
class QUAVTask : public std::enable_shared_from_this<QUAVTask> {
public:
    /// The parts of the row that are filled from the hand-over fields.
    enum RowPart : unsigned { StatusLine = 1, MainLine = 2, Bar = 4 };

    explicit QUAVTask(TaskHost& queue);
    virtual ~QUAVTask();
    QUAVTask(const QUAVTask&) = delete;
    QUAVTask& operator=(const QUAVTask&) = delete;

    /// Starts the work; called by the queue. May throw when the work cannot be started.
    virtual void startTask();

    /// What the user's cancel button does: marks the task and stops it. No effect on a task that
    /// is done.
    void cancelTask();

    /// Ends the task: tells its set, queues the set's follow-up when it was the last member, and
    /// has the row painted for the last time.
    virtual void stopTask();

    /// Asks a command-line tool that the task runs to end now, for a program that cannot wait; the
    /// task then ends as with any tool that failed.
    virtual void terminateTool();

    /// The same for a program that does not wait at all: the tool is killed.
    virtual void killTool();

    /// Kills the tools of the task that are stalled, so that the task fails, or, having been
    /// cancelled, ends.
    void endStalledTool();

    /// One of its tools has done nothing for so long; 0: it works again.
    void setStalledFor(std::chrono::milliseconds quiet);

    /// The queue goes: kills a tool that runs and waits for work in the background, so that
    /// nothing goes on behind a task that is about to be destroyed.
    virtual void abandon();

    /// Called every few seconds while the task is active, on the main thread.
    virtual void stillAtWork();

    /// Ends a task that could not be started, with the reason in its report.
    void failToStart(const QString& reason);

    bool isActive() const { return active_; }
    bool isDone() const { return done_; }
    bool cancelled() const { return cancelled_; }
    /// Whether the task failed. One that was cancelled did not, whatever became of its work.
    bool error() const { return error_ && !cancelled_; }
    void setError(bool error) { error_ = error; }
    /// Marks the task as failed, with a sentence for its report and its reason. Any thread.
    void failBecause(const QString& reason);

    QString title() const { return title_; }
    void setTitle(const QString& title) { title_ = title; }

    /// The path of the one file that the task reads; empty for a task about none or several.
    virtual QString source() const;

    /// The path of the one file that the task writes; empty for a task about none or several.
    virtual QString output() const;

    /// Why the task failed, in one line. Main thread, once it is done.
    QString reason() const;

    /// How a log names the task.
    virtual QString description() const;

    TaskHost& queue() const { return queue_; }
    const std::shared_ptr<QUAVTaskResults>& results() const { return results_; }
    /// Replaces the task's own set by a shared one, before the task is queued. The task is entered
    /// there by whoever shares it.
    void setResults(std::shared_ptr<QUAVTaskResults> results);

    QString topTextFieldString() const;
    void setTopTextFieldString(const QString& text);
    QString textFieldString() const;
    void setTextFieldString(const QString& text);
    double progressIndicatorValue() const;
    void setProgressIndicatorValue(double percent);

    /// The row as it stands. Main thread only, like all that follow down to `setGuiFields`.
    const TaskRow& row() const { return row_; }
    void updateStatus();
    void setTopTextFieldValue();
    void setTextFieldValue();
    void setProgressIndicatorValueInGui();
    void setCombinedStatus();
    void startIndeterminateProgressBar();
    /// The row has found its place in the list; its bar is hidden until the task starts.
    void showProgressInView();
    /// Paints the final state.
    void setGuiFields();

    /// Has parts of the row filled from the hand-over fields soon. Any thread; pushes that have
    /// not been carried out yet become one.
    void push(unsigned parts);

    /// How much work this is against others of a batch, for the time left: bytes of input, say.
    double weight() const { return weight_; }
    void setWeight(double weight) { weight_ = weight; }

    /// What the user should know although the task succeeded: the first lines of it. Any thread.
    QStringList warnings() const;
    void addWarning(const QString& line);

    /// Files that the task has made and that stay, and what was proven of the last one. Any thread.
    void noteWritten(const QString& path, const OutputProof& proof = {});
    QStringList written() const;
    OutputProof proof() const;

    /// What has become of the task, kept as long as it is; null until the queue knows of its end.
    /// Main thread.
    const std::shared_ptr<const TaskReport>& finalReport() const { return finalReport_; }
    void setFinalReport(std::shared_ptr<const TaskReport> report);

protected:
    void doStartTaskOnMainThread();

    /// Tells the queue, by way of the event loop, so that a task may end inside its own start.
    void reportCompletion();

    /// Runs a hook of a subclass; what it throws makes the task fail, with the text in its report.
    void runHook(const std::function<void()>& hook);

    void setStopped();

    /// What is known of the failure beside the words in the report. Any thread.
    void setFailureFacts(const FailureFacts& facts);

    /// Each sets its part of the row and has it shown. Any thread.
    void showMainLine(const QString& text);
    void showStatus(const QString& status);
    void showProgress(const QString& status, double percent);

private:
    static constexpr qsizetype mostWarnings = 50;

    void fillRow(unsigned parts);

    TaskHost& queue_;
    TaskRow row_;
    std::atomic<bool> active_ = false;
    std::atomic<bool> done_ = false;
    std::shared_ptr<QUAVTaskResults> results_;
    std::atomic<bool> cancelled_ = false;
    std::atomic<bool> error_ = false;
    QString title_;

    mutable std::mutex handOver_;
    QString topTextFieldString_;
    QString textFieldString_;
    double progressIndicatorValue_ = 0;
    BoundedLines warnings_{mostWarnings};
    FailureFacts failureFacts_;
    QStringList written_;
    OutputProof proof_;
    unsigned pushedParts_ = 0;

    QString statusBehindStall_; ///< what the row would show if no tool were stalled
    std::chrono::steady_clock::time_point startTime_;
    double weight_ = 1;
    bool completionReported_ = false;
    std::shared_ptr<const TaskReport> finalReport_;
};

} // namespace quav
