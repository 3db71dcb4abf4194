#include "gui/DroppedFiles.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

namespace quav {

namespace {

QStringList localFilesIn(const QMimeData& mimeData) {
    QStringList files;
    const QList<QUrl> urls = mimeData.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) {
            files << url.toLocalFile();
        }
    }
    return files;
}

} // namespace

bool acceptDraggedFiles(QDragEnterEvent& event) {
    if (!event.mimeData()->hasUrls()) {
        return false;
    }
    acceptAsCopy(event);
    return true;
}

void acceptAsCopy(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

void takeDroppedFiles(QDropEvent& event, QObject& receiver,
                      const std::function<void(const QStringList& files)>& take) {
    acceptAsCopy(event);
    // Later, so that the program the files come from need not wait for our questions.
    QTimer::singleShot(0, &receiver,
                       [take, files = localFilesIn(*event.mimeData())] { take(files); });
}

} // namespace quav
