#pragma once

#include <QString>
#include <QStringList>

namespace quav {

/// Items as a list within a sentence, in the user's language: "one, two, three".
QString listed(const QStringList& items);

} // namespace quav
