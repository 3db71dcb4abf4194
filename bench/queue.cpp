// 4,096 tasks that do nothing, through the queue, against as many bare closures through the event
// loop, and how deep the stack was at the completions; then 25,000 to 100,000 that share one set of
// results, whose time has to grow no faster than their number.

#include "engine/Notifications.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/DesktopServices.h"
#include "platform/MainThread.h"
#include "platform/Settings.h"
#include "support/Figures.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

using namespace quav;

namespace {

constexpr int taskCount = 4096;
constexpr double barMilliseconds = 1000;
constexpr int setSize = 100'000;
constexpr double setBarMilliseconds = 1000;
constexpr double growthBar = 6; ///< of the time, from a quarter of the set to all of it
constexpr quintptr stackBarBytes = 64 * 1024;

class EmptyTask : public QUAVTask {
public:
    using QUAVTask::QUAVTask;

    void startTask() override {
        QUAVTask::startTask();
        QUAVTask::stopTask();
        reportCompletion();
    }
};

double bareClosures() {
    MainThread mainThread;
    QEventLoop loop;
    int left = taskCount;
    // Each posts the next, as a queue must that waits for one completion to start another.
    std::function<void()> next = [&] { --left > 0 ? mainThread.post(next) : loop.quit(); };
    return bench::millisecondsOf([&] {
        mainThread.post(next);
        loop.exec();
    });
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    Settings settings(folder.filePath(QStringLiteral("quav.ini")));
    NoDesktop desktop;
    const ToolsFolder tools(folder.path());
    MainThread mainThread;
    Notifications notifications;
    QUAVTaskQueue queue(settings, desktop, tools, mainThread, notifications);

    quintptr shallowest = 0;
    quintptr deepest = std::numeric_limits<quintptr>::max();
    QObject::connect(&queue, &QUAVTaskQueue::taskFinished, &queue, [&] {
        const char here = 0;
        shallowest = std::max(shallowest, reinterpret_cast<quintptr>(&here));
        deepest = std::min(deepest, reinterpret_cast<quintptr>(&here));
    });
    QEventLoop loop;
    QObject::connect(&queue, &QUAVTaskQueue::becameIdle, &loop, &QEventLoop::quit);

    std::vector<std::shared_ptr<QUAVTask>> tasks;
    std::generate_n(std::back_inserter(tasks), taskCount,
                    [&] { return std::make_shared<EmptyTask>(queue); });
    const double reference = bareClosures();
    const double ours = bench::millisecondsOf([&] {
        queue.addTasks(tasks);
        loop.exec();
    });
    const bool inTime = bench::report("4,096 empty tasks through the queue", ours, reference,
                                      "bare closures", barMilliseconds);
    const quintptr spread = shallowest - deepest;
    const auto asOneSet = [&](int count) {
        const auto results = std::make_shared<QUAVTaskResults>();
        tasks.clear();
        return bench::millisecondsOf([&] {
            std::generate_n(std::back_inserter(tasks), count, [&] {
                auto task = std::make_shared<EmptyTask>(queue);
                task->setResults(results);
                results->addTaskInSet(*task);
                return task;
            });
            queue.addTasks(tasks);
            loop.exec();
        });
    };
    asOneSet(setSize); // the memory of later rounds is there then
    const double quarter = asOneSet(setSize / 4);
    const double whole = asOneSet(setSize);
    const bool setInTime = bench::report("100,000 empty tasks in one set", whole, quarter,
                                         "a quarter", setBarMilliseconds) &&
                           whole <= growthBar * quarter;
    std::printf("stack depth at the 4,096 completions varies by %llu bytes (bar %llu)\n",
                static_cast<unsigned long long>(spread),
                static_cast<unsigned long long>(stackBarBytes));
    return inTime && setInTime && spread <= stackBarBytes ? 0 : 1;
}
