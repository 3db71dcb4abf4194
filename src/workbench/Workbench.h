#pragma once

#include "app/QUAVController.h"
#include "app/Services.h"
#include "checksums/ChecksumTab.h"
#include "codecs/DecodeTab.h"
#include "codecs/EncodeTab.h"
#include "engine/ClaimedFolders.h"
#include "engine/Notifications.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/ToolsFolder.h"
#include "platform/MainThread.h"

namespace quav {

/// The whole program but its face: builds every part and knows all of them. The window and the
/// command line each make one, with their own way of asking the user.
class Workbench {
public:
    Workbench(Settings& settings, UserPrompts& prompts, DesktopServices& desktop,
              ToolsFolder tools);

    QUAVController& controller() { return controller_; }
    QUAVTaskQueue& queue() { return queue_; }
    const ToolsFolder& tools() const { return tools_; }
    const ClaimedFolders& claims() const { return claims_; }
    DecodeTab& decodeTab() { return decodeTab_; }
    EncodeTab& encodeTab() { return encodeTab_; }
    ChecksumTab& checksumTab() { return checksumTab_; }

private:
    ToolsFolder tools_;
    ClaimedFolders claims_;
    MainThread mainThread_;
    Notifications notifications_;
    QUAVTaskQueue queue_;
    Services services_;
    DecodeTab decodeTab_;
    EncodeTab encodeTab_;
    ChecksumTab checksumTab_;
    QUAVController controller_;
};

} // namespace quav
