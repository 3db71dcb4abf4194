#pragma once

#include "engine/BatchProgress.h"
#include "engine/BatchSummary.h"
#include "engine/BoundedLines.h"
#include "engine/QUAVTask.h"
#include "engine/ReportText.h"
#include "engine/StallWatch.h"
#include "engine/TaskHost.h"
#include "engine/TaskReport.h"
#include "engine/TaskRowsModel.h"
#include "engine/Verdict.h"
#include "platform/WorkPool.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quav {

class DesktopServices;
class Notifications;
class Settings;

/// The one queue. Starts tasks in the order in which they were added, never more than `maxThreads`
/// at a time, keeps their rows, and says when a report is to be shown or everything is finished.
/// It knows no window: it emits signals and whoever has one obeys.
class QUAVTaskQueue : public QObject, public TaskHost {
    Q_OBJECT

public:
    QUAVTaskQueue(const Settings& settings, DesktopServices& desktop, const ToolsFolder& tools,
                  MainThread& mainThread, Notifications& notifications);
    /// Kills what still runs.
    ~QUAVTaskQueue() override;

    void addTask(const std::shared_ptr<QUAVTask>& task) override;

    /// Adds the tasks one after the other. One that cannot be started does not keep the others
    /// back: it has been ended as failed.
    void addTasks(const std::vector<std::shared_ptr<QUAVTask>>& tasks);

    void taskCompleted(const std::shared_ptr<QUAVTask>& task) override;

    /// A higher limit takes effect when the next task is added or completed; a lower one stops
    /// nothing that runs.
    void maxThreadsChanged(int maxThreads);

    /// Waiting and running tasks.
    int taskCount() const;
    int runningCount() const;

    /// Cancels every task, from the last to the first: at the end of the program.
    void killAllTasks();
    /// The same as the user's wish.
    void cancelAllTasks();

    /// Asks the tools of running tasks to end now.
    void terminateTools();
    /// Kills them.
    void killTools();

    /// Removes the rows of failed tasks.
    void removeAllErrors();

    void preventSleep();
    void allowSleep();

    TaskRowsModel& rows() { return rows_; }

    /// How far everything queued is, 0 to 1, and how long it will yet take.
    double share() const;
    std::optional<std::chrono::seconds> timeLeft() const;

    /// What tasks that succeeded had to say, title and line, since the queue was last idle: the
    /// first ten thousand.
    QStringList warnings() const { return warnings_.lines(); }

    /// How the tasks ended that were queued since the queue was last idle.
    const BatchSummary& summary() const { return summary_; }

    /// The reports on those of them that failed or found files that are not in order, in the order
    /// of their ends, until the next batch: whether or not a window has shown them, and also when
    /// their rows have been removed.
    const std::vector<TaskReport>& failures() const { return failures_; }

    void rowChanged(const QUAVTask& task) override;
    MainThread& mainThread() override { return mainThread_; }
    const ToolsFolder& toolsFolder() const override { return tools_; }
    const std::shared_ptr<SpillFile>& spillFile() const override { return spillFile_; }
    StallWatch& stallWatch() override { return stallWatch_; }
    WorkPool& cleanupPool() override { return cleanupPool_; }
    int toolsAtOnce() const override;

Q_SIGNALS:
    /// The status panel is to be brought to the front.
    void panelShown();
    void panelClosed();
    void scrolledToRow(int row);
    /// A report is to be shown in a window of its own, with what it says of files as data.
    void outputWindowRequested(const quav::ReportText& text, const QString& title,
                               const quav::Verdicts& verdicts);
    /// A task was added, started or completed.
    void countsChanged();
    /// A task has ended; it has its final report.
    void taskFinished(const std::shared_ptr<quav::QUAVTask>& task);
    /// Nothing waits and nothing runs.
    void becameIdle();

private:
    static constexpr qsizetype mostWarnings = 10000;

    using Tasks = std::vector<std::shared_ptr<QUAVTask>>;

    void enter(const std::shared_ptr<QUAVTask>& task);
    void startTask(const std::shared_ptr<QUAVTask>& task);
    void startWaitingTasks();
    void removeCompleted(const std::shared_ptr<QUAVTask>& task);
    void tidyRows();
    void tellOfTheEnd();
    void showResults(const QUAVTask& task);
    void showOutputWindow(const ReportText& text, const QString& title, const Verdicts& verdicts);
    void setTaskNumberInDock();
    void noteEnd(const TaskReport& report);
    double runningWeight() const;
    bool nothingRuns() const;
    bool resetWhenEmpty();
    Tasks tasks() const;

    DesktopServices& desktop_;
    const ToolsFolder& tools_;
    MainThread& mainThread_;
    std::shared_ptr<SpillFile> spillFile_;
    QTimer signOfLife_;
    StallWatch stallWatch_; // before the tasks, which speak to it until they have gone
    WorkPool cleanupPool_;  // likewise

    // Recursive: a view that is told of a new row may ask for the counts.
    mutable std::recursive_mutex lock_;
    using TaskList = std::list<std::shared_ptr<QUAVTask>>;
    TaskList taskArray_;
    std::unordered_map<const QUAVTask*, TaskList::iterator> places_; ///< of tasks in `taskArray_`
    std::deque<std::shared_ptr<QUAVTask>> waiting_; ///< those of them that were never started
    Tasks panelArray_;
    int32_t activeTask_ = 0;
    int32_t maxThreads_;
    int32_t lowestActivePosition_ = 0;

    std::optional<uint32_t> assertionID_;
    bool noSleep_ = false;
    bool sleepAnswerPending_ = false;

    TaskRowsModel rows_;
    BatchProgress progress_;
    BatchSummary summary_;
    std::vector<TaskReport> failures_;
    BoundedLines warnings_{mostWarnings};
};

} // namespace quav
