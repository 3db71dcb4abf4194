#include "cli/PlanPrinter.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"

#include <QJsonArray>

#include <algorithm>

namespace quav {

namespace {

/// The plan with every output in this folder.
Plan moved(Plan plan, const QString& folder) {
    for (Job& job : plan.jobs) {
        for (QString& output : job.outputs) {
            output = joinPath(folder, lastPathComponent(output));
        }
    }
    return plan;
}

} // namespace

PlanPrinter::PlanPrinter(Terminal& terminal, const ToolsFolder& tools, Form form)
    : terminal_(terminal), tools_(tools), form_(form) {}

bool PlanPrinter::print(const PlannedTab& tab, const QString& destination,
                        const std::optional<OutputFolder>& folder) {
    using Existing = OutputGuard::Existing;
    const Plan plan = tab.plan(tab.options().values(), destination);
    const bool makesFolder = folder && folder->isMissing();
    // A folder that the run makes itself stands in nobody's way; the one above it may.
    const QStringList obstacles =
        tab.obstacles(makesFolder ? moved(plan, folderOf(folder->path())) : plan);
    if (makesFolder) {
        printFolder(folder->path());
    }
    for (const QString& output : existingOutputs(plan, Existing::Overwrite)) {
        note(QStringLiteral("overwrite"), QStringLiteral("output"), output,
             tr("would overwrite %1"));
    }
    for (const QString& output : existingOutputs(plan, Existing::Keep)) {
        note(QStringLiteral("exists"), QStringLiteral("output"), output,
             tr("would fail, since the output exists: %1"));
    }
    for (const LeftOut& file : plan.leftOut) {
        printLeftOut(file);
    }
    for (const Job& job : plan.jobs) {
        form_ == Form::Json ? printJson(job) : printScript(job);
    }
    for (const QString& file : plan.checksumFiles) {
        note(QStringLiteral("checksums"), QStringLiteral("output"), file,
             tr("would then write the checksum file %1"));
    }
    for (const QString& obstacle : obstacles) {
        note(QStringLiteral("obstacle"), QStringLiteral("text"), obstacle, tr("in the way: %1"));
        terminal_.say(obstacle);
    }
    return obstacles.isEmpty();
}

void PlanPrinter::printLeftOut(const LeftOut& file) {
    const auto sentence = [&file] {
        switch (file.why) {
        case LeftOut::Why::OwnOutput:
            return tr("would skip what is its own output: %1");
        case LeftOut::Why::NoFile:
            return tr("would skip what is no file: %1");
        case LeftOut::Why::NotYet:
            return tr("would skip a kind that cannot be converted: %1");
        case LeftOut::Why::OfNoKind:
            return tr("would skip what is of no kind to convert: %1");
        case LeftOut::Why::Unwritable:
            return tr("would skip what has a folder that cannot be written to: %1");
        }
        return QString();
    };
    note(QStringLiteral("skip"),
         file.why == LeftOut::Why::OwnOutput ? QStringLiteral("output") : QStringLiteral("source"),
         file.path, sentence());
}

void PlanPrinter::printFolder(const QString& path) {
    note(QStringLiteral("folder"), QStringLiteral("path"), path, tr("would make the folder %1"));
    if (form_ == Form::Script) {
        terminal_.print(text::shellCommand(QStringLiteral("mkdir"), {path}));
    }
}

void PlanPrinter::note(const QString& event, const QString& key, const QString& value,
                       const QString& sentence) {
    if (form_ == Form::Json) {
        terminal_.print(jsonLine({{QStringLiteral("event"), event}, {key, value}}));
    } else {
        terminal_.print(QStringLiteral("# ") + sentence.arg(text::printable(value)));
    }
}

void PlanPrinter::printJson(const Job& job) {
    QJsonArray commands;
    for (const ToolCall& step : job.steps) {
        if (step.tool.isEmpty()) {
            commands << QJsonArray::fromStringList(QStringList(QStringLiteral("convert")) +
                                                   step.arguments);
            continue;
        }
        commands << QJsonArray::fromStringList(QStringList(tools_.tool(step.tool)) +
                                               step.arguments);
    }
    QJsonObject line{{QStringLiteral("event"), QStringLiteral("plan")},
                     {QStringLiteral("output"), job.output()}};
    if (job.sources.size() == 1) {
        line.insert(QStringLiteral("source"), job.source());
    } else {
        line.insert(QStringLiteral("sources"), QJsonArray::fromStringList(job.sources));
    }
    if (commands.size() == 1) {
        line.insert(QStringLiteral("command"), commands.first());
    } else {
        line.insert(QStringLiteral("commands"), commands);
    }
    terminal_.print(jsonLine(line));
}

void PlanPrinter::printScript(const Job& job) {
    terminal_.print(QStringLiteral("# %1 → %2")
                        .arg(job.sources.size() == 1
                                 ? text::printable(job.source())
                                 : tr("%Ln files", nullptr, static_cast<int>(job.sources.size())),
                             text::printable(job.output())));
    // A step needs what the one before it made: none is run when that failed, and a job of which
    // this program does a step itself is no script at all.
    const bool isScript = std::none_of(job.steps.begin(), job.steps.end(),
                                       [](const ToolCall& step) { return step.tool.isEmpty(); });
    const QString mark = isScript ? QString() : QStringLiteral("# ");
    for (const ToolCall& step : job.steps) {
        const bool isLast = &step == &job.steps.back();
        terminal_.print(mark + commandOf(step) +
                        (isScript && !isLast ? QStringLiteral(" &&") : QString()));
    }
}

QString PlanPrinter::commandOf(const ToolCall& step) const {
    if (step.tool.isEmpty()) {
        return tr("this program itself converts %1 to %2")
            .arg(text::printable(step.arguments.value(0)),
                 text::printable(step.arguments.value(1)));
    }
    const QString command = text::shellCommand(tools_.tool(step.tool), step.arguments);
    return step.folder.isEmpty()
               ? command
               : QStringLiteral("(%1 && %2)")
                     .arg(text::shellCommand(QStringLiteral("cd"), {step.folder}), command);
}

} // namespace quav
