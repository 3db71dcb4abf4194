#pragma once

#include <QMainWindow>

class QTabWidget;

namespace quav {

class BaseTab;
class OutputWindows;
class StatusPanel;
class Workbench;

/// The window with the tabs. Closing it ends the program, after the questions that this asks for:
/// the window goes, the status panel stays until the tools that run have ended.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow(Workbench& workbench, StatusPanel& panel, OutputWindows& outputWindows,
               QWidget* parent = nullptr);

    void bringToFront();

    /// Ends the program unless tasks are in the queue and the user wants to keep them.
    void quit();

    /// Ends the program without a question: what waits is dropped and the tools that run are told
    /// to end; those that do not, and all of them when it is said once more, are killed. For when
    /// the session ends.
    void endAtOnce();

Q_SIGNALS:
    /// The window stands on the screen.
    void firstPainted();
    /// The user has quit; tools may still run.
    void finishing();
    /// Nothing runs any more and the program may go. May come while the queue is at work: to be
    /// taken by way of the event loop.
    void finished();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void addPages();
    void showSelectedPage();
    void buildFileMenu();
    void buildWindowMenu();
    void addFiles();
    void finish();

    Workbench& workbench_;
    StatusPanel& panel_;
    OutputWindows& outputWindows_;
    QTabWidget* tabs_;
    bool painted_ = false;
    bool finishing_ = false;
    bool endingAtOnce_ = false;
};

} // namespace quav
