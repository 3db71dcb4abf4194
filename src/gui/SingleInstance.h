#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace quav {

/// Lets one window serve all starts of the program: the first start takes a name on the session
/// bus and offers org.freedesktop.Application there, a later one hands its files over. Without a
/// bus every start is the first.
class SingleInstance : public QDBusVirtualObject {
    Q_OBJECT

public:
    explicit SingleInstance(const QDBusConnection& bus = QDBusConnection::sessionBus());

    /// Takes the name; false when another start has it.
    bool claim();

    /// Gives files to the start that has the name, selects a tab there unless `tab` is empty, and
    /// has its window come to the front. False when it does not answer.
    bool handOver(const QStringList& files, const QString& tab);

    /// Gives the name back: who starts the program from now on gets a window of his own.
    void release();

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString introspect(const QString& path) const override;

Q_SIGNALS:
    void activated();
    void tabRequested(const QString& label);
    void filesOpened(const QStringList& files);

private:
    bool call(const QString& method, const QVariantList& arguments);
    void takeActivationToken(const QVariant& platformData) const;

    QDBusConnection bus_;
};

} // namespace quav
