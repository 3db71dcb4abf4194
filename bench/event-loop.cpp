// How long the event loop is kept from turning while 5,000 queued rows complete, each a real child
// process, while a list of 10,000 files is verified, and while a tree of 20,000 files is dropped
// and their facts are read, with the window and the status panel on the screen; against an idle
// event loop. Also what the list holds of each of these files in memory.

#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"
#include "checksums/FileHash.h"
#include "codecs/EncodeTab.h"
#include "engine/QUAVAsyncNSTask.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"
#include "support/Figures.h"
#include "support/WindowRig.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

using namespace quav;

namespace {

constexpr int rowCount = 5000;
constexpr int entryCount = 10000;
constexpr int entryBytes = 200000;
constexpr int treeFiles = 20000;
constexpr double bytesPerFileBar = 1500;
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

    void stop() { timer_.stop(); }

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
    QEventLoop loop;
    QObject::connect(&tab, &BaseTab::filesRead, &loop, &QEventLoop::quit);
    tab.addFiles({list.fileName()});
    loop.exec();
    tab.executeCommand();
}

/// Whether no turn of the loop was too late.
bool reportTurns(const std::string& name, Heartbeat& busy, Heartbeat& idle) {
    const bool mostly = bench::report((name + ", 99th percentile").c_str(), busy.percentile(0.99),
                                      idle.percentile(0.99), "idle loop", p99Bar);
    return bench::report((name + ", worst").c_str(), busy.percentile(1), idle.percentile(1),
                         "idle loop", worstBar) &&
           mostly;
}

/// Runs the loop until the queue is empty; whether no turn of it was too late.
bool runWatched(const char* what, QUAVTaskQueue& queue, Heartbeat& idle) {
    QEventLoop loop;
    QObject::connect(&queue, &QUAVTaskQueue::becameIdle, &loop, &QEventLoop::quit);
    QApplication::processEvents();
    Heartbeat busy;
    loop.exec();
    return reportTurns(what, busy, idle);
}

/// FLAC files of nothing but their STREAMINFO, a second of silence long as it tells, in folders of
/// a hundred.
void makeTree(const QString& root) {
    QByteArray flac("fLaC\x80\0\0\x22\x10\0\x10\0\0\0\0\0\0\0\x0a\xc4\x42\xf0\0\0\xac\x44", 26);
    flac.append(16, '\0');
    for (int i = 0; i < treeFiles; ++i) {
        const QString folder = QStringLiteral("%1/Show %2").arg(root).arg(i / 100);
        if (i % 100 == 0) {
            QDir().mkpath(folder);
        }
        QFile file(QStringLiteral("%1/d%2t%3 Größe & [live].flac").arg(folder).arg(i % 3).arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(flac) != flac.size()) {
            std::exit(1);
        }
    }
}

/// Drops the tree and runs the loop until the facts of all files are read; then sorts by each
/// column.
bool runDrop(bench::WindowRig& rig, Heartbeat& idle) {
    EncodeTab& tab = rig.workbench.tab<EncodeTab>();
    rig.workbench.controller().selectTab(tab.label());
    const QString tree = joinPath(rig.folder.path(), QStringLiteral("tree"));
    makeTree(tree);
    QEventLoop loop;
    QObject::connect(&tab.facts(), &FactsReader::finished, &loop, [&] {
        if (tab.files().rowCount() == treeFiles) {
            loop.quit();
        }
    });
    QApplication::processEvents();
    const auto before = mallinfo2().uordblks;
    Heartbeat dropping;
    tab.addFiles({tree});
    loop.exec();
    QApplication::processEvents();
    bool good = reportTurns("a tree of 20,000 files dropped", dropping, idle);
    const auto each = static_cast<double>(mallinfo2().uordblks - before) / treeFiles;
    const bool isSmall = each <= bytesPerFileBar;
    std::printf("%-44s %.0f bytes   bar %.0f bytes   %s\n", "memory for each of them", each,
                bytesPerFileBar, isSmall ? "met" : "MISSED");
    good &= isSmall && tab.facts().length() == std::chrono::seconds(treeFiles);
    for (int column = 0; column < FileList::ColumnCount; ++column) {
        const double sorted = bench::millisecondsOf([&] {
            tab.files().sort(column, Qt::DescendingOrder);
            rig.window.repaint();
        });
        const std::string name =
            "20,000 rows sorted by " + tab.files()
                                           .headerData(column, Qt::Horizontal, Qt::DisplayRole)
                                           .toString()
                                           .toStdString();
        good &= bench::report(name.c_str(), sorted, idle.percentile(1), "idle loop", worstBar);
    }
    return good;
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
    idle.stop();

    std::vector<std::shared_ptr<QUAVTask>> tasks;
    for (int i = 0; i < rowCount; ++i) {
        tasks.push_back(shortTask(queue, i));
    }
    queue.addTasks(tasks);
    tasks.clear();
    const bool rows = runWatched("5,000 rows completing", queue, idle);
    verifyEntries(rig);
    const bool entries = runWatched("10,000 entries verified", queue, idle);
    const bool drop = runDrop(rig, idle);
    return rows && entries && drop ? 0 : 1;
}
