#include "engine/QUAVTaskResults.h"

#include <algorithm>
#include <utility>

namespace quav {

QUAVTaskResults::Member* QUAVTaskResults::find(const QUAVTask& task) {
    const auto found = std::find_if(members_.begin(), members_.end(),
                                    [&](const Member& member) { return member.task == &task; });
    return found == members_.end() ? nullptr : &*found;
}

void QUAVTaskResults::addTaskInSet(const QUAVTask& task) {
    const std::lock_guard lock(resultsLock_);
    members_.push_back({&task, {}, false});
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
    const auto found = std::find_if(members_.begin(), members_.end(),
                                    [&](const Member& member) { return member.task == &task; });
    return found == members_.end() ? QString() : found->text;
}

} // namespace quav
