#include "workbench/Workbench.h"

#include "platform/AudioProbe.h"
#include "platform/ChildProcess.h"
#include "tags/TagLibTagsHelper.h"
#include "workbench/TabTable.h"

#include <utility>

namespace quav {

Workbench::Workbench(Settings& settings, UserPrompts& prompts, DesktopServices& desktop,
                     ToolsFolder tools)
    : tools_(std::move(tools)), claims_(ClaimedFolders::userFolder()),
      queue_(settings, desktop, tools_, mainThread_, notifications_), services_{settings, prompts,
                                                                                desktop,  tools_,
                                                                                queue_,   claims_},
      controller_(services_) {
    expectChildren();
    silenceAudioLibrary();
    TagLibTagsHelper::initialise();
    for (const TabRow& row : tabTable()) {
        if (row.make) {
            tabs_.push_back(row.make(services_));
            controller_.addTab(*tabs_.back());
        }
    }
}

} // namespace quav
