#include "gui/SingleInstance.h"

#include "platform/Version.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QUrl>

#include <algorithm>
#include <iterator>

namespace quav {

namespace {

const QString interfaceName = QStringLiteral("org.freedesktop.Application");
const QString activationToken = QStringLiteral("activation-token");
constexpr const char* activationVariable = "XDG_ACTIVATION_TOKEN";

/// Where the interface asks for the object: the name with slashes.
QString objectPath() {
    return u'/' + applicationId().replace(u'.', u'/');
}

// A window that shows a dialog still answers; one that does not within this time hangs.
constexpr int answerMilliseconds = 3000;

/// What the desktop told us about the click that started us, so that the other window may take the
/// focus.
QVariantMap platformData() {
    const QString token = qEnvironmentVariable(activationVariable);
    return token.isEmpty() ? QVariantMap() : QVariantMap{{activationToken, token}};
}

QStringList localFiles(const QStringList& uris) {
    QStringList files;
    for (const QString& uri : uris) {
        const QString file = QUrl(uri).toLocalFile();
        if (!file.isEmpty()) {
            files << file;
        }
    }
    return files;
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection& bus) : bus_(bus) {}

bool SingleInstance::claim() {
    if (!bus_.isConnected()) {
        return true;
    }
    // The object first: whoever sees the name may call at once.
    bus_.registerVirtualObject(objectPath(), this);
    return bus_.registerService(applicationId());
}

void SingleInstance::release() {
    if (bus_.isConnected()) {
        bus_.unregisterService(applicationId());
        bus_.unregisterObject(objectPath());
    }
}

bool SingleInstance::call(const QString& method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(applicationId(), objectPath(), interfaceName, method);
    message.setArguments(arguments);
    return bus_.call(message, QDBus::Block, answerMilliseconds).type() ==
           QDBusMessage::ReplyMessage;
}

bool SingleInstance::handOver(const QStringList& files, const QString& tab) {
    if (!tab.isEmpty() &&
        !call(QStringLiteral("ActivateAction"), {tab, QVariantList(), platformData()})) {
        return false;
    }
    if (files.isEmpty()) {
        return !tab.isEmpty() || call(QStringLiteral("Activate"), {platformData()});
    }
    QStringList uris;
    std::transform(files.begin(), files.end(), std::back_inserter(uris), [](const QString& file) {
        return QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded());
    });
    return call(QStringLiteral("Open"), {uris, platformData()});
}

void SingleInstance::takeActivationToken(const QVariant& platformData) const {
    const QString token = qdbus_cast<QVariantMap>(platformData).value(activationToken).toString();
    if (!token.isEmpty()) {
        qputenv(activationVariable, token.toUtf8());
    }
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() != interfaceName && !message.interface().isEmpty()) {
        return false;
    }
    const QVariantList arguments = message.arguments();
    const QString method = message.member();
    const QString signature = message.signature();
    const bool opens = method == u"Open" && signature == u"asa{sv}";
    const bool selects = method == u"ActivateAction" && signature == u"sava{sv}";
    const bool activates = method == u"Activate" && signature == u"a{sv}";
    if (!opens && !selects && !activates) {
        return false;
    }
    // The answer goes out first: what follows may open a dialog and wait for the user.
    connection.send(message.createReply());
    takeActivationToken(arguments.last());
    Q_EMIT activated();
    if (selects) {
        Q_EMIT tabRequested(arguments.first().toString());
    }
    if (opens) {
        Q_EMIT filesOpened(localFiles(arguments.first().toStringList()));
    }
    return true;
}

QString SingleInstance::introspect(const QString& /*path*/) const {
    return QStringLiteral("<interface name=\"org.freedesktop.Application\">"
                          "<method name=\"Activate\">"
                          "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/>"
                          "</method>"
                          "<method name=\"Open\">"
                          "<arg type=\"as\" name=\"uris\" direction=\"in\"/>"
                          "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/>"
                          "</method>"
                          "<method name=\"ActivateAction\">"
                          "<arg type=\"s\" name=\"action_name\" direction=\"in\"/>"
                          "<arg type=\"av\" name=\"parameter\" direction=\"in\"/>"
                          "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/>"
                          "</method></interface>");
}

} // namespace quav
