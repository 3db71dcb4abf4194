#include "gui/FileListView.h"

#include "app/BaseTab.h"
#include "gui/DroppedFiles.h"
#include "gui/Icons.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <vector>

namespace quav {

namespace {

constexpr int leastColumnWidth = 211;
constexpr double columnWidthPerName = 1.1;

// The widest name is among the longest ones; drawing thousands only to measure them takes long.
constexpr size_t measuredNames = 64;

constexpr int emptyIconSize = 64;
constexpr int emptySpacing = 12;
constexpr int emptyMargin = 16;
constexpr int dropFrameWidth = 2;
constexpr int rowSpacing = 4;

/// Rows with room for the dots of capital umlauts.
class FileRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize usual = QStyledItemDelegate::sizeHint(option, index);
        return usual.expandedTo({0, option.fontMetrics.height() + rowSpacing});
    }
};

/// A translucent colour as it looks on a ground, for shapes that overlap.
QColor opaque(const QColor& colour, const QBrush& ground) {
    const auto mix = [&](int upper, int lower) {
        return (upper * colour.alpha() + lower * (255 - colour.alpha())) / 255;
    };
    const QColor below = ground.color();
    return {mix(colour.red(), below.red()), mix(colour.green(), below.green()),
            mix(colour.blue(), below.blue())};
}

std::vector<QString> longestNames(const QAbstractItemModel& model) {
    std::vector<QString> names;
    names.reserve(static_cast<size_t>(model.rowCount()));
    for (int row = 0; row < model.rowCount(); ++row) {
        names.push_back(model.index(row, 0).data().toString());
    }
    if (names.size() > measuredNames) {
        std::nth_element(names.begin(), names.begin() + measuredNames, names.end(),
                         [](const QString& a, const QString& b) { return a.size() > b.size(); });
        names.resize(measuredNames);
    }
    return names;
}

} // namespace

FileListView::FileListView(BaseTab& tab, QWidget* parent) : QTreeView(parent), tab_(tab) {
    setModel(&tab.files());
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setItemDelegate(new FileRowDelegate(this));
    setSelectionMode(ExtendedSelection);
    setTextElideMode(Qt::ElideNone);
    setAcceptDrops(true);
    setAccessibleName(tr("Files"));
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(false);
    createContextMenu();

    fitTimer_.setSingleShot(true);
    fitTimer_.setInterval(0);
    connect(&fitTimer_, &QTimer::timeout, this, &FileListView::fitColumn);
    connect(model(), &QAbstractItemModel::modelReset, this, [this] {
        fitTimer_.start();
        Q_EMIT selectedRowsChanged();
    });
    fitColumn();
}

void FileListView::fitColumn() {
    const QFontMetrics metrics(font());
    int widest = 0;
    for (const QString& name : longestNames(*model())) {
        widest = std::max(widest, metrics.horizontalAdvance(name));
    }
    const int width = std::max(leastColumnWidth, qCeil(columnWidthPerName * widest));
    header()->setMinimumSectionSize(width);
    // The column also fills the view, so that a selected row is marked all along.
    header()->setSectionResizeMode(QHeaderView::Stretch);
}

bool FileListView::hasSelectedRows() const {
    return selectionModel()->hasSelection();
}

void FileListView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    Q_EMIT selectedRowsChanged();
}

void FileListView::deleteSelectedRows() {
    QSet<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex& index : selected) {
        rows.insert(index.row());
    }
    if (rows.isEmpty()) {
        return;
    }
    const int first = *std::min_element(rows.begin(), rows.end());
    tab_.deleteSelectedRows(rows);
    // Nothing is selected afterwards, but the keyboard stays where it was.
    const int row = std::min(first, model()->rowCount() - 1);
    selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::NoUpdate);
}

void FileListView::createContextMenu() {
    fileListContextMenu_.addAction(tr("Delete selected file(s)"), this,
                                   &FileListView::deleteSelectedRows);
    extensionsMenu_ = fileListContextMenu_.addMenu(tr("Delete files with extension:"));
    connect(&fileListContextMenu_, &QMenu::aboutToShow, this, &FileListView::menuWillOpen);
}

void FileListView::menuWillOpen() {
    extensionsMenu_->clear();
    const QStringList extensions = tab_.files().extensions();
    for (const QString& extension : extensions) {
        QString text = extension;
        text.replace(u'&', QStringLiteral("&&"));
        extensionsMenu_->addAction(text.isEmpty() ? tr("(none)") : text, this,
                                   [this, extension] { tab_.filterGivenExtension(extension); });
    }
}

void FileListView::contextMenuEvent(QContextMenuEvent* event) {
    fileListContextMenu_.popup(event->globalPos());
}

void FileListView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Delete)) {
        deleteSelectedRows();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void FileListView::setDraggedOver(bool draggedOver) {
    draggedOver_ = draggedOver;
    viewport()->update();
}

void FileListView::dragEnterEvent(QDragEnterEvent* event) {
    if (acceptDraggedFiles(*event)) {
        setDraggedOver(true);
    }
}

void FileListView::dragMoveEvent(QDragMoveEvent* event) {
    acceptAsCopy(*event);
}

void FileListView::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    setDraggedOver(false);
}

void FileListView::dropEvent(QDropEvent* event) {
    setDraggedOver(false);
    takeDroppedFiles(*event, *this, [this](const QStringList& files) { tab_.addFiles(files); });
}

void FileListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model()->rowCount() == 0) {
        paintEmptyState();
    }
    if (draggedOver_) {
        paintDropFrame();
    }
}

void FileListView::paintEmptyState() {
    QPainter painter(viewport());
    const QColor colour = opaque(palette().color(QPalette::PlaceholderText), palette().base());
    QRect place = viewport()->rect().adjusted(emptyMargin, 0, -emptyMargin, 0);
    const QString text = tr("Drop files or folders here");
    const int textFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    const int textHeight = fontMetrics().boundingRect(place, textFlags, text).height();
    place.setTop(place.center().y() - (emptyIconSize + emptySpacing + textHeight) / 2);
    const QRect icon(place.center().x() - emptyIconSize / 2, place.top(), emptyIconSize,
                     emptyIconSize);
    paintDropIcon(painter, icon, colour);
    place.translate(0, emptyIconSize + emptySpacing);
    painter.setPen(colour);
    painter.drawText(place, textFlags, text);
}

void FileListView::paintDropFrame() {
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), dropFrameWidth));
    painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
}

} // namespace quav
