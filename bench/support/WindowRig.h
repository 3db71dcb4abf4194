#pragma once

#include "gui/GuiPrompts.h"
#include "gui/MainWindow.h"
#include "gui/OutputWindows.h"
#include "gui/StatusPanel.h"
#include "platform/DesktopServices.h"
#include "platform/Settings.h"
#include "workbench/Workbench.h"

#include <QTemporaryDir>

namespace quav::bench {

/// The whole program with its windows, over settings and a folder of its own and without tools.
struct WindowRig {
    QTemporaryDir folder;
    Settings settings{folder.filePath(QStringLiteral("quav.ini"))};
    NoDesktop desktop;
    GuiPrompts prompts;
    Workbench workbench{settings, prompts, desktop, ToolsFolder(folder.path())};
    OutputWindows outputWindows{prompts};
    StatusPanel panel{workbench.queue(), outputWindows};
    MainWindow window{workbench, panel, outputWindows};
};

} // namespace quav::bench
