#pragma once

namespace quav {

class ClaimedFolders;
class DesktopServices;
class QUAVTaskQueue;
class Settings;
class ToolsFolder;
class UserPrompts;

/// What tabs and their tasks work with. The things themselves belong to whoever put the program
/// together, and outlive every tab and task.
struct Services {
    Settings& settings;
    UserPrompts& prompts;
    DesktopServices& desktop;
    const ToolsFolder& tools;
    QUAVTaskQueue& queue;
    ClaimedFolders& claims;
};

} // namespace quav
