#pragma once

#include <QStringList>

#include <functional>

class QDragEnterEvent;
class QDropEvent;
class QObject;

namespace quav {

/// Takes part in a drag that may bring files, to copy from it; false for any other.
bool acceptDraggedFiles(QDragEnterEvent& event);

/// Goes on with a drag, or takes its drop.
void acceptAsCopy(QDropEvent& event);

/// Takes the drop and hands over its local files and folders as soon as the event loop turns,
/// unless the receiver is gone by then.
void takeDroppedFiles(QDropEvent& event, QObject& receiver,
                      const std::function<void(const QStringList& files)>& take);

} // namespace quav
