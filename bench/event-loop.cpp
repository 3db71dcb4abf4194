// How long the event loop is kept from turning while 5,000 queued rows complete, each a real child
// process, and while a list of 10,000 files is verified, with the window and the status panel on
// the screen; against an idle event loop.

#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"
#include "checksums/FileHash.h"
#include "engine/QUAVAsyncNSTask.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "support/Figures.h"
#include "support/WindowRig.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace quav;

namespace {

constexpr int rowCount = 5000;
constexpr int entryCount = 10000;
constexpr int entryBytes = 200000;
constexpr double p99Bar = 16;
constexpr double worstBar = 50;

/// Notes how late each turn of the event loop is that is due after a millisecond.
class Heartbeat {
public:
    Heartbeat() {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(std::chrono::milliseconds(1));
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] {
            const auto now = bench::Clock::now();
            gaps_.push_back(bench::Milliseconds(now - last_).count());
            last_ = now;
        });
        last_ = bench::Clock::now();
        timer_.start();
    }

    double percentile(double share) {
        std::sort(gaps_.begin(), gaps_.end());
        const auto last = static_cast<double>(gaps_.size() - 1);
        return gaps_.at(static_cast<size_t>(last * share));
    }

private:
    QTimer timer_;
    bench::Clock::time_point last_;
    std::vector<double> gaps_;
};

/// Prints a progress line and ends.
std::shared_ptr<QUAVTask> shortTask(QUAVTaskQueue& queue, int number) {
    auto task = std::make_shared<QUAVAsyncNSTask>(
        queue, QStringLiteral("/bin/sh"),
        QStringList{QStringLiteral("-c"), QStringLiteral("echo 50% complete")});
    task->setTitle(QStringLiteral("d1t%1 Größe [live].wav").arg(number));
    task->results()->setHasResults(false);
    return task;
}

/// Starts the verification of a list of very many files.
void verifyEntries(bench::WindowRig& rig) {
    const QString folder = rig.folder.path();
    QFile file(joinPath(folder, QStringLiteral("entry")));
    QFile list(joinPath(folder, QStringLiteral("list.md5")));
    if (!file.open(QIODevice::WriteOnly) || !list.open(QIODevice::WriteOnly)) {
        std::exit(1);
    }
    file.write(QByteArray(entryBytes, 'x'));
    file.close();
    const QString digest = FileHash::md5HashOfFileAtPath(file.fileName()).value_or(QString());
    list.write((digest.toLatin1() + " *entry\n").repeated(entryCount));
    list.close();
    ChecksumTab& tab = rig.workbench.tab<ChecksumTab>();
    tab.options().set(checksumOptions().command, ChecksumCommand::Verify);
    tab.addFiles({list.fileName()});
    tab.executeCommand();
}

/// Runs the loop until the queue is empty; whether no turn of it was too late.
bool runWatched(const char* what, QUAVTaskQueue& queue, Heartbeat& idle) {
    QEventLoop loop;
    QObject::connect(&queue, &QUAVTaskQueue::becameIdle, &loop, &QEventLoop::quit);
    QApplication::processEvents();
    Heartbeat busy;
    loop.exec();
    const std::string name(what);
    const bool mostly = bench::report((name + ", 99th percentile").c_str(), busy.percentile(0.99),
                                      idle.percentile(0.99), "idle loop", p99Bar);
    return bench::report((name + ", worst").c_str(), busy.percentile(1), idle.percentile(1),
                         "idle loop", worstBar) &&
           mostly;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    bench::WindowRig rig;
    QUAVTaskQueue& queue = rig.workbench.queue();
    rig.window.show();

    QEventLoop loop;
    Heartbeat idle;
    QTimer::singleShot(std::chrono::seconds(3), &loop, &QEventLoop::quit);
    loop.exec();

    std::vector<std::shared_ptr<QUAVTask>> tasks;
    for (int i = 0; i < rowCount; ++i) {
        tasks.push_back(shortTask(queue, i));
    }
    queue.addTasks(tasks);
    tasks.clear();
    const bool rows = runWatched("5,000 rows completing", queue, idle);
    verifyEntries(rig);
    const bool entries = runWatched("10,000 entries verified", queue, idle);
    return rows && entries ? 0 : 1;
}
