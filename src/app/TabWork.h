#pragma once

#include "platform/BackgroundWork.h"
#include "platform/MainThread.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace quav {

/// How far a piece of work is and whether it is still wanted. Any thread.
class WorkProgress {
public:
    bool isCancelled() const { return cancelled_; }
    void cancel() { cancelled_ = true; }

    /// So many are done of so many; a total of 0 is one that is not known yet.
    void tell(qint64 done, qint64 total = 0) {
        done_ = done;
        total_ = total;
    }
    qint64 done() const { return done_; }
    qint64 total() const { return total_; }

private:
    std::atomic<bool> cancelled_ = false;
    std::atomic<qint64> done_ = 0;
    std::atomic<qint64> total_ = 0;
};

/// Work that runs on a thread, one piece after another in the order in which they came. What
/// follows a piece runs on the main thread, also when it was cancelled; the work itself says in its
/// result what became of it.
class TabWork : public QObject {
    Q_OBJECT

public:
    explicit TabWork(QObject* parent = nullptr);
    /// Cancels the work and waits for its end; what was to follow is dropped.
    ~TabWork() override;

    /// `work` gets the WorkProgress and gives a value, which `then` is given on the main thread.
    /// The work may not throw, and may touch only what outlives the object.
    template <typename Work, typename Then>
    void run(const QString& title, Work work, Then then) {
        using Result = std::invoke_result_t<Work, WorkProgress&>;
        const auto result = std::make_shared<std::optional<Result>>();
        add({title,
             [result, work = std::move(work)](WorkProgress& progress) {
                 result->emplace(work(progress));
             },
             [result, then = std::move(then)] { then(std::move(**result)); },
             std::make_shared<WorkProgress>()});
    }

    bool isBusy() const { return !pieces_.empty(); }
    /// What runs now, for the user; empty when nothing does.
    QString title() const;
    /// How far it is; of work that does not run, 0.
    qint64 done() const;
    /// 0: not known.
    qint64 total() const;

    /// Cancels what runs now.
    void cancel();
    /// Cancels what runs and what waits.
    void cancelAll();

Q_SIGNALS:
    /// Another piece of work runs, or none any more.
    void changed();

private:
    struct Piece {
        QString title;
        std::function<void(WorkProgress&)> work;
        std::function<void()> then;
        std::shared_ptr<WorkProgress> progress;
    };

    void add(Piece piece);
    void start();
    void takeResult();

    MainThread mainThread_;
    std::deque<Piece> pieces_; ///< the first one runs
    BackgroundWork worker_;    ///< last, so that it has ended before the others go
};

} // namespace quav
