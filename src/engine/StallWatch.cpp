#include "engine/StallWatch.h"

#include "platform/ChildCommand.h"
#include "platform/ToolActivity.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace quav {

namespace {

// A limit is kept to a quarter of itself.
constexpr int looksUntilEnd = 4;

} // namespace

StallWatch::StallWatch(QObject* parent) : QObject(parent) {
    connect(&timer_, &QTimer::timeout, this, &StallWatch::look);
    setPatience({});
}

void StallWatch::setPatience(const Patience& patience) {
    patience_ = patience;
    const bool ends = patience.end > Time(0);
    timer_.setInterval(std::max(
        Time(1), ends ? std::min(patience.look, patience.end / looksUntilEnd) : patience.look));
}

/// A tool that is about to be ended has been told of.
StallWatch::Time StallWatch::stalledAfter() const {
    return patience_.end > Time(0) ? std::min(patience_.stalled, patience_.end) : patience_.stalled;
}

void StallWatch::start() {
    sinceLook_.start();
    timer_.start();
}

void StallWatch::stop() {
    timer_.stop();
}

void StallWatch::began(pid_t tool, const QString& name, const std::weak_ptr<QUAVTask>& task) {
    const std::lock_guard lock(mutex_);
    tools_[tool] = {name, task, true, {}, {}, false, {}};
}

void StallWatch::printed(pid_t tool) {
    const std::lock_guard lock(mutex_);
    if (const auto found = tools_.find(tool); found != tools_.end()) {
        found->second.printed = true;
    }
}

std::optional<StallWatch::Time> StallWatch::ended(pid_t tool) {
    const std::lock_guard lock(mutex_);
    const auto ended = tools_.extract(tool);
    return ended ? ended.mapped().endedAfter : std::nullopt;
}

void StallWatch::kill(pid_t leader, Tool& tool) {
    tool.endedAfter = tool.quiet;
    signalChild(leader, SIGKILL);
}

void StallWatch::endStalled(const QUAVTask& task) {
    const std::lock_guard lock(mutex_);
    for (auto& [leader, tool] : tools_) {
        if (tool.told && tool.task.lock().get() == &task) {
            kill(leader, tool);
        }
    }
}

std::vector<pid_t> StallWatch::silentTools() const {
    std::vector<pid_t> silent;
    for (const auto& [leader, tool] : tools_) {
        if (!tool.printed) {
            silent.push_back(leader);
        }
    }
    return silent;
}

std::vector<StallWatch::News> StallWatch::lookAtTools(Time passed) {
    std::vector<News> news;
    const std::lock_guard lock(mutex_);
    const std::vector<pid_t> silent = silentTools();
    const auto moved = silent.empty() ? decltype(bytesMoved(silent))() : bytesMoved(silent);
    for (auto& [leader, tool] : tools_) {
        const auto found = moved.find(leader);
        const auto bytes = found == moved.end() ? std::nullopt : std::optional(found->second);
        const bool works = std::exchange(tool.printed, false) || !bytes || bytes != tool.bytes;
        tool.bytes = bytes;
        tool.quiet = works ? Time(0) : tool.quiet + passed;
        const bool stalls = tool.quiet >= stalledAfter();
        const bool wasTold = std::exchange(tool.told, stalls);
        if (stalls || wasTold) {
            news.push_back({tool.task.lock(), tool.name, tool.quiet, stalls && !wasTold});
        }
        if (patience_.end > Time(0) && tool.quiet >= patience_.end) {
            kill(leader, tool);
        }
    }
    return news;
}

void StallWatch::look() {
    // What passed while we ourselves were held up, or the whole machine slept, says nothing about
    // the tools.
    const Time passed = std::min(Time(sinceLook_.restart()), 2 * timer_.intervalAsDuration());
    for (const News& one : lookAtTools(passed)) {
        if (!one.task) {
            continue;
        }
        Q_EMIT quietChanged(one.task, one.quiet >= stalledAfter() ? one.quiet : Time(0));
        if (one.isNew) {
            Q_EMIT stalled(one.task, one.tool, one.quiet);
        }
    }
}

} // namespace quav
