#include "tags/TagError.h"

#include <QCoreApplication>

namespace quav {

TagError::TagError(const QString& message) : std::runtime_error(message.toStdString()) {}

TagError TagError::cannotOpenForTagging() {
    return TagError(
        QCoreApplication::translate("Exceptions", "Unable to open the output file for tagging."));
}

} // namespace quav
