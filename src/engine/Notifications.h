#pragma once

#include <QObject>

namespace quav {

/// Announcements between parts that do not know each other.
class Notifications : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The user set how many tasks may run at once.
    void QUAVMaxThreadsChangedNotification(int maxThreads);
};

} // namespace quav
