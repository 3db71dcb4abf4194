#pragma once

#include <QCoreApplication>
#include <QString>

namespace quav {

/// What the row of a task shows: its four elements as values. Whoever draws the list draws these.
struct TaskRow {
    enum class Colour { Normal, Red, DarkGreen };

    QString mainLine; ///< bold; the task's title, or "Canceled"
    Colour mainLineColour = Colour::Normal;
    QString statusLine = QCoreApplication::translate("TaskRow", "Waiting...");
    double barValue = 0; ///< 0 to 100
    bool barVisible = true;
    bool barDeterminate = true;
    bool barAnimated = true;
    bool cancelButtonVisible = false;
    bool stalled = false; ///< a tool does nothing any more and can be ended
};

} // namespace quav
