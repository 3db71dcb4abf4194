#include "engine/NSTaskWrapperSync.h"

#include "engine/ToolsFolder.h"

#include <algorithm>

namespace quav {

namespace {

constexpr qsizetype mostBytes = 1 << 20;

} // namespace

NSTaskWrapperSync::NSTaskWrapperSync(const ToolsFolder& tools, const QString& launchPath,
                                     const QStringList& arguments)
    : command_{launchPath, arguments, tools.environment(), {}} {}

void NSTaskWrapperSync::appendToPATH(const QString& folder) {
    command_.appendToPath(folder);
}

void NSTaskWrapperSync::setDirectory(const QString& path) {
    command_.currentDirectoryPath = path;
}

QString NSTaskWrapperSync::runTask() {
    RunningChildren running;
    QByteArray printed;
    const auto status = runToEnd(command_, running, [&printed](const QByteArray& bytes) {
        printed += QByteArrayView(bytes).first(std::min(bytes.size(), mostBytes - printed.size()));
    });
    exitStatus_ = status ? std::optional(*status) : std::nullopt;
    totalOutput_ = status ? QString::fromUtf8(printed) : status.error();
    return totalOutput_;
}

} // namespace quav
