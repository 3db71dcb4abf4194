#include "engine/QUAVTask.h"

#include "engine/QUAVTaskResults.h"
#include "engine/StallWatch.h"
#include "platform/MainThread.h"

#include <QDebug>

#include <exception>
#include <utility>

namespace quav {

namespace {

struct RowWords {
    Q_DECLARE_TR_FUNCTIONS(TaskRow)
};

} // namespace

QUAVTask::QUAVTask(TaskHost& queue) : queue_(queue), results_(std::make_shared<QUAVTaskResults>()) {
    results_->setSpillFile(queue.spillFile());
    results_->addTaskInSet(*this);
}

QUAVTask::~QUAVTask() = default;

void QUAVTask::startTask() {
    queue_.mainThread().runAndWait([this] { doStartTaskOnMainThread(); });
}

void QUAVTask::doStartTaskOnMainThread() {
    row_.mainLine = title_;
    active_ = true;
    done_ = false;
    row_.cancelButtonVisible = true;
    row_.barVisible = true;
    startTime_ = std::chrono::steady_clock::now();
    queue_.rowChanged(*this);
}

void QUAVTask::cancelTask() {
    if (done_) {
        return;
    }
    cancelled_ = true;
    queue_.rowChanged(*this); // which tells so while the tool finishes
    stopTask();
}

void QUAVTask::terminateTool() {}

void QUAVTask::killTool() {}

void QUAVTask::abandon() {}

void QUAVTask::stillAtWork() {}

void QUAVTask::endStalledTool() {
    queue_.stallWatch().endStalled(*this);
}

void QUAVTask::setStalledFor(std::chrono::milliseconds quiet) {
    if (done_) {
        return;
    }
    if (!row_.stalled) {
        statusBehindStall_ = row_.statusLine;
    }
    row_.stalled = quiet.count() > 0;
    row_.statusLine =
        row_.stalled ? RowWords::tr("Stalled for %1; the tool can be ended").arg(spanInWords(quiet))
                     : statusBehindStall_;
    queue_.rowChanged(*this);
}

void QUAVTask::runHook(const std::function<void()>& hook) {
    try {
        hook();
    } catch (const std::exception& exception) {
        qWarning().noquote() << "Exception in" << title_ << exception.what();
        results_->appendResults(QString::fromUtf8(exception.what()) + u'\n', *this);
        error_ = true;
    }
}

void QUAVTask::setStopped() {
    active_ = false;
    done_ = true;
}

void QUAVTask::stopTask() {
    setStopped();
    if (results_->memberStopped(*this)) {
        const auto followUp = results_->taskAfterSetDone();
        if (followUp && !followUp->isActive() && !followUp->isDone()) {
            queue_.mainThread().post([&queue = queue_, followUp] {
                try {
                    queue.addTask(followUp);
                } catch (const std::exception& exception) {
                    qWarning().noquote() << "Exception in queue addTask:" << exception.what();
                }
            });
        }
    }
    queue_.mainThread().post([self = shared_from_this()] { self->setGuiFields(); });
}

void QUAVTask::failToStart(const QString& reason) {
    error_ = true;
    results_->appendResults(reason + u'\n', *this);
    QUAVTask::stopTask();
    reportCompletion();
}

void QUAVTask::reportCompletion() {
    if (std::exchange(completionReported_, true)) {
        return;
    }
    queue_.mainThread().post([self = shared_from_this()] { self->queue_.taskCompleted(self); });
}

QString QUAVTask::source() const {
    return {};
}

QString QUAVTask::output() const {
    return {};
}

QString QUAVTask::reason() const {
    FailureFacts facts;
    {
        const std::lock_guard lock(handOver_);
        facts = failureFacts_;
    }
    // What the task noted of its own source is better than a line of its report.
    const QString source = this->source();
    for (const Verdict& verdict : *results_->verdictsOf(*this)) {
        if (!source.isEmpty() && verdict.file == source && !verdict.note.isEmpty()) {
            return failureReason(facts, verdict.note);
        }
    }
    constexpr qint64 whereReasonsStand = 1 << 20;
    return failureReason(facts, results_->reportOf(*this).ending(whereReasonsStand));
}

void QUAVTask::setFailureFacts(const FailureFacts& facts) {
    const std::lock_guard lock(handOver_);
    const QString own = failureFacts_.own;
    failureFacts_ = facts;
    failureFacts_.own = own;
}

void QUAVTask::failBecause(const QString& reason) {
    setError(true);
    results_->appendResults(reason + u'\n', *this);
    const std::lock_guard lock(handOver_);
    if (failureFacts_.own.isEmpty()) {
        failureFacts_.own = QString(reason).replace(u'\n', u' ');
    }
}

QString QUAVTask::description() const {
    return title_;
}

void QUAVTask::setResults(std::shared_ptr<QUAVTaskResults> results) {
    results_ = std::move(results);
    results_->setSpillFile(queue_.spillFile());
}

QString QUAVTask::topTextFieldString() const {
    const std::lock_guard lock(handOver_);
    return topTextFieldString_;
}

void QUAVTask::setTopTextFieldString(const QString& text) {
    const std::lock_guard lock(handOver_);
    topTextFieldString_ = text;
}

QString QUAVTask::textFieldString() const {
    const std::lock_guard lock(handOver_);
    return textFieldString_;
}

void QUAVTask::setTextFieldString(const QString& text) {
    const std::lock_guard lock(handOver_);
    textFieldString_ = text;
}

double QUAVTask::progressIndicatorValue() const {
    const std::lock_guard lock(handOver_);
    return progressIndicatorValue_;
}

void QUAVTask::setProgressIndicatorValue(double percent) {
    const std::lock_guard lock(handOver_);
    progressIndicatorValue_ = percent;
}

QStringList QUAVTask::warnings() const {
    const std::lock_guard lock(handOver_);
    return warnings_.lines();
}

void QUAVTask::addWarning(const QString& line) {
    const std::lock_guard lock(handOver_);
    warnings_.add(line);
}

void QUAVTask::noteWritten(const QString& path, const OutputProof& proof) {
    const std::lock_guard lock(handOver_);
    written_ << path;
    proof_ = proof;
}

QStringList QUAVTask::written() const {
    const std::lock_guard lock(handOver_);
    return written_;
}

OutputProof QUAVTask::proof() const {
    const std::lock_guard lock(handOver_);
    return proof_;
}

void QUAVTask::setFinalReport(std::shared_ptr<const TaskReport> report) {
    finalReport_ = std::move(report);
}

void QUAVTask::fillRow(unsigned parts) {
    {
        const std::lock_guard lock(handOver_);
        if ((parts & StatusLine) != 0) {
            (row_.stalled ? statusBehindStall_ : row_.statusLine) = topTextFieldString_;
        }
        if ((parts & MainLine) != 0) {
            row_.mainLine = textFieldString_;
        }
        if ((parts & Bar) != 0) {
            row_.barValue = progressIndicatorValue_;
        }
    }
    queue_.rowChanged(*this);
}

void QUAVTask::updateStatus() {
    fillRow(StatusLine | Bar);
}

void QUAVTask::setTopTextFieldValue() {
    fillRow(StatusLine);
}

void QUAVTask::setTextFieldValue() {
    fillRow(MainLine);
}

void QUAVTask::setProgressIndicatorValueInGui() {
    fillRow(Bar);
}

void QUAVTask::setCombinedStatus() {
    fillRow(StatusLine | MainLine | Bar);
}

void QUAVTask::showMainLine(const QString& text) {
    setTextFieldString(text);
    push(MainLine);
}

void QUAVTask::showStatus(const QString& status) {
    setTopTextFieldString(status);
    push(StatusLine);
}

void QUAVTask::showProgress(const QString& status, double percent) {
    setTopTextFieldString(status);
    setProgressIndicatorValue(percent);
    push(StatusLine | Bar);
}

void QUAVTask::push(unsigned parts) {
    bool first = false;
    {
        const std::lock_guard lock(handOver_);
        first = pushedParts_ == 0;
        pushedParts_ |= parts;
    }
    if (first) {
        queue_.mainThread().post([self = shared_from_this()] {
            unsigned due = 0;
            {
                const std::lock_guard lock(self->handOver_);
                due = std::exchange(self->pushedParts_, 0U);
            }
            self->fillRow(due);
        });
    }
}

void QUAVTask::startIndeterminateProgressBar() {
    row_.barDeterminate = false;
    row_.barAnimated = true;
    queue_.rowChanged(*this);
}

void QUAVTask::showProgressInView() {
    if (!done_) {
        row_.barVisible = false;
    }
}

void QUAVTask::setGuiFields() {
    if (std::exchange(row_.stalled, false)) {
        row_.statusLine = statusBehindStall_;
    }
    if (cancelled_) {
        row_.mainLine = RowWords::tr("Canceled");
        row_.mainLineColour = TaskRow::Colour::Red;
    } else if (error()) {
        qWarning().noquote() << description() << "Error";
        row_.statusLine = RowWords::tr("Error");
        row_.mainLineColour = TaskRow::Colour::Red;
        row_.barAnimated = false;
    } else {
        row_.mainLineColour = TaskRow::Colour::DarkGreen;
        row_.statusLine = RowWords::tr("Complete");
        row_.barVisible = false;
    }
    row_.cancelButtonVisible = false;
    queue_.rowChanged(*this);
}

} // namespace quav
