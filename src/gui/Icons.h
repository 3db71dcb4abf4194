#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// Small pictures, drawn so that they take any size and the colours of any theme.
namespace quav {

/// A tray into which a note falls.
void paintDropIcon(QPainter& painter, const QRectF& place, const QColor& colour);

/// An hourglass.
void paintWaitIcon(QPainter& painter, const QRectF& place, const QColor& colour);

/// A filled disc with a cross cut out of it in the second colour.
void paintStopIcon(QPainter& painter, const QRectF& place, const QColor& disc, const QColor& cross);

} // namespace quav
