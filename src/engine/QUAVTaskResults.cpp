#include "engine/QUAVTaskResults.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quav {

const QUAVTaskResults::Member* QUAVTaskResults::find(const QUAVTask& task) const {
    const auto found = std::find_if(members_.begin(), members_.end(),
                                    [&](const Member& member) { return member.task == &task; });
    return found == members_.end() ? nullptr : &*found;
}

QUAVTaskResults::Member* QUAVTaskResults::find(const QUAVTask& task) {
    return const_cast<Member*>(std::as_const(*this).find(task));
}

void QUAVTaskResults::addTaskInSet(const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    members_.push_back({&task, {}, {}, false});
}

bool QUAVTaskResults::memberStopped(const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->stopped = true;
    }
    taskSetDone_ = std::all_of(members_.begin(), members_.end(),
                               [](const Member& member) { return member.stopped; });
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
    if (!members_.empty()) {
        members_.front().text += text;
    }
}

void QUAVTaskResults::appendResults(const QString& text, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->text += text;
    }
}

void QUAVTaskResults::setResults(const QString& text) {
    const std::lock_guard lock(resultsLock_);
    if (!members_.empty()) {
        members_.front().text = text;
    }
    hasResults_ = true;
}

void QUAVTaskResults::setResults(const QString& text, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        member->text = text;
    }
    hasResults_ = true;
}

QString QUAVTaskResults::results() const {
    const std::lock_guard lock(resultsLock_);
    QString all;
    for (const Member& member : members_) {
        all += member.text + u'\n';
    }
    return all;
}

QString QUAVTaskResults::resultsOf(const QUAVTask& task) const {
    const std::lock_guard lock(resultsLock_);
    const Member* member = find(task);
    return member ? member->text : QString();
}

void QUAVTaskResults::appendVerdicts(Verdicts verdicts, const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    if (Member* member = find(task)) {
        std::move(verdicts.begin(), verdicts.end(), std::back_inserter(member->verdicts));
    }
}

Verdicts QUAVTaskResults::verdicts() const {
    const std::lock_guard lock(resultsLock_);
    Verdicts all;
    for (const Member& member : members_) {
        all.insert(all.end(), member.verdicts.begin(), member.verdicts.end());
    }
    return all;
}

Verdicts QUAVTaskResults::verdictsOf(const QUAVTask& task) const {
    const std::lock_guard lock(resultsLock_);
    const Member* member = find(task);
    return member ? member->verdicts : Verdicts();
}

} // namespace quav
