#include "engine/QUAVTaskQueue.h"

#include "engine/Notifications.h"
#include "engine/QUAVTaskResults.h"
#include "platform/DesktopServices.h"
#include "platform/Settings.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <iterator>

namespace quav {

namespace {

constexpr std::chrono::seconds signInterval(5);

} // namespace

QUAVTaskQueue::QUAVTaskQueue(const Settings& settings, DesktopServices& desktop,
                             const ToolsFolder& tools, MainThread& mainThread,
                             Notifications& notifications)
    : desktop_(desktop), tools_(tools), mainThread_(mainThread),
      spillFile_(std::make_shared<SpillFile>()), maxThreads_(settings.integer(keys::maxThreads)) {
    connect(&notifications, &Notifications::QUAVMaxThreadsChangedNotification, this,
            &QUAVTaskQueue::maxThreadsChanged);
    signOfLife_.setInterval(signInterval);
    connect(&signOfLife_, &QTimer::timeout, this, [this] {
        const std::lock_guard lock(lock_);
        for (const auto& task : taskArray_) {
            if (task->isActive()) {
                task->stillAtWork();
            }
        }
    });
    connect(&stallWatch_, &StallWatch::quietChanged, this,
            [](const std::shared_ptr<QUAVTask>& task, std::chrono::milliseconds quiet) {
                task->setStalledFor(quiet);
            });
}

QUAVTaskQueue::~QUAVTaskQueue() {
    for (const auto& task : taskArray_) {
        task->abandon();
    }
}

void QUAVTaskQueue::maxThreadsChanged(int maxThreads) {
    const std::lock_guard lock(lock_);
    maxThreads_ = maxThreads;
}

void QUAVTaskQueue::addTask(const std::shared_ptr<QUAVTask>& task) {
    Q_EMIT panelShown();
    std::exception_ptr failure;
    try {
        const std::lock_guard lock(lock_);
        enter(task);
    } catch (...) {
        failure = std::current_exception();
    }
    Q_EMIT countsChanged();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void QUAVTaskQueue::enter(const std::shared_ptr<QUAVTask>& task) {
    if (taskArray_.empty()) {
        progress_.start(BatchProgress::Clock::now());
        warnings_.clear();
        summary_ = BatchSummary();
        failures_.clear();
        desktop_.preventSuspend(tr("Audio files are being worked on"));
        stallWatch_.start();
        signOfLife_.start();
    }
    progress_.add(task->weight());
    places_[task.get()] = taskArray_.insert(taskArray_.end(), task);
    setTaskNumberInDock();
    panelArray_.push_back(task);
    task->showProgressInView();
    rows_.append(task);
    if (!noSleep_) {
        preventSleep();
    }
    if (activeTask_ < maxThreads_) {
        lowestActivePosition_ =
            std::max(lowestActivePosition_, static_cast<int32_t>(panelArray_.size()) - 1);
        startTask(task);
    } else {
        waiting_.push_back(task);
    }
}

void QUAVTaskQueue::addTasks(const Tasks& tasks) {
    for (const auto& task : tasks) {
        try {
            addTask(task);
        } catch (const std::exception& exception) {
            qWarning().noquote() << "Exception in queue addTask:" << exception.what();
        }
    }
}

void QUAVTaskQueue::startTask(const std::shared_ptr<QUAVTask>& task) {
    // Counted before it starts, so that the completion of a task that fails to start finds the
    // count as that of any other.
    activeTask_ += 1;
    try {
        task->startTask();
    } catch (const std::exception& exception) {
        task->failToStart(QString::fromUtf8(exception.what()));
        throw;
    }
}

void QUAVTaskQueue::taskCompleted(const std::shared_ptr<QUAVTask>& task) {
    task->setFinalReport(std::make_shared<const TaskReport>(reportOf(*task)));
    try {
        {
            const std::lock_guard lock(lock_);
            removeCompleted(task);
            startWaitingTasks();
        }
        Q_EMIT scrolledToRow(lowestActivePosition_);
        if (activeTask_ < 1 && nothingRuns()) {
            tidyRows();
        }
        showResults(*task);
    } catch (const std::exception& exception) {
        qWarning().noquote() << "Exception in queue taskCompleted:" << exception.what();
    }
    Q_EMIT taskFinished(task);
    if (resetWhenEmpty()) {
        allowSleep();
        desktop_.allowSuspend();
        Q_EMIT becameIdle();
    }
    Q_EMIT countsChanged();
}

bool QUAVTaskQueue::resetWhenEmpty() {
    const std::lock_guard lock(lock_);
    if (taskArray_.empty()) {
        activeTask_ = 0;
        lowestActivePosition_ = 0;
        waiting_.clear();
        stallWatch_.stop();
        signOfLife_.stop();
    }
    return taskArray_.empty();
}

void QUAVTaskQueue::removeCompleted(const std::shared_ptr<QUAVTask>& task) {
    // A task that was cancelled while it waited was never counted, and is subtracted all the same:
    // cancelling waiting tasks makes room for others.
    if (task->isDone()) {
        activeTask_ -= 1;
    }
    if (const auto found = places_.find(task.get()); found != places_.end()) {
        taskArray_.erase(found->second);
        places_.erase(found);
        progress_.finish(task->weight());
        noteEnd(*task->finalReport());
    }
    setTaskNumberInDock();
}

void QUAVTaskQueue::startWaitingTasks() {
    while (!waiting_.empty() && activeTask_ < maxThreads_) {
        const auto next = waiting_.front();
        waiting_.pop_front();
        // One that was cancelled while it waited is done.
        if (!next->isActive() && !next->isDone()) {
            lowestActivePosition_ = std::max(lowestActivePosition_, rows_.rowOf(*next));
            startTask(next);
        }
    }
}

void QUAVTaskQueue::noteEnd(const TaskReport& report) {
    summary_.add(report);
    if (report.hasFailures()) {
        failures_.push_back(failuresOf(report));
    }
    for (const QString& warning : report.warnings) {
        warnings_.add(tr("%1: %2").arg(report.name, report.withoutName(warning)));
    }
}

bool QUAVTaskQueue::nothingRuns() const {
    const std::lock_guard lock(lock_);
    // The counter alone does not tell after waiting tasks were cancelled. A task that is done but
    // has not told so yet still runs: cancelling hundreds at once is one end and not hundreds.
    return std::none_of(taskArray_.begin(), taskArray_.end(),
                        [](const auto& task) { return task->isActive() || task->isDone(); });
}

void QUAVTaskQueue::tidyRows() {
    bool failuresRemain = false;
    {
        const std::lock_guard lock(lock_);
        std::erase_if(panelArray_, [](const auto& task) { return !task->error(); });
        // The last failure stands in the top row.
        rows_.replace(Tasks(panelArray_.rbegin(), panelArray_.rend()));
        failuresRemain = !panelArray_.empty();
    }
    if (failuresRemain) {
        desktop_.requestAttention();
    } else {
        tellOfTheEnd();
    }
}

void QUAVTaskQueue::tellOfTheEnd() {
    Q_EMIT panelClosed();
    setTaskNumberInDock();
    desktop_.notify(tr("Quav task(s) completed"), summary_.text(), [this](bool shown) {
        if (!shown) {
            desktop_.requestAttention();
        }
    });
}

void QUAVTaskQueue::showResults(const QUAVTask& task) {
    const auto& results = task.results();
    if (results && results->taskSetDone() && results->hasResults()) {
        showOutputWindow(results->report(), task.title(), results->verdicts());
    }
}

void QUAVTaskQueue::showOutputWindow(const ReportText& text, const QString& title,
                                     const Verdicts& verdicts) {
    Q_EMIT outputWindowRequested(text, title.isEmpty() ? tr("Output") : title, verdicts);
}

void QUAVTaskQueue::removeAllErrors() {
    const std::lock_guard lock(lock_);
    std::erase_if(panelArray_, [](const auto& task) { return task->error(); });
    rows_.replace(panelArray_);
    if (taskArray_.empty()) {
        Q_EMIT panelClosed();
    }
    setTaskNumberInDock();
}

int QUAVTaskQueue::toolsAtOnce() const {
    const std::lock_guard lock(lock_);
    const int others = std::max(0, static_cast<int>(taskArray_.size()) - 1);
    return std::max(1, maxThreads_ - others);
}

int QUAVTaskQueue::taskCount() const {
    const std::lock_guard lock(lock_);
    return static_cast<int>(taskArray_.size());
}

int QUAVTaskQueue::runningCount() const {
    const std::lock_guard lock(lock_);
    return static_cast<int>(std::count_if(taskArray_.begin(), taskArray_.end(),
                                          [](const auto& task) { return task->isActive(); }));
}

QUAVTaskQueue::Tasks QUAVTaskQueue::tasks() const {
    const std::lock_guard lock(lock_);
    return {taskArray_.begin(), taskArray_.end()};
}

void QUAVTaskQueue::terminateTools() {
    for (const auto& task : tasks()) {
        task->terminateTool();
    }
}

void QUAVTaskQueue::killTools() {
    for (const auto& task : tasks()) {
        task->killTool();
    }
}

void QUAVTaskQueue::cancelAllTasks() {
    const Tasks tasks = this->tasks();
    std::for_each(tasks.rbegin(), tasks.rend(), [](const auto& task) { task->cancelTask(); });
}

void QUAVTaskQueue::killAllTasks() {
    cancelAllTasks();
    Q_EMIT countsChanged();
}

void QUAVTaskQueue::setTaskNumberInDock() {
    desktop_.setBadge(taskArray_.empty() ? std::nullopt
                                         : std::optional<int>(static_cast<int>(taskArray_.size())));
}

void QUAVTaskQueue::preventSleep() {
    if (sleepAnswerPending_) {
        return;
    }
    sleepAnswerPending_ = true;
    desktop_.preventSleep(QStringLiteral("Quav task running"), [this](std::optional<uint32_t> id) {
        sleepAnswerPending_ = false;
        noSleep_ = id.has_value() && taskCount() > 0;
        assertionID_ = id;
        // Given back at once, on purpose: the request alone counts as a sign of use, and
        // `noSleep` keeps it from being repeated before the queue was empty.
        if (id) {
            desktop_.allowSleep(*id);
        }
    });
}

void QUAVTaskQueue::allowSleep() {
    if (assertionID_) {
        desktop_.allowSleep(*assertionID_);
        assertionID_.reset();
    }
    noSleep_ = false;
}

void QUAVTaskQueue::rowChanged(const QUAVTask& task) {
    rows_.markChanged(task);
}

double QUAVTaskQueue::runningWeight() const {
    const std::lock_guard lock(lock_);
    double weight = 0;
    for (const auto& task : taskArray_) {
        if (task->isActive()) {
            weight += task->weight() * task->progressIndicatorValue() / 100;
        }
    }
    return weight;
}

double QUAVTaskQueue::share() const {
    return progress_.share(runningWeight());
}

std::optional<std::chrono::seconds> QUAVTaskQueue::timeLeft() const {
    return progress_.timeLeft(runningWeight(), BatchProgress::Clock::now());
}

} // namespace quav
