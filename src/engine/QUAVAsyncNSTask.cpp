#include "engine/QUAVAsyncNSTask.h"

#include "engine/QUAVTaskResults.h"
#include "engine/StallWatch.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/SpecialFile.h"

#include <QCoreApplication>

#include <csignal>

namespace quav {

QUAVAsyncNSTask::QUAVAsyncNSTask(TaskHost& queue, const QString& launchPath,
                                 const QStringList& arguments)
    : QUAVTask(queue), command_{launchPath, arguments, queue.toolsFolder().environment(), {}},
      cleanupWork_(queue.mainThread(), queue.cleanupPool()) {}

QUAVAsyncNSTask::~QUAVAsyncNSTask() = default;

void QUAVAsyncNSTask::appendToPATH(const QString& folder) {
    command_.appendToPath(folder);
}

void QUAVAsyncNSTask::setDirectory(const QString& path) {
    command_.currentDirectoryPath = path;
}

void QUAVAsyncNSTask::startTask() {
    if (const auto reason = whyNotOpened(source())) {
        throw ToolLaunchError(reason->toStdString()); // the tool might wait for ever
    }
    QUAVTask::startTask();
    auto child = std::make_unique<ChildProcess>();
    QObject::connect(child.get(), &ChildProcess::outputArrived, child.get(),
                     [this](const QByteArray& bytes) { taskDataAvailable(bytes); });
    QObject::connect(child.get(), &ChildProcess::ended, child.get(),
                     [this](int status) { toolEnded(status); });
    const auto started = child->start(command_);
    if (!started) {
        throw ToolLaunchError(
            QCoreApplication::translate("QUAVAsyncNSTask", "“%1” could not be started: %2")
                .arg(command_.program, started.error())
                .toStdString());
    }
    child_ = std::move(child);
    launched_ = true;
    pid_ = child_->pid();
    queue().stallWatch().began(pid_, lastPathComponent(command_.program), weak_from_this());
}

void QUAVAsyncNSTask::taskDataAvailable(const QByteArray& bytes) {
    queue().stallWatch().printed(pid_);
    for (const QString& piece : pieces_.feed(bytes)) {
        runHook([&] { processTaskOutput(piece); });
    }
}

void QUAVAsyncNSTask::toolEnded(int exitStatus) {
    stalledFor_ = queue().stallWatch().ended(pid_);
    for (const QString& piece : pieces_.finish()) {
        runHook([&] { processTaskOutput(piece); });
    }
    results()->appendResults(terminal_.finish(), *this);
    exitStatus_ = exitStatus;
    if (!cancelled() && exitStatus != 0) {
        setError(true);
    }
    cleanupWork_.run(
        [this, bytesWritten = child_->bytesWritten()] {
            noteFailure(bytesWritten);
            runHook([this] { cleanup(); });
        },
        [this] { finish(); });
}

/// Before the half output goes, which may make room on a full disk.
void QUAVAsyncNSTask::noteFailure(std::uint64_t bytesWritten) {
    const int status = exitStatus_.value_or(0);
    if (status != 0) {
        constexpr qint64 whereToolsEnd = 4096;
        const bool full = isDiskFullFor(output(), bytesWritten) ||
                          isDiskFullFor(output(), static_cast<std::uint64_t>(weight()),
                                        results()->reportOf(*this).ending(whereToolsEnd));
        setFailureFacts({lastPathComponent(command_.program), status, stalledFor_, full});
    }
}

void QUAVAsyncNSTask::stopTask() {
    // A running tool finishes by itself; its end calls `finish`.
    if (!wasLaunched()) {
        finish();
    }
}

void QUAVAsyncNSTask::terminateTool() {
    if (child_) {
        child_->signal(SIGTERM);
    }
}

void QUAVAsyncNSTask::killTool() {
    if (child_) {
        child_->signal(SIGKILL);
    }
}

void QUAVAsyncNSTask::finish() {
    QUAVTask::stopTask();
    runHook([this] { finalCleanup(); });
    reportCompletion();
    letGo();
}

/// A task that has ended keeps its row for as long as the others run, and there may be thousands.
void QUAVAsyncNSTask::letGo() {
    child_.reset();
    pieces_ = {};
    terminal_ = {};
    command_.environment = QProcessEnvironment();
    if (!error()) {
        command_.arguments.clear(); // those of a failed one are yet to be logged
    }
}

void QUAVAsyncNSTask::abandon() {
    queue().stallWatch().ended(pid_);
    child_.reset();
    cleanupWork_.wait();
}

void QUAVAsyncNSTask::processTaskOutput(const QString& text) {
    appendToReport(text);
}

void QUAVAsyncNSTask::cleanup() {}

void QUAVAsyncNSTask::finalCleanup() {}

QString QUAVAsyncNSTask::appendToReport(const QString& piece) {
    QString lines = terminal_.feed(piece);
    if (!lines.isEmpty()) {
        results()->appendResults(lines, *this);
    }
    return lines;
}

QString QUAVAsyncNSTask::description() const {
    QString line = QStringLiteral("\"%1\"\n ").arg(command_.program);
    for (const QString& argument : command_.arguments) {
        line += u'"' + argument + QStringLiteral("\"\n ");
    }
    return line;
}

} // namespace quav
