#include "platform/Version.h"

namespace quav {

QString shortVersion() {
    return QStringLiteral(QUAV_VERSION);
}

QString buildNumber() {
    return QStringLiteral(QUAV_BUILD_NUMBER);
}

QString applicationId() {
    return QStringLiteral(QUAV_APPLICATION_ID);
}

} // namespace quav
