#include "engine/NSTaskWrapperSync.h"

#include "engine/ToolsFolder.h"

namespace quav {

NSTaskWrapperSync::NSTaskWrapperSync(const ToolsFolder& tools, const QString& launchPath,
                                     const QStringList& arguments)
    : command_{launchPath, arguments, tools.environment(), {}} {}

void NSTaskWrapperSync::appendToPATH(const QString& folder) {
    command_.appendToPath(folder);
}

void NSTaskWrapperSync::setDirectory(const QString& path) {
    command_.workingDirectory = path;
}

QString NSTaskWrapperSync::runTask() {
    const auto printed = runToEnd(command_);
    totalOutput_ = printed ? QString::fromUtf8(*printed) : printed.error();
    return totalOutput_;
}

} // namespace quav
