#pragma once

#include <QMenu>
#include <QTimer>
#include <QWidget>

class QListView;
class QPushButton;

namespace quav {

class OutputWindows;
class QUAVTaskQueue;

/// The window with the rows of the tasks.
class StatusPanel : public QWidget {
    Q_OBJECT

public:
    StatusPanel(QUAVTaskQueue& queue, OutputWindows& outputWindows, QWidget* parent = nullptr);

    void bringToFront();

private:
    void buildList();
    QWidget* buildFoot();
    void listen();
    void addListAction(const QList<QKeySequence>& keys, void (StatusPanel::*slot)());

    void panelShown();
    void scheduleRefresh();
    void refresh();
    QString titleText() const;
    int failedRows() const;

    /// Cancels the task, or ends its tool when that is stalled.
    void stopRow(int row);
    void stopCurrentRow();
    void showWhatTheToolSaid();
    void showContextMenu(const QPoint& where);

    QUAVTaskQueue& queue_;
    OutputWindows& outputWindows_;
    QListView* list_;
    QPushButton* clearErrors_;
    QPushButton* cancelAll_;
    QMenu contextMenu_;
    QTimer frontTimer_;
    QTimer refreshTimer_;
};

} // namespace quav
