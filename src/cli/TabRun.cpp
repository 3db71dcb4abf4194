#include "cli/TabRun.h"

#include "app/ListFacts.h"
#include "app/OptionValues.h"
#include "cli/PlanPrinter.h"
#include "cli/RunEvents.h"
#include "cli/Terminal.h"
#include "platform/PathNames.h"
#include "platform/StopSignals.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QUtf8StringView>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace quav {

namespace {

std::unique_ptr<TextEvents> makeEvents(const RunOptions& options, Terminal& terminal) {
    using Detail = TextEvents::Detail;
    Detail detail = terminal.canRedraw() ? Detail::Summary : Detail::EveryTask;
    if (options.quiet) {
        detail = Detail::Nothing;
    }
    return options.json ? std::make_unique<JsonEvents>(terminal, detail)
                        : std::make_unique<TextEvents>(terminal, detail);
}

/// The target because of which an option that is switched on or told means nothing; nullptr: none.
const OptionInfo* ruledOutBy(const OptionInfo& option, const OptionValues& values) {
    const ListFacts anything = ListFacts::ofAnyList();
    const bool isOff =
        option.control == OptionInfo::Control::Switch && !values.value(option).toBool();
    if (!option.applies || isOff || option.applies(values, anything)) {
        return nullptr;
    }
    const auto wouldApply = [&](const OptionInfo& target, const OptionChoice& choice) {
        OptionValues changed = values;
        changed.setValue(target, choice.value);
        return option.applies(changed, anything);
    };
    const auto& rows = values.table().rows();
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const OptionInfo& target) {
        return target.required &&
               std::any_of(target.choices.begin(), target.choices.end(),
                           [&](const OptionChoice& choice) { return wouldApply(target, choice); });
    });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace

TabRun::TabRun(RunOptions options, Settings& settings, Terminal& terminal)
    : options_(std::move(options)), terminal_(terminal), prompts_(terminal, options_.answer),
      workbench_(settings, prompts_, desktop_, ToolsFolder(ToolsFolder::standardFolder())) {
    for (const QString& sentence : workbench_.claims().recover()) {
        terminal_.say(sentence);
    }
    if (options_.jobs) {
        workbench_.queue().maxThreadsChanged(*options_.jobs);
    }
    workbench_.queue().stallWatch().setPatience(
        {.end = std::chrono::seconds(options_.stallTimeout)});
}

TabRun::~TabRun() = default;

void TabRun::connectTab(TerminalView& /*view*/, const StopSignals& /*signals*/) {}

int TabRun::refuse(const QString& reason) {
    terminal_.say(reason);
    return exitstatus::refused;
}

bool TabRun::isUtf8(const QByteArray& bytes) {
    return QUtf8StringView(bytes).isValidUtf8();
}

std::optional<QString> TabRun::textOf(const QByteArray& path) {
    if (!isUtf8(path)) {
        terminal_.say(undecodableMessage(QString::fromUtf8(path)));
        return std::nullopt;
    }
    return QString::fromUtf8(path);
}

bool TabRun::setPreset() {
    const auto preset = tab().presets().presets().read(options_.preset);
    if (!preset) {
        terminal_.say(preset.error());
        return false;
    }
    TabOptions& options = tab().options();
    for (const OptionInfo& option : options.table().rows()) {
        if (!option.flag || options_.options.contains(&option)) {
            continue;
        }
        // Work that is not what the preset asks for is worse than none.
        if (const auto unfit = preset->unfit.find(QString::fromLatin1(option.key));
            unfit != preset->unfit.end()) {
            terminal_.say(tr("The preset “%1” cannot be used: %2 Say --%3 yourself.")
                              .arg(options_.preset, *unfit, QLatin1StringView(option.flag)));
            return false;
        }
        const auto set = options.setForThisRun(option, preset->values.text(option));
        Q_ASSERT(set);
    }
    if (const QString left = preset->notUnderstood(); !left.isEmpty()) {
        terminal_.say(tr("warning: %1").arg(left));
    }
    return true;
}

bool TabRun::setOptions() {
    if (!options_.preset.isEmpty() && !setPreset()) {
        return false;
    }
    for (const auto& [option, text] : options_.options) {
        const auto set = tab().options().setForThisRun(*option, text);
        Q_ASSERT(set);
    }
    return std::all_of(options_.options.begin(), options_.options.end(),
                       [this](const auto& given) { return hasEffect(*given.first); });
}

/// A flag that would change nothing has been meant for something else.
bool TabRun::hasEffect(const OptionInfo& option) {
    const OptionValues& values = tab().options().values();
    const OptionInfo* target = ruledOutBy(option, values);
    if (!target) {
        return true;
    }
    terminal_.say(tr("--%1 has no effect with --%2 %3.")
                      .arg(QLatin1StringView(option.flag), QLatin1StringView(target->flag),
                           values.text(*target)));
    return false;
}

bool TabRun::addFiles() {
    bool complete = true;
    for (const QByteArray& file : options_.files) {
        const auto path = textOf(file);
        if (!path) {
            somethingUnusable_ = true;
        } else if (QFileInfo::exists(*path)) {
            namedFiles_ << fullPath(*path);
        } else {
            complete = false;
            terminal_.say(tr("“%1” does not exist.").arg(*path));
        }
    }
    if (complete && !takes(namedFiles_)) {
        somethingUnusable_ = true;
    }
    return complete;
}

/// Whether the tab has everything that was named. What it skips in folders nobody named.
bool TabRun::takes(const QStringList& paths) {
    QEventLoop loop;
    bool isComplete = false;
    QObject::connect(&tab(), &BaseTab::filesRead, &loop, [&](bool all) {
        isComplete = all;
        loop.quit();
    });
    tab().addFiles(paths);
    loop.exec();
    return isComplete && std::all_of(paths.begin(), paths.end(), [this](const QString& path) {
               return isFolder(path) || tab().files().contains(path);
           });
}

std::optional<BatchSummary> TabRun::press(CommandOutcome& outcome) {
    StopSignals signals;
    const auto events = makeEvents(options_, terminal_);
    const bool live = terminal_.canRedraw() && !options_.quiet;
    TerminalView view(workbench_.queue(), terminal_, *events,
                      live ? TerminalView::Progress::Shown : TerminalView::Progress::Hidden);
    connectTab(view, signals);
    outcome = tab().executeCommand();
    if (outcome == CommandOutcome::Running) {
        outcome = waitForTheCommand();
    }
    if (outcome == CommandOutcome::Queued) {
        waitForTheEnd(signals);
    } else if (outcome != CommandOutcome::Done) {
        return std::nullopt;
    }
    view.finish();
    return view.summary();
}

int TabRun::printPlan(const QString& destination) {
    PlanPrinter printer(terminal_, workbench_.tools(),
                        options_.json ? PlanPrinter::Form::Json : PlanPrinter::Form::Script);
    if (!printer.print(tab(), destination, prompts_.outputFolder())) {
        return exitstatus::refused;
    }
    return somethingUnusable_ ? exitstatus::failed : exitstatus::succeeded;
}

CommandOutcome TabRun::waitForTheCommand() {
    QEventLoop loop;
    auto ended = CommandOutcome::Running;
    QObject::connect(&tab(), &BaseTab::commandEnded, &loop, [&](CommandOutcome outcome) {
        ended = outcome;
        loop.quit();
    });
    loop.exec();
    return ended;
}

void TabRun::waitForTheEnd(StopSignals& signals) {
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

void TabRun::stop(int howManyTimes) {
    if (howManyTimes == 1) {
        terminal_.say(tr("Cancelled. Tools that run finish their file; once more ends them and "
                         "the program at once."));
        workbench_.queue().cancelAllTasks();
    } else {
        terminal_.say(tr("Ending the tools that run."));
        workbench_.queue().killTools();
    }
}

int TabRun::statusOf(CommandOutcome outcome) {
    switch (outcome) {
    case CommandOutcome::Declined:
        return StopSignals::received() > 0 ? exitstatus::failed : exitstatus::declined;
    case CommandOutcome::NothingToDo:
        return refuse(tr("There is nothing to do."));
    case CommandOutcome::Refused:
    case CommandOutcome::Queued:
    case CommandOutcome::Running:
    case CommandOutcome::Done:
        break;
    }
    return exitstatus::refused;
}

int TabRun::statusOf(const BatchSummary& summary) const {
    const bool troubled = summary.hasFailures() || summary.cancelled() > 0;
    if (troubled || somethingUnusable_ || prompts_.alerted()) {
        return exitstatus::failed;
    }
    return prompts_.declined() ? exitstatus::declined : exitstatus::succeeded;
}

} // namespace quav
