#pragma once

#include "engine/ClaimedFolders.h"
#include "engine/Notifications.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/ToolsFolder.h"
#include "platform/MainThread.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/Translations.h"
#include "support/FakeDesktop.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace quav::test {

using namespace Qt::StringLiterals;

/// A queue with everything that it needs: settings of its own, a desktop that keeps a record, and
/// a tools folder with links to the real tools.
class Rig {
public:
    explicit Rig(int maxThreads = 2)
        : queue(limited(settings, maxThreads), desktop, tools, mainThread, notifications) {
        for (const QString& tool : {u"flac"_s, u"sh"_s}) {
            QFile::link(QStandardPaths::findExecutable(tool), tools.tool(tool));
        }
    }

    /// A path in the rig's own folder.
    QString path(const QString& name) const { return joinPath(folder.path(), name); }

    const Translations translations;
    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    Settings settings{joinPath(folder.path(), u"settings.ini"_s)};
    FakeDesktop desktop;
    ToolsFolder tools{toolsDir.path()};
    ClaimedFolders claims{joinPath(folder.path(), u"state"_s)};
    MainThread mainThread;
    Notifications notifications;
    QUAVTaskQueue queue;

private:
    static const Settings& limited(Settings& settings, int maxThreads) {
        settings.set(keys::maxThreads, maxThreads);
        return settings;
    }
};

} // namespace quav::test
