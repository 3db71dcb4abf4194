#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

namespace quav {

/// The object on one line.
inline QString jsonLine(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace quav
