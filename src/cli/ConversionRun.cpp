#include "cli/ConversionRun.h"

#include "cli/PlanPrinter.h"
#include "cli/RunEvents.h"
#include "cli/Terminal.h"
#include "cli/TerminalFace.h"
#include "platform/PathNames.h"
#include "platform/StopSignals.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QUtf8StringView>

#include <algorithm>
#include <memory>
#include <utility>

namespace quav {

namespace {

std::unique_ptr<TextEvents> makeEvents(const ConversionOptions& options, Terminal& terminal) {
    using Detail = TextEvents::Detail;
    Detail detail = terminal.canRedraw() ? Detail::Summary : Detail::EveryTask;
    if (options.quiet) {
        detail = Detail::Nothing;
    }
    return options.json ? std::make_unique<JsonEvents>(terminal, detail)
                        : std::make_unique<TextEvents>(terminal, detail);
}

bool isUtf8(const QByteArray& bytes) {
    return QUtf8StringView(bytes).isValidUtf8();
}

} // namespace

ConversionRun::ConversionRun(Options::Command command, ConversionOptions options,
                             Settings& settings, Terminal& terminal)
    : command_(command), options_(std::move(options)), terminal_(terminal),
      prompts_(terminal, options_.answer),
      workbench_(settings, prompts_, desktop_, ToolsFolder(ToolsFolder::standardFolder())) {}

ConversionTab& ConversionRun::tab() {
    if (command_ == Options::Command::Encode) {
        return workbench_.encodeTab();
    }
    return workbench_.decodeTab();
}

int ConversionRun::run() {
    setOptions();
    if (!chooseOutput() || !addFiles()) {
        return exitstatus::refused;
    }
    if (tab().files().rowCount() == 0) {
        return refuse(tr("There is nothing to do."));
    }
    return options_.dryRun ? printPlan() : convert();
}

int ConversionRun::refuse(const QString& reason) {
    terminal_.say(reason);
    return exitstatus::refused;
}

void ConversionRun::setOptions() {
    if (options_.jobs) {
        workbench_.queue().maxThreadsChanged(*options_.jobs);
    }
    tab().setDeleteOriginals(options_.deleteOriginals);
    if (command_ == Options::Command::Encode) {
        setEncodeOptions();
    } else {
        setDecodeOptions();
    }
}

void ConversionRun::setEncodeOptions() {
    EncodeTab& encode = workbench_.encodeTab();
    encode.setFlacLevel(options_.level.value_or(encode.flacLevel()));
    encode.setFlacVerify(options_.verify.value_or(encode.flacVerify()));
    encode.setFlacLax(options_.lax);
    encode.setFlacKeepForeignMetadata(
        options_.keepForeignMetadata.value_or(encode.flacKeepForeignMetadata()));
}

void ConversionRun::setDecodeOptions() {
    DecodeTab& decode = workbench_.decodeTab();
    decode.setOutputFormat(options_.format);
    decode.setDecodeFlacThroughErrors(options_.throughErrors);
    decode.setKeepForeignMetadata(options_.keepForeignMetadata.value_or(false));
}

bool ConversionRun::chooseOutput() {
    if (options_.outputFolder) {
        if (!isUtf8(*options_.outputFolder)) {
            terminal_.say(undecodableMessage(QString::fromUtf8(*options_.outputFolder)));
            return false;
        }
        const auto folder = OutputFolder::at(QString::fromUtf8(*options_.outputFolder));
        if (!folder) {
            terminal_.say(folder.error());
            return false;
        }
        prompts_.setOutputFolder(*folder);
        tab().setBesideSources(false);
        return true;
    }
    if (options_.beside) {
        tab().setBesideSources(true);
    }
    if (!tab().besideSources() && (options_.dryRun || !terminal_.canAsk())) {
        terminal_.say(tr("Where are the outputs to go? Say --output DIR or --beside."));
        return false;
    }
    return true;
}

bool ConversionRun::addFiles() {
    QStringList paths;
    bool complete = true;
    for (const QByteArray& file : options_.files) {
        const QString path = QString::fromUtf8(file);
        if (!isUtf8(file)) {
            somethingUnusable_ = true;
            terminal_.say(undecodableMessage(path));
        } else if (QFileInfo::exists(path)) {
            paths << fullPath(path);
        } else {
            complete = false;
            terminal_.say(tr("“%1” does not exist.").arg(path));
        }
    }
    if (complete && !takes(paths)) {
        somethingUnusable_ = true;
    }
    return complete;
}

/// Whether the tab has everything that was named. What it skips in folders nobody named.
bool ConversionRun::takes(const QStringList& paths) {
    const bool reached = tab().addFiles(paths);
    return reached && std::all_of(paths.begin(), paths.end(), [this](const QString& path) {
               return isFolder(path) || tab().files().contains(path);
           });
}

int ConversionRun::printPlan() {
    PlanPrinter printer(terminal_, workbench_.tools(),
                        options_.json ? PlanPrinter::Form::Json : PlanPrinter::Form::Script);
    if (!printer.print(tab(), prompts_.outputFolder())) {
        return exitstatus::refused;
    }
    return somethingUnusable_ ? exitstatus::failed : exitstatus::succeeded;
}

int ConversionRun::convert() {
    StopSignals signals;
    const auto events = makeEvents(options_, terminal_);
    const bool live = terminal_.canRedraw() && !options_.quiet;
    TerminalFace face(workbench_.queue(), terminal_, *events,
                      live ? TerminalFace::Progress::Shown : TerminalFace::Progress::Hidden);
    if (auto& folder = prompts_.outputFolder()) {
        if (const auto created = folder->create(); !created) {
            return refuse(created.error());
        }
    }
    const CommandOutcome outcome = tab().executeCommand();
    if (outcome != CommandOutcome::Queued) {
        if (auto& folder = prompts_.outputFolder()) {
            folder->discard();
        }
    }
    switch (outcome) {
    case CommandOutcome::Declined:
        return StopSignals::received() > 0 ? exitstatus::failed : exitstatus::declined;
    case CommandOutcome::Refused:
        return exitstatus::refused;
    case CommandOutcome::NothingToDo:
        return refuse(tr("There is nothing to do."));
    case CommandOutcome::Queued:
        break;
    }
    waitForTheEnd(signals);
    face.finish();
    return exitStatus(face.summary());
}

void ConversionRun::waitForTheEnd(StopSignals& signals) {
    QEventLoop loop;
    QUAVTaskQueue& queue = workbench_.queue();
    QObject::connect(
        &queue, &QUAVTaskQueue::becameIdle, &loop,
        [&] {
            // A task that follows on a finished set may have come in the meantime.
            if (queue.taskCount() == 0) {
                loop.quit();
            }
        },
        Qt::QueuedConnection);
    QObject::connect(&signals, &StopSignals::stopRequested, &loop,
                     [&](int howManyTimes) { stop(howManyTimes); });
    loop.exec();
}

void ConversionRun::stop(int howManyTimes) {
    if (howManyTimes == 1) {
        terminal_.say(tr("Cancelled. Tools that run finish their file; once more stops them."));
        workbench_.queue().cancelAllTasks();
    } else {
        terminal_.say(tr("Stopping the tools that run."));
        workbench_.queue().terminateTools();
    }
}

int ConversionRun::exitStatus(const RunSummary& summary) const {
    if (summary.failed + summary.cancelled > 0 || somethingUnusable_ || prompts_.alerted()) {
        return exitstatus::failed;
    }
    return prompts_.declined() ? exitstatus::declined : exitstatus::succeeded;
}

} // namespace quav
