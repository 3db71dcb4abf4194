#include "checksums/TestLog.h"

namespace quav {

void TestLog::add(const QString& line) {
    if (line.contains(u"% complete")) {
        text_.clear();
    }
    text_.append(line + u'\n');
}

} // namespace quav
