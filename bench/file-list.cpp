// 100,000 files already found, added to a tab and visible, against a plain list widget; and a tree
// of 20,000 files added from disk, against find and sort. The order is checked as well.

#include "codecs/EncodeTab.h"
#include "platform/NaturalOrder.h"
#include "support/Figures.h"
#include "support/WindowRig.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QListWidget>
#include <QProcess>

#include <algorithm>
#include <random>

using namespace quav;

namespace {

constexpr int manyFiles = 100000;
constexpr int treeFiles = 20000;
constexpr double manyBar = 500;
constexpr double treeBar = 1500;

/// Empty files with names as people have them, a hundred to a folder, in no order.
QStringList makeFiles(const QString& root, int count) {
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        const QString folder = QStringLiteral("%1/Show %2").arg(root).arg(i / 100);
        if (i % 100 == 0) {
            QDir().mkpath(folder);
        }
        paths << QStringLiteral("%1/d%2t%3 Größe & [live].wav").arg(folder).arg(i % 3).arg(i % 100);
        QFile file(paths.last());
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("cannot make the files");
        }
    }
    std::shuffle(paths.begin(), paths.end(), std::minstd_rand(1));
    return paths;
}

void paintNow(QWidget& window) {
    window.repaint();
    QApplication::processEvents();
}

/// Adds them as a drop does, and lets the loop turn until they are in the list and on the screen.
void addAndPaint(BaseTab& tab, const QStringList& paths, QWidget& window) {
    QEventLoop loop;
    QObject::connect(&tab, &BaseTab::filesRead, &loop, &QEventLoop::quit);
    tab.addFiles(paths);
    loop.exec();
    paintNow(window);
}

bool isOrderedWithoutDuplicates(const QStringList& paths) {
    const NaturalOrder order;
    return std::adjacent_find(paths.begin(), paths.end(), [&](const QString& a, const QString& b) {
               return order.sortKey(a) > order.sortKey(b) || a == b;
           }) == paths.end();
}

double plainListWidget(const QStringList& paths) {
    QListWidget list;
    list.show();
    QApplication::processEvents();
    return bench::millisecondsOf([&] {
        list.addItems(paths);
        list.sortItems();
        paintNow(list);
    });
}

double findAndSort(const QString& root) {
    return bench::millisecondsOf([&] {
        QProcess shell;
        shell.start(QStringLiteral("sh"),
                    {QStringLiteral("-c"), QStringLiteral("find \"$0\" -type f | sort -V"), root});
        shell.waitForFinished(-1);
    });
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    bench::WindowRig rig;
    EncodeTab& tab = rig.workbench.tab<EncodeTab>();
    rig.workbench.controller().selectTab(tab.label());
    rig.window.show();
    paintNow(rig.window);

    const QStringList found = makeFiles(rig.folder.filePath(QStringLiteral("many")), manyFiles);
    const double list = plainListWidget(found);
    const double added = bench::millisecondsOf([&] { addAndPaint(tab, found, rig.window); });
    bool good = bench::report("100,000 found files added and visible", added, list,
                              "plain list widget", manyBar);
    good &= tab.files().rowCount() == manyFiles && isOrderedWithoutDuplicates(tab.fileNames());
    tab.clearFiles();

    const QString tree = rig.folder.filePath(QStringLiteral("tree"));
    makeFiles(tree, treeFiles);
    const double shell = findAndSort(tree);
    const double walked = bench::millisecondsOf([&] { addAndPaint(tab, {tree}, rig.window); });
    good &=
        bench::report("a tree of 20,000 files from disk", walked, shell, "find | sort -V", treeBar);
    addAndPaint(tab, {tree}, rig.window);
    good &= tab.files().rowCount() == treeFiles && isOrderedWithoutDuplicates(tab.fileNames());
    std::printf("natural order without duplicates: %s\n", good ? "yes" : "NO, or a bar was missed");
    return good ? 0 : 1;
}
