#include "engine/QUAVAsyncNSTaskFileOutputRedirection.h"

#include "engine/QUAVTaskResults.h"

#include <QSaveFile>

namespace quav {

QUAVAsyncNSTaskFileOutputRedirection::QUAVAsyncNSTaskFileOutputRedirection(
    const QString& fileName, TaskHost& queue, const QString& launchPath,
    const QStringList& arguments)
    : QUAVAsyncNSTask(queue, launchPath, arguments), fileName_(fileName) {}

void QUAVAsyncNSTaskFileOutputRedirection::startTask() {
    showMainLine(title());
    if (!subTitle_.isEmpty()) {
        showStatus(subTitle_);
    }
    QUAVAsyncNSTask::startTask();
}

void QUAVAsyncNSTaskFileOutputRedirection::cleanup() {
    // A report that cannot be written is no failure of the tool.
    QSaveFile file(fileName_);
    if (file.open(QIODevice::WriteOnly)) {
        results()->report().read([&file](const QByteArray& piece) { file.write(piece); });
        if (file.commit()) {
            noteWritten(fileName_);
        }
    }
}

void QUAVAsyncNSTaskFileOutputRedirection::finalCleanup() {
    results()->setHasResults(false);
}

} // namespace quav
