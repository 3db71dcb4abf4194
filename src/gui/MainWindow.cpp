#include "gui/MainWindow.h"

#include "gui/DroppedFiles.h"
#include "gui/FailuresButton.h"
#include "gui/OutputWindows.h"
#include "gui/Pages.h"
#include "gui/StatusPanel.h"
#include "gui/SummaryLine.h"
#include "gui/TabPage.h"
#include "gui/WarningsLine.h"
#include "workbench/TabTable.h"
#include "workbench/Workbench.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QIcon>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quav {

namespace {

constexpr QSize firstSize{860, 560};

// How long a tool that is asked to end may take for it.
constexpr std::chrono::seconds toolsPatience{2};

/// Answers whatever is being asked as if the user had cancelled.
void dismissDialogs() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        auto* dialog = qobject_cast<QDialog*>(window);
        if (dialog && dialog->isVisible()) {
            dialog->reject();
        }
    }
}

} // namespace

MainWindow::MainWindow(Workbench& workbench, StatusPanel& panel, OutputWindows& outputWindows,
                       QWidget* parent)
    : QMainWindow(parent), workbench_(workbench), panel_(panel), outputWindows_(outputWindows),
      tabs_(new QTabWidget(this)) {
    setWindowTitle(tr("Quav Workbench"));
    setAcceptDrops(true);
    addPages();
    setCentralWidget(tabs_);
    auto* summary = new SummaryLine(workbench.queue(), this);
    statusBar()->addWidget(summary, 1);
    // An older message would stand in its place.
    connect(summary, &SummaryLine::told, statusBar(), &QStatusBar::clearMessage);
    statusBar()->addPermanentWidget(new FailuresButton(workbench.queue(), outputWindows, this));
    statusBar()->addPermanentWidget(new WarningsLine(workbench.queue(), outputWindows, this));
    buildFileMenu();
    buildWindowMenu();
    resize(firstSize);
}

void MainWindow::addPages() {
    QUAVController& controller = workbench_.controller();
    for (const TabRow& row : tabTable()) {
        QWidget* page = makePage(row.label, controller.tab(row.label));
        tabs_->addTab(page, row.title());
        if (auto* worker = qobject_cast<TabPage*>(page)) {
            connect(worker, &TabPage::told, this,
                    [this](const QString& sentence) { statusBar()->showMessage(sentence); });
            connect(worker, &TabPage::warned, this,
                    [this](const QString& text) { outputWindows_.show(text, tr("Warnings")); });
        }
    }
    showSelectedPage();
    connect(&controller, &QUAVController::selectedTabChanged, this, &MainWindow::showSelectedPage);
    connect(tabs_, &QTabWidget::currentChanged, &controller, [&controller](int index) {
        controller.selectTab(tabTable()[static_cast<size_t>(index)].label);
    });
}

void MainWindow::showSelectedPage() {
    const QString& selected = workbench_.controller().selectedTabViewItem();
    const auto found = std::find_if(tabTable().begin(), tabTable().end(),
                                    [&](const TabRow& row) { return row.label == selected; });
    tabs_->setCurrentIndex(static_cast<int>(found - tabTable().begin()));
}

void MainWindow::buildFileMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&File"));
    QAction* add =
        menu->addAction(tr("&Add Files…"), QKeySequence::Open, this, &MainWindow::addFiles);
    const auto enable = [this, add](const QString& label) {
        add->setEnabled(workbench_.controller().tab(label) != nullptr);
    };
    enable(workbench_.controller().selectedTabViewItem());
    connect(&workbench_.controller(), &QUAVController::selectedTabChanged, add, enable);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &MainWindow::quit);
}

void MainWindow::buildWindowMenu() {
    QMenu* menu = menuBar()->addMenu(tr("&Window"));
    int index = 0;
    for (const TabRow& row : tabTable()) {
        QAction* action = menu->addAction(QIcon::fromTheme(QLatin1String(row.icon)), row.title(),
                                          tabs_, [this, index] { tabs_->setCurrentIndex(index); });
        if (index < 9) {
            action->setShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + index)));
        }
        ++index;
    }
    menu->addSeparator();
    menu->addAction(tr("&Status Panel"), QKeySequence(Qt::CTRL | Qt::Key_J), &panel_,
                    &StatusPanel::bringToFront);
}

void MainWindow::addFiles() {
    QUAVController& controller = workbench_.controller();
    if (BaseTab* tab = controller.tab(controller.selectedTabViewItem())) {
        tab->addButtonClick();
    }
}

void MainWindow::bringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::Paint && !painted_) {
        painted_ = true;
        Q_EMIT firstPainted();
    }
    return QMainWindow::event(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    acceptDraggedFiles(*event);
}

void MainWindow::dropEvent(QDropEvent* event) {
    takeDroppedFiles(*event, *this,
                     [this](const QStringList& files) { workbench_.controller().addFiles(files); });
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (finishing_) {
        return;
    }
    event->ignore();
    if (workbench_.controller().windowShouldClose()) {
        quit();
    }
}

void MainWindow::quit() {
    if (!finishing_ && workbench_.controller().applicationShouldTerminate()) {
        finish();
    }
}

void MainWindow::endAtOnce() {
    QUAVTaskQueue& queue = workbench_.queue();
    if (std::exchange(endingAtOnce_, true)) {
        queue.killTools();
        return;
    }
    dismissDialogs();
    finish();
    queue.terminateTools();
    QTimer::singleShot(toolsPatience, &queue, &QUAVTaskQueue::killTools);
}

void MainWindow::finish() {
    if (finishing_) {
        return;
    }
    finishing_ = true;
    QUAVTaskQueue& queue = workbench_.queue();
    const bool busy = queue.taskCount() > 0;
    Q_EMIT finishing();
    hide();
    if (busy) {
        panel_.bringToFront();
        connect(&queue, &QUAVTaskQueue::becameIdle, this, &MainWindow::finished);
    }
    workbench_.controller().applicationWillTerminate();
    if (!busy) {
        Q_EMIT finished();
    }
}

} // namespace quav
