#pragma once

#include "engine/ReportText.h"
#include "engine/Verdict.h"

#include <QString>

#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace quav {

class QUAVTask;

/// The report of a set of tasks that belong together: one text a member, in the order of
/// registration, whatever the order in which the members ran. It also knows when the whole set is
/// done and which task is to follow it. Members are registered before any of them starts;
/// everything may be called from any thread.
class QUAVTaskResults {
public:
    /// Where long texts go of members that are registered from now on; a task says it when it is
    /// given the set.
    void setSpillFile(std::shared_ptr<SpillFile> spillFile);

    void addTaskInSet(const QUAVTask& task);

    /// Notes that a member has stopped; true when with it all members have.
    bool memberStopped(const QUAVTask& task);

    bool taskSetDone() const;

    /// The task that is to be queued when the set is done, whether its members succeeded or not.
    void setTaskAfterSetDone(std::shared_ptr<QUAVTask> task);
    std::shared_ptr<QUAVTask> taskAfterSetDone() const;

    /// Whether the text is worth showing when the set is done; it is unless somebody says no.
    bool hasResults() const;
    void setHasResults(bool hasResults);

    /// Adds to the text of the first member, which speaks for the whole set.
    void appendResults(const QString& text);

    /// Adds to the text of one member; a task that is no member adds nothing.
    void appendResults(const QString& text, const QUAVTask& task);
    void appendResults(const ReportText& text, const QUAVTask& task);

    /// Replaces the text of the first member and makes the set worth showing.
    void setResults(const QString& text);

    /// Replaces the text of one member and makes the set worth showing.
    void setResults(const QString& text, const QUAVTask& task);

    /// The texts of all members, each followed by one line break: whole, or to be read piece by
    /// piece by whoever may meet a very long one.
    QString results() const;
    ReportText report() const;

    /// The text of one member alone.
    QString resultsOf(const QUAVTask& task) const;
    ReportText reportOf(const QUAVTask& task) const;

    /// What one member has found out about files, beside its text.
    void appendVerdicts(Verdicts verdicts, const QUAVTask& task);

    /// The verdicts of all members, in the order of registration.
    Verdicts verdicts() const;
    SharedVerdicts verdictsOf(const QUAVTask& task) const;

private:
    struct Member {
        ReportText text;
        std::shared_ptr<Verdicts> verdicts; ///< null for none; never changed once passed on
        bool stopped = false;

        void replaceText(const QString& with);
    };

    Member* find(const QUAVTask& task);
    const Member* find(const QUAVTask& task) const;

    mutable std::mutex resultsLock_;
    std::shared_ptr<SpillFile> spillFile_;
    std::vector<Member> tasksInSet_;
    std::unordered_map<const QUAVTask*, size_t> places_; ///< of tasks among the members
    size_t stopped_ = 0;
    std::shared_ptr<QUAVTask> taskAfterSetDone_;
    bool taskSetDone_ = false;
    bool hasResults_ = true;
};

} // namespace quav
