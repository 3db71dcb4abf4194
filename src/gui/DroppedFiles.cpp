#include "gui/DroppedFiles.h"

#include <QMimeData>
#include <QUrl>

namespace quav {

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

} // namespace quav
