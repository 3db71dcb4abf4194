#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace quav {

class QUAVTask;

/// Watches the tools that run and tells of those that do nothing: that neither read, write nor
/// print for a while. Its task is told, and the tool can be ended; it is ended when its time is up.
/// A tool that the system tells nothing of is taken to be at work.
class StallWatch : public QObject {
    Q_OBJECT

public:
    using Time = std::chrono::milliseconds;

    struct Patience {
        Time look = std::chrono::seconds(5);    ///< how often the tools are looked at
        Time stalled = std::chrono::minutes(1); ///< from when on a tool counts as stalled
        Time end{0};                            ///< from when on it is ended; 0: never
    };

    explicit StallWatch(QObject* parent = nullptr);

    /// Main thread only, like all that follow down to `endStalled`.
    void setPatience(const Patience& patience);
    const Patience& patience() const { return patience_; }

    void start();
    void stop();

    /// Kills the tools of a task that are stalled now.
    void endStalled(const QUAVTask& task);

    /// A tool of a task, which leads a process group of its own, runs from now on. Any thread, like
    /// all that follow.
    void began(pid_t tool, const QString& name, const std::weak_ptr<QUAVTask>& task);
    void printed(pid_t tool);

    /// The tool has ended; to be told before its number can become another's. Says for how long it
    /// had done nothing, if it was ended for that.
    std::optional<Time> ended(pid_t tool);

Q_SIGNALS:
    /// A stalled tool of the task has done nothing for so long now; 0: it works again.
    void quietChanged(const std::shared_ptr<quav::QUAVTask>& task, std::chrono::milliseconds quiet);

    /// Once a tool that comes to a halt.
    void stalled(const std::shared_ptr<quav::QUAVTask>& task, const QString& tool,
                 std::chrono::milliseconds quiet);

private:
    struct Tool {
        QString name;
        std::weak_ptr<QUAVTask> task;
        bool printed = true; ///< since it was looked at last
        std::optional<std::uint64_t> bytes;
        Time quiet{0};
        bool told = false;
        std::optional<Time> endedAfter;
    };
    struct News {
        std::shared_ptr<QUAVTask> task;
        QString tool;
        Time quiet;
        bool isNew;
    };

    void look();
    std::vector<News> lookAtTools(Time passed);
    std::vector<pid_t> silentTools() const;
    Time stalledAfter() const;
    static void kill(pid_t leader, Tool& tool);

    Patience patience_;
    QTimer timer_;
    QElapsedTimer sinceLook_;
    std::mutex mutex_;
    std::map<pid_t, Tool> tools_;
};

} // namespace quav
