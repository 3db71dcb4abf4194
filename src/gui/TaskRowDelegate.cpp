#include "gui/TaskRowDelegate.h"

#include "engine/TaskRow.h"
#include "engine/TaskRowsModel.h"
#include "gui/Icons.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace quav {

namespace {

constexpr int margin = 6;
constexpr int spacing = 3;
constexpr int barHeight = 15;
constexpr int stopSize = 15;
constexpr int waitIconSize = 12;
constexpr int leastMainHeight = 15;
constexpr int leastStatusHeight = 18;
constexpr int leastWidth = 200;
constexpr double mainPoints = 12;
constexpr double statusPoints = 9;
constexpr int barSteps = 1000;
constexpr double stepsPerPercent = barSteps / 100.0;

// Dark green and plain red cannot be read on a dark ground.
const QColor greenOnLight(0, 128, 0);
const QColor greenOnDark(120, 210, 120);
const QColor redOnLight(200, 0, 0);
const QColor redOnDark(255, 120, 110);
const QColor stopDisc(128, 128, 128);
const QColor stopDiscHovered(200, 60, 50);
constexpr int darkBelow = 128;

// How much of the text's colour is in the empty part of a bar.
constexpr double grooveShare = 0.12;
// And in the full part of one that nobody wants any more.
constexpr double unwantedShare = 0.4;

QFont mainFont(const QFont& base) {
    QFont font(base);
    font.setPointSizeF(mainPoints);
    font.setBold(true);
    return font;
}

QFont statusFont(const QFont& base) {
    QFont font(base);
    font.setPointSizeF(statusPoints);
    return font;
}

struct RowParts {
    QRect bar;
    QRect mainLine;
    QRect statusLine;
    QRect stopButton;
};

int mainHeight(const QFont& font) {
    return std::max(leastMainHeight, QFontMetrics(mainFont(font)).height());
}

int statusHeight(const QFont& font) {
    return std::max(leastStatusHeight, QFontMetrics(statusFont(font)).height());
}

RowParts partsOf(const QStyleOptionViewItem& option) {
    const QRect row = option.rect.adjusted(margin, margin, -margin, -margin);
    const int width = row.width() - stopSize - margin;
    const int mainTop = row.top() + barHeight + spacing;
    const int statusTop = mainTop + mainHeight(option.font);
    const auto place = [&](const QRect& rect) {
        return QStyle::visualRect(option.direction, option.rect, rect);
    };
    return {place({row.left(), row.top(), width, barHeight}),
            place({row.left(), mainTop, width, mainHeight(option.font)}),
            place({row.left(), statusTop, width, statusHeight(option.font)}),
            place({row.right() + 1 - stopSize, row.top(), stopSize, stopSize})};
}

/// A small icon at the beginning of a line, and what it leaves of the line.
std::pair<QRect, QRect> besideIcon(const QRect& line, Qt::LayoutDirection direction) {
    const int top = line.top() + (line.height() - waitIconSize) / 2;
    const QRect icon(line.left(), top, waitIconSize, waitIconSize);
    return {QStyle::visualRect(direction, line, icon),
            QStyle::visualRect(direction, line, line.adjusted(waitIconSize + spacing, 0, 0, 0))};
}

QColor mainLineColour(TaskRow::Colour colour, const QPalette& palette, bool selected) {
    if (selected) {
        return palette.color(QPalette::HighlightedText);
    }
    const bool dark = palette.color(QPalette::Base).lightness() < darkBelow;
    switch (colour) {
    case TaskRow::Colour::Red:
        return dark ? redOnDark : redOnLight;
    case TaskRow::Colour::DarkGreen:
        return dark ? greenOnDark : greenOnLight;
    case TaskRow::Colour::Normal:
        break;
    }
    return palette.color(QPalette::Text);
}

/// Bars stand on a list, whose ground is also that of an empty bar: without a colour of its own it
/// would be lost on a dark one.
QPalette barPalette(QPalette palette, bool wanted) {
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const auto mixed = [&](double share) {
        const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
        return QColor(mix(base.red(), text.red()), mix(base.green(), text.green()),
                      mix(base.blue(), text.blue()));
    };
    palette.setColor(QPalette::Base, mixed(grooveShare));
    if (!wanted) {
        palette.setColor(QPalette::Highlight, mixed(unwantedShare));
    }
    return palette;
}

const QStyle& styleOf(const QStyleOptionViewItem& option) {
    return option.widget ? *option.widget->style() : *QApplication::style();
}

const QAbstractItemView* viewOf(const QStyleOptionViewItem& option) {
    return qobject_cast<const QAbstractItemView*>(option.widget);
}

bool isStalled(const QModelIndex& index) {
    return index.data(TaskRowsModel::StalledRole).toBool();
}

int cancelState(const QModelIndex& index) {
    return index.data(TaskRowsModel::CancelStateRole).toInt();
}

QString stopTip(const QModelIndex& index) {
    if (isStalled(index)) {
        return TaskRowDelegate::tr("End the tool");
    }
    return cancelState(index) == TaskRowsModel::Canceling
               ? TaskRowDelegate::tr("Canceled as soon as what runs has ended")
               : TaskRowDelegate::tr("Cancel");
}

bool hasStopButton(const QModelIndex& index) {
    return index.data(TaskRowsModel::CancelButtonVisibleRole).toBool();
}

} // namespace

QRect TaskRowDelegate::stopButtonRect(const QStyleOptionViewItem& option) {
    return partsOf(option).stopButton;
}

QSize TaskRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& /*index*/) const {
    return {leastWidth,
            2 * margin + barHeight + spacing + mainHeight(option.font) + statusHeight(option.font)};
}

void TaskRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    styleOf(option).drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
    if (index.data(TaskRowsModel::BarVisibleRole).toBool()) {
        paintBar(*painter, option, index);
    }
    paintTexts(*painter, option, index);
    if (hasStopButton(index)) {
        paintStopButton(*painter, option, index);
    }
}

void TaskRowDelegate::paintBar(QPainter& painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    QStyleOptionProgressBar bar;
    bar.rect = partsOf(option).bar;
    bar.direction = option.direction;
    bar.palette = barPalette(option.palette, cancelState(index) == TaskRowsModel::NotCanceled);
    bar.fontMetrics = option.fontMetrics;
    bar.state =
        QStyle::State_Enabled | QStyle::State_Horizontal | (option.state & QStyle::State_Active);
    const bool moving = !index.data(TaskRowsModel::BarDeterminateRole).toBool() &&
                        index.data(TaskRowsModel::BarAnimatedRole).toBool() &&
                        cancelState(index) != TaskRowsModel::Canceled;
    if (moving && viewOf(option)) {
        // The style repaints this object to move the bar. A bar without a range is a busy one.
        bar.styleObject = viewOf(option)->viewport();
    } else {
        bar.maximum = barSteps;
        bar.progress = qRound(index.data(TaskRowsModel::BarValueRole).toDouble() * stepsPerPercent);
    }
    styleOf(option).drawControl(QStyle::CE_ProgressBar, &bar, &painter, nullptr);
}

void TaskRowDelegate::paintTexts(QPainter& painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    const RowParts parts = partsOf(option);
    const bool selected = (option.state & QStyle::State_Selected) != 0;
    const auto flags = static_cast<int>(
        QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter));
    const auto draw = [&](const QString& text, const QRect& place, const QFont& font,
                          Qt::TextElideMode elide) {
        painter.setFont(font);
        painter.drawText(place, flags | Qt::TextSingleLine,
                         QFontMetrics(font).elidedText(text, elide, place.width()));
    };
    painter.save();
    const auto colour =
        static_cast<TaskRow::Colour>(index.data(TaskRowsModel::MainLineColourRole).toInt());
    painter.setPen(mainLineColour(colour, option.palette, selected));
    QRect mainLine = parts.mainLine;
    if (cancelState(index) == TaskRowsModel::Canceling) {
        const auto [icon, rest] = besideIcon(mainLine, option.direction);
        paintWaitIcon(painter, icon, painter.pen().color());
        mainLine = rest;
    }
    draw(index.data(Qt::DisplayRole).toString(), mainLine, mainFont(option.font), Qt::ElideMiddle);
    painter.setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    draw(index.data(TaskRowsModel::StatusLineRole).toString(), parts.statusLine,
         statusFont(option.font), Qt::ElideRight);
    painter.restore();
}

void TaskRowDelegate::paintStopButton(QPainter& painter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
    const QRect place = stopButtonRect(option);
    const QAbstractItemView* view = viewOf(option);
    const bool hovered = view && (option.state & QStyle::State_MouseOver) != 0 &&
                         place.contains(view->viewport()->mapFromGlobal(QCursor::pos()));
    paintStopIcon(painter, place, hovered || isStalled(index) ? stopDiscHovered : stopDisc,
                  Qt::white);
}

bool TaskRowDelegate::editorEvent(QEvent* event, QAbstractItemModel* /*model*/,
                                  const QStyleOptionViewItem& option, const QModelIndex& index) {
    const bool presses = event->type() == QEvent::MouseButtonPress;
    const bool releases = event->type() == QEvent::MouseButtonRelease;
    if (!presses && !releases) {
        return false;
    }
    const auto* mouse = static_cast<const QMouseEvent*>(event);
    const bool onButton = mouse->button() == Qt::LeftButton && hasStopButton(index) &&
                          stopButtonRect(option).contains(mouse->position().toPoint());
    if (presses) {
        pressedRow_ = onButton ? std::optional(index.row()) : std::nullopt;
        return onButton;
    }
    const bool clicked = onButton && pressedRow_ == index.row();
    pressedRow_.reset();
    if (clicked) {
        Q_EMIT stopClicked(index.row());
    }
    return onButton;
}

bool TaskRowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() == QEvent::ToolTip && hasStopButton(index) &&
        stopButtonRect(option).contains(event->pos())) {
        QToolTip::showText(event->globalPos(), stopTip(index), view);
        return true;
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
}

} // namespace quav
