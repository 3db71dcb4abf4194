#include "engine/QUAVTaskResults.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quav {

const QUAVTaskResults::Member* QUAVTaskResults::find(const QUAVTask& task) const {
    const auto found = places_.find(&task);
    return found == places_.end() ? nullptr : &tasksInSet_[found->second];
}

QUAVTaskResults::Member* QUAVTaskResults::find(const QUAVTask& task) {
    return const_cast<Member*>(std::as_const(*this).find(task));
}

void QUAVTaskResults::Member::replaceText(const QString& with) {
    text.clear();
    text.append(with);
}

void QUAVTaskResults::setSpillFile(std::shared_ptr<SpillFile> spillFile) {
    const std::lock_guard lock(resultsLock_);
    spillFile_ = std::move(spillFile);
}

void QUAVTaskResults::addTaskInSet(const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    places_.emplace(&task, tasksInSet_.size());
    tasksInSet_.push_back({ReportText(spillFile_), {}, false});
}

bool QUAVTaskResults::memberStopped(const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task); member && !std::exchange(member->stopped, true)) {
        ++stopped_;
        member->text.putAway();
    }
    taskSetDone_ = stopped_ == tasksInSet_.size();
    return taskSetDone_;
}

bool QUAVTaskResults::taskSetDone() const {
    const std::lock_guard lock(resultsLock_);
    return taskSetDone_;
}

void QUAVTaskResults::setTaskAfterSetDone(std::shared_ptr<QUAVTask> task) {
    const std::lock_guard lock(resultsLock_);
    taskAfterSetDone_ = std::move(task);
}

std::shared_ptr<QUAVTask> QUAVTaskResults::taskAfterSetDone() const {
    const std::lock_guard lock(resultsLock_);
    return taskAfterSetDone_;
}

bool QUAVTaskResults::hasResults() const {
    const std::lock_guard lock(resultsLock_);
    return hasResults_;
}

void QUAVTaskResults::setHasResults(bool hasResults) {
    const std::lock_guard lock(resultsLock_);
    hasResults_ = hasResults;
}

void QUAVTaskResults::appendResults(const QString& text) {
    const std::lock_guard lock(resultsLock_);
    if (!tasksInSet_.empty()) {
        tasksInSet_.front().text.append(text);
    }
}

void QUAVTaskResults::appendResults(const QString& text, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->text.append(text);
    }
}

void QUAVTaskResults::appendResults(const ReportText& text, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->text.append(text);
    }
}

void QUAVTaskResults::setResults(const QString& text) {
    const std::lock_guard lock(resultsLock_);
    if (!tasksInSet_.empty()) {
        tasksInSet_.front().replaceText(text);
    }
    hasResults_ = true;
}

void QUAVTaskResults::setResults(const QString& text, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->replaceText(text);
    }
    hasResults_ = true;
}

QString QUAVTaskResults::results() const {
    return report().text();
}

ReportText QUAVTaskResults::report() const {
    const std::lock_guard lock(resultsLock_);
    if (tasksInSet_.empty()) {
        return {};
    }
    ReportText all = tasksInSet_.front().text;
    all.append(QStringLiteral("\n"));
    for (auto member = std::next(tasksInSet_.begin()); member != tasksInSet_.end(); ++member) {
        all.append(member->text);
        all.append(QStringLiteral("\n"));
    }
    return all;
}

QString QUAVTaskResults::resultsOf(const QUAVTask& task) const {
    return reportOf(task).text();
}

ReportText QUAVTaskResults::reportOf(const QUAVTask& task) const {
    const std::lock_guard lock(resultsLock_);
    const Member* member = find(task);
    return member ? member->text : ReportText();
}

void QUAVTaskResults::appendVerdicts(Verdicts verdicts, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        if (!member->verdicts) {
            member->verdicts = std::make_shared<Verdicts>(std::move(verdicts));
            return;
        }
        if (member->verdicts.use_count() > 1) {
            member->verdicts = std::make_shared<Verdicts>(*member->verdicts);
        }
        std::move(verdicts.begin(), verdicts.end(), std::back_inserter(*member->verdicts));
    }
}

Verdicts QUAVTaskResults::verdicts() const {
    const std::lock_guard lock(resultsLock_);
    Verdicts all;
    for (const Member& member : tasksInSet_) {
        if (member.verdicts) {
            all.insert(all.end(), member.verdicts->begin(), member.verdicts->end());
        }
    }
    return all;
}

SharedVerdicts QUAVTaskResults::verdictsOf(const QUAVTask& task) const {
    const std::lock_guard lock(resultsLock_);
    const Member* member = find(task);
    return member && member->verdicts ? member->verdicts : noVerdicts();
}

} // namespace quav
