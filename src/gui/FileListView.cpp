#include "gui/FileListView.h"

#include "app/BaseTab.h"
#include "app/FileList.h"
#include "gui/DroppedFiles.h"
#include "gui/Icons.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace quav {

namespace {

constexpr int leastColumnWidth = 211;
constexpr double columnWidthPerName = 1.1;

// Folders may be longer; they are elided.
constexpr int mostFolderCharacters = 24;

// Wide enough for what columns usually show.
constexpr const char* lengthSample = "88:88:88";
constexpr const char* formatSample = "24/176.4";
constexpr const char* sizeSample = "888.88 MB";

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

int widest(const QFontMetrics& metrics, const QStringList& texts) {
    int width = 0;
    for (const QString& text : texts) {
        width = std::max(width, metrics.horizontalAdvance(text));
    }
    return width;
}

} // namespace

FileListView::FileListView(BaseTab& tab, QWidget* parent) : QTreeView(parent), tab_(tab) {
    setModel(&tab.files());
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setItemDelegate(new FileRowDelegate(this));
    setSelectionMode(ExtendedSelection);
    setTextElideMode(Qt::ElideRight);
    setAcceptDrops(true);
    setAccessibleName(tr("Files"));
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    createContextMenu();

    fitTimer_.setSingleShot(true);
    fitTimer_.setInterval(0);
    connect(&fitTimer_, &QTimer::timeout, this, &FileListView::fitColumns);
    connect(model(), &QAbstractItemModel::modelReset, this, [this] {
        fitTimer_.start();
        Q_EMIT selectedRowsChanged();
    });
    fitColumns();
}

void FileListView::fitColumns() {
    const FileList& files = tab_.files();
    setHeaderHidden(files.rowCount() == 0);
    const QFontMetrics metrics(font());
    const int names = widest(metrics, files.longestTexts(FileList::Name));
    nameWidth_ = std::max(leastColumnWidth, qCeil(columnWidthPerName * names));
    const int margin = metrics.averageCharWidth() * 2;
    const auto fit = [&](FileList::Column column, int text) {
        header()->resizeSection(column, std::max(text + margin, header()->sectionSizeHint(column)));
    };
    setColumnHidden(FileList::Folder, !files.hasFolders());
    if (files.hasFolders()) {
        fit(FileList::Folder, std::min(widest(metrics, files.longestTexts(FileList::Folder)),
                                       metrics.averageCharWidth() * mostFolderCharacters));
    }
    fit(FileList::Length, metrics.horizontalAdvance(QLatin1StringView(lengthSample)));
    fit(FileList::Format, metrics.horizontalAdvance(QLatin1StringView(formatSample)));
    fit(FileList::Size, metrics.horizontalAdvance(QLatin1StringView(sizeSample)));
    stretchNames();
}

/// The names also get the room that the other columns leave.
void FileListView::stretchNames() {
    int others = 0;
    for (int column = FileList::Name + 1; column < FileList::ColumnCount; ++column) {
        others += header()->sectionSize(column); // 0 of a hidden one
    }
    header()->resizeSection(FileList::Name, std::max(nameWidth_, viewport()->width() - others));
}

void FileListView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    stretchNames();
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
    const QItemSelection selection = selectionModel()->selection();
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.insert(row);
        }
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
