#pragma once

#include "engine/QUAVTask.h"
#include "engine/ToolOutputReader.h"
#include "platform/BackgroundWork.h"
#include "platform/ChildProcess.h"

#include <QByteArray>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>

namespace quav {

/// A tool could not be launched; the text names it.
class ToolLaunchError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A task that runs one command-line tool. The event loop drives it: what the tool prints goes to
/// `processTaskOutput` piece by piece on the main thread; when the tool has ended, `cleanup` runs
/// on a worker thread and only then the task counts as done.
///
/// Cancelling does not kill the tool. The task waits until the tool has finished by itself and is
/// then shown as cancelled.
class QUAVAsyncNSTask : public QUAVTask {
public:
    /// `launchPath` is the full path of the tool, `arguments` come without the program's name.
    QUAVAsyncNSTask(TaskHost& queue, const QString& launchPath, const QStringList& arguments);
    ~QUAVAsyncNSTask() override;

    void appendToPATH(const QString& folder);
    void setDirectory(const QString& path);

    /// Throws ToolLaunchError.
    void startTask() override;
    void stopTask() override;

    void terminateTool() override;
    void killTool() override;
    void abandon() override;

    /// The command line: each part in quotes, followed by a line break and a blank.
    QString description() const override;

    /// True once the tool has been started.
    bool wasLaunched() const { return launched_; }

    /// The tool's exit status, once it has ended.
    std::optional<int> exitStatus() const { return exitStatus_; }

protected:
    /// Takes one piece of the tool's output. This version puts it into the report.
    virtual void processTaskOutput(const QString& text);

    /// What is to happen after the tool has ended and before the task counts as done: on a worker
    /// thread, and only when the tool was launched.
    virtual void cleanup();

    /// What is to happen after the task's set was told.
    virtual void finalCleanup();

    /// Adds a piece to the report as a terminal would show it; gives the lines that it completed.
    QString appendToReport(const QString& piece);

private:
    void taskDataAvailable(const QByteArray& bytes);
    void toolEnded(int exitStatus);
    void noteFailure(std::uint64_t bytesWritten);
    void finish();
    void letGo();

    ChildCommand command_;
    std::unique_ptr<ChildProcess> child_; ///< until the task ends
    bool launched_ = false;
    ToolOutputReader pieces_;
    TerminalText terminal_;
    pid_t pid_ = 0; ///< the tool's, from its start on
    std::optional<int> exitStatus_;
    std::optional<std::chrono::milliseconds> stalledFor_;
    BackgroundWork cleanupWork_;
};

} // namespace quav
