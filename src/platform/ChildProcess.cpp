#include "platform/ChildProcess.h"

#include <QProcess>

#include <unistd.h>

namespace quav {

namespace {

constexpr int signalledBase = 128;

void prepare(QProcess& process, const ChildCommand& command) {
    process.setProgram(command.program);
    process.setArguments(command.arguments);
    process.setProcessEnvironment(command.environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    // An open pipe would let a tool wait for an answer for ever; a closed descriptor 0 would be
    // taken by the first file that the tool opens.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { setpgid(0, 0); });
    if (!command.workingDirectory.isEmpty()) {
        process.setWorkingDirectory(command.workingDirectory);
    }
}

int shellStatus(const QProcess& process) {
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode()
                                                        : signalledBase + process.exitCode();
}

} // namespace

ChildProcess::ChildProcess(QObject* parent)
    : QObject(parent), process_(std::make_unique<QProcess>()) {
    connect(process_.get(), &QProcess::readyReadStandardOutput, this,
            [this] { Q_EMIT outputArrived(process_->readAllStandardOutput()); });
    connect(process_.get(), &QProcess::finished, this, [this] {
        if (process_->bytesAvailable() > 0) {
            Q_EMIT outputArrived(process_->readAllStandardOutput());
        }
        Q_EMIT ended(shellStatus(*process_));
    });
}

ChildProcess::~ChildProcess() {
    process_->disconnect(this);
    if (isRunning()) {
        process_->kill();
        process_->waitForFinished();
    }
}

tl::expected<void, QString> ChildProcess::start(const ChildCommand& command) {
    prepare(*process_, command);
    process_->start(QIODevice::ReadOnly);
    if (!process_->waitForStarted()) {
        return tl::make_unexpected(process_->errorString());
    }
    return {};
}

bool ChildProcess::isRunning() const {
    return process_->state() != QProcess::NotRunning;
}

void ChildProcess::terminate() {
    process_->terminate();
}

tl::expected<QByteArray, QString> runToEnd(const ChildCommand& command) {
    QProcess process;
    prepare(process, command);
    process.start(QIODevice::ReadOnly);
    if (!process.waitForStarted()) {
        return tl::make_unexpected(process.errorString());
    }
    process.waitForFinished(-1);
    return process.readAllStandardOutput();
}

} // namespace quav
