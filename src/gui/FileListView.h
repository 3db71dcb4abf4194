#pragma once

#include <QMenu>
#include <QTimer>
#include <QTreeView>

namespace quav {

class BaseTab;

/// The list of a tab's files: takes drops, removes what is selected, and says what to do while it
/// is empty.
class FileListView : public QTreeView {
    Q_OBJECT

public:
    explicit FileListView(BaseTab& tab, QWidget* parent = nullptr);

    void deleteSelectedRows();
    bool hasSelectedRows() const;

    QMenu& contextMenu() { return fileListContextMenu_; }

Q_SIGNALS:
    void selectedRowsChanged();

protected:
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void createContextMenu();
    void menuWillOpen();
    void fitColumns();
    void stretchNames();
    void setDraggedOver(bool draggedOver);
    void paintEmptyState();
    void paintDropFrame();

    BaseTab& tab_;
    QMenu fileListContextMenu_;
    QMenu* extensionsMenu_ = nullptr;
    QTimer fitTimer_;
    int nameWidth_ = 0; ///< that the names need
    bool draggedOver_ = false;
};

} // namespace quav
