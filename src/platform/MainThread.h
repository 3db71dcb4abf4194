#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

namespace quav {

/// The way from any thread to the main one: closures posted here run on the thread that created
/// the object, in the order of posting, when its event loop next turns. What is still waiting when
/// the object goes is dropped.
class MainThread : public QObject {
    Q_OBJECT

public:
    explicit MainThread(QObject* parent = nullptr);
    ~MainThread() override;

    /// True when the caller is on the main thread.
    bool isCurrent() const;

    /// Hands a closure over; may be called from any thread. One that speaks of an object which may
    /// go before it has run names that object as its owner.
    void post(std::function<void()> work, const void* owner = nullptr);

    /// Forgets what was posted for this owner and has not run yet. Main thread only.
    void forget(const void* owner);

    /// Runs a closure on the main thread and returns when it has run: directly if the caller is
    /// there already.
    void runAndWait(const std::function<void()>& work);

private:
    struct Posted {
        std::function<void()> work;
        const void* owner;
    };

    Q_INVOKABLE void runPosted();

    // Our own lock and not only the event queue's: the hand-over must be visible to tools that
    // check threads without knowing Qt's inside.
    std::mutex mutex_;
    std::deque<Posted> posted_;
    std::deque<Posted> due_; ///< taken over by the main thread; its own
};

} // namespace quav
