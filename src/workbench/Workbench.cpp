#include "workbench/Workbench.h"

#include "platform/AudioProbe.h"
#include "platform/ChildProcess.h"
#include "tags/TagLibTagsHelper.h"

#include <utility>

namespace quav {

Workbench::Workbench(Settings& settings, UserPrompts& prompts, DesktopServices& desktop,
                     ToolsFolder tools)
    : tools_(std::move(tools)), claims_(ClaimedFolders::userFolder()),
      queue_(settings, desktop, tools_, mainThread_, notifications_), services_{settings, prompts,
                                                                                desktop,  tools_,
                                                                                queue_,   claims_},
      decodeTab_(services_), encodeTab_(services_), checksumTab_(services_),
      controller_(services_) {
    expectChildren();
    silenceAudioLibrary();
    TagLibTagsHelper::initialise();
    controller_.addTab(decodeTab_);
    controller_.addTab(encodeTab_);
    controller_.addTab(checksumTab_);
}

} // namespace quav
