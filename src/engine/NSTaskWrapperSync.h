#pragma once

#include "platform/ChildProcess.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

class ToolsFolder;

/// Asks one tool something: runs it to its end on the calling thread and keeps what it printed, of
/// an answer without end the first megabyte.
class NSTaskWrapperSync {
public:
    NSTaskWrapperSync(const ToolsFolder& tools, const QString& launchPath,
                      const QStringList& arguments);

    void appendToPATH(const QString& folder);
    void setDirectory(const QString& path);

    /// The output of both streams; the reason instead when the tool could not be started.
    QString runTask();

    const QString& output() const { return totalOutput_; }

    /// How it ended, as `ChildProcess::ended` has it; none when it could not be started.
    std::optional<int> exitStatus() const { return exitStatus_; }

private:
    ChildCommand command_;
    QString totalOutput_;
    std::optional<int> exitStatus_;
};

} // namespace quav
