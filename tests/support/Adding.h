#pragma once

#include "app/BaseTab.h"
#include "support/Patience.h"

#include <QSignalSpy>
#include <QStringList>

namespace quav::test {

/// Adds files to a tab as a drop does, and waits until the search for them has ended.
inline void addFiles(BaseTab& tab, const QStringList& paths) {
    QSignalSpy read(&tab, &BaseTab::filesRead);
    tab.addFiles(paths);
    QVERIFY(read.wait(patience));
}

} // namespace quav::test
