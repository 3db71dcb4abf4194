#include "gui/Icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <array>

namespace quav {

namespace {

/// Scales the painter so that a square drawing of this size fills the place; undone at the end.
class Scaled {
public:
    Scaled(QPainter& painter, const QRectF& place, double size) : painter_(painter) {
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.translate(place.topLeft());
        painter_.scale(place.width() / size, place.height() / size);
    }
    ~Scaled() { painter_.restore(); }
    Scaled(const Scaled&) = delete;
    Scaled& operator=(const Scaled&) = delete;

private:
    QPainter& painter_;
};

} // namespace

void paintDropIcon(QPainter& painter, const QRectF& place, const QColor& colour) {
    const Scaled scaled(painter, place, 64);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);

    QPainterPath tray({6, 40});
    tray.lineTo(6, 52);
    tray.quadTo(6, 57, 11, 57);
    tray.lineTo(53, 57);
    tray.quadTo(58, 57, 58, 52);
    tray.lineTo(58, 40);
    painter.drawPath(tray);
    painter.drawLine(QPointF(32, 30), QPointF(32, 45));
    painter.drawPolyline(std::array{QPointF(24, 38), QPointF(32, 46), QPointF(40, 38)}.data(), 3);
    painter.drawPolyline(
        std::array{QPointF(27, 20), QPointF(27, 7), QPointF(41, 4), QPointF(41, 16)}.data(), 4);

    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(23, 20.5), 5, 4);
    painter.drawEllipse(QPointF(37, 16.5), 5, 4);
}

void paintWaitIcon(QPainter& painter, const QRectF& place, const QColor& colour) {
    const Scaled scaled(painter, place, 12);
    painter.setPen(QPen(colour, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(QPointF(2, 1), QPointF(10, 1));
    painter.drawLine(QPointF(2, 11), QPointF(10, 11));
    QPainterPath glass({3, 1});
    glass.quadTo(3, 4, 6, 6);
    glass.quadTo(9, 4, 9, 1);
    glass.moveTo(3, 11);
    glass.quadTo(3, 8, 6, 6);
    glass.quadTo(9, 8, 9, 11);
    painter.drawPath(glass);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(std::array{QPointF(4, 11), QPointF(6, 8.5), QPointF(8, 11)}.data(), 3);
}

void paintStopIcon(QPainter& painter, const QRectF& place, const QColor& disc,
                   const QColor& cross) {
    const Scaled scaled(painter, place, 15);
    painter.setPen(Qt::NoPen);
    painter.setBrush(disc);
    painter.drawEllipse(QPointF(7.5, 7.5), 7, 7);
    painter.setPen(QPen(cross, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(5, 5), QPointF(10, 10));
    painter.drawLine(QPointF(10, 5), QPointF(5, 10));
}

} // namespace quav
