#include "platform/ListText.h"

#include <QCoreApplication>

namespace quav {

QString listed(const QStringList& items) {
    return items.join(QCoreApplication::translate("ListText", ", ", "between two items of a list"));
}

} // namespace quav
