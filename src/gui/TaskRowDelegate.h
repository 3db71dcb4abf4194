#pragma once

#include <QRect>
#include <QStyledItemDelegate>

#include <optional>

namespace quav {

/// Draws the row of a task: its bar, the bold main line, the small status line, and the stop
/// button, which it also lets be pressed.
class TaskRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// Where the stop button of a row stands.
    static QRect stopButtonRect(const QStyleOptionViewItem& option);

Q_SIGNALS:
    /// The stop button of a row was clicked.
    void stopClicked(int row);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    void paintBar(QPainter& painter, const QStyleOptionViewItem& option,
                  const QModelIndex& index) const;
    void paintTexts(QPainter& painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;
    void paintStopButton(QPainter& painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const;

    std::optional<int> pressedRow_; ///< where the stop button is held down
};

} // namespace quav
