#include "platform/ClockText.h"

namespace quav {

QString clockText(std::chrono::seconds span) {
    const std::chrono::hh_mm_ss clock(span);
    const QString seconds = QStringLiteral("%1").arg(clock.seconds().count(), 2, 10, QChar(u'0'));
    if (clock.hours().count() == 0) {
        return QStringLiteral("%1:%2").arg(clock.minutes().count()).arg(seconds);
    }
    return QStringLiteral("%1:%2:%3")
        .arg(clock.hours().count())
        .arg(clock.minutes().count(), 2, 10, QChar(u'0'))
        .arg(seconds);
}

} // namespace quav
