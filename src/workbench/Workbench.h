#pragma once

#include "app/BaseTab.h"
#include "app/QUAVController.h"
#include "app/Services.h"
#include "engine/ClaimedFolders.h"
#include "engine/Notifications.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/ToolsFolder.h"
#include "platform/MainThread.h"

#include <memory>
#include <vector>

namespace quav {

/// The whole program but its face: builds every part, the tabs by their table, and knows all of
/// them. The window and the command line each make one, with their own way of asking the user.
class Workbench {
public:
    Workbench(Settings& settings, UserPrompts& prompts, DesktopServices& desktop,
              ToolsFolder tools);

    QUAVController& controller() { return controller_; }
    QUAVTaskQueue& queue() { return queue_; }
    const ToolsFolder& tools() const { return tools_; }
    const ClaimedFolders& claims() const { return claims_; }

    /// The tab of a class, which has to be one of the table's.
    template <class Tab>
    Tab& tab() {
        Tab* found = nullptr;
        for (const auto& tab : tabs_) {
            found = found ? found : qobject_cast<Tab*>(tab.get());
        }
        Q_ASSERT(found);
        return *found;
    }

private:
    ToolsFolder tools_;
    ClaimedFolders claims_;
    MainThread mainThread_;
    Notifications notifications_;
    QUAVTaskQueue queue_;
    Services services_;
    std::vector<std::unique_ptr<BaseTab>> tabs_;
    QUAVController controller_;
};

} // namespace quav
