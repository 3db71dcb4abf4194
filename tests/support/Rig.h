#pragma once

#include "engine/ClaimedFolders.h"
#include "engine/Notifications.h"
#include "engine/QUAVTaskQueue.h"
#include "platform/MainThread.h"
#include "support/Place.h"

namespace quav::test {

/// A queue with everything that it needs.
class Rig : public Place {
public:
    explicit Rig(int maxThreads = 2)
        : queue((settings.set(keys::maxThreads, maxThreads), settings), desktop, tools, mainThread,
                notifications) {}

    ToolsFolder tools{toolsDir.path()};
    ClaimedFolders claims{path(u"state"_s)};
    MainThread mainThread;
    Notifications notifications;
    QUAVTaskQueue queue;
};

} // namespace quav::test
