#pragma once

#include <QStringList>

class QMimeData;

namespace quav {

/// The local files and folders among what is dragged.
QStringList localFilesIn(const QMimeData& mimeData);

} // namespace quav
