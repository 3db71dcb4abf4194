#include "cli/PlanPrinter.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"

#include <QJsonArray>

namespace quav {

namespace {

/// The plan with every output in this folder.
ConversionPlan moved(ConversionPlan plan, const QString& folder) {
    for (PlannedConversion& conversion : plan.conversions) {
        conversion.output = joinPath(folder, lastPathComponent(conversion.output));
    }
    return plan;
}

} // namespace

PlanPrinter::PlanPrinter(Terminal& terminal, const ToolsFolder& tools, Form form)
    : terminal_(terminal), tools_(tools), form_(form) {}

bool PlanPrinter::print(const ConversionTab& tab, const std::optional<OutputFolder>& folder) {
    const QString path = folder ? folder->path() : QString();
    const ConversionPlan plan = tab.plan(path);
    const bool makesFolder = folder && folder->isMissing();
    // A folder that the run makes itself stands in nobody's way; the one above it may.
    const QStringList obstacles = tab.obstacles(makesFolder ? moved(plan, folderOf(path)) : plan);
    if (makesFolder) {
        printFolder(path);
    }
    for (const QString& output : plan.overwritten) {
        note(QStringLiteral("overwrite"), QStringLiteral("output"), output,
             tr("would overwrite %1"));
    }
    for (const QString& output : plan.alreadyThere) {
        note(QStringLiteral("exists"), QStringLiteral("output"), output,
             tr("would fail, since the output exists: %1"));
    }
    for (const QString& output : plan.outputsThatAreSources) {
        note(QStringLiteral("skip"), QStringLiteral("output"), output,
             tr("would skip what is its own output: %1"));
    }
    for (const QString& source : plan.special) {
        note(QStringLiteral("skip"), QStringLiteral("source"), source,
             tr("would skip what is no file: %1"));
    }
    for (const QString& source : plan.unsupported) {
        note(QStringLiteral("skip"), QStringLiteral("source"), source,
             tr("would skip a kind that cannot be converted: %1"));
    }
    for (const QString& source : plan.unknown) {
        note(QStringLiteral("skip"), QStringLiteral("source"), source,
             tr("would skip what is of no kind to convert: %1"));
    }
    for (const QString& source : plan.unwritable) {
        note(QStringLiteral("skip"), QStringLiteral("source"), source,
             tr("would skip what has a folder that cannot be written to: %1"));
    }
    for (const PlannedConversion& conversion : plan.conversions) {
        printConversion(conversion);
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

void PlanPrinter::printConversion(const PlannedConversion& conversion) {
    const QString program = tools_.tool(conversion.tool);
    if (form_ == Form::Json) {
        terminal_.print(
            jsonLine({{QStringLiteral("event"), QStringLiteral("plan")},
                      {QStringLiteral("source"), conversion.source},
                      {QStringLiteral("output"), conversion.output},
                      {QStringLiteral("command"),
                       QJsonArray::fromStringList(QStringList(program) + conversion.arguments)}}));
        return;
    }
    terminal_.print(
        QStringLiteral("# %1 → %2")
            .arg(text::printable(conversion.source), text::printable(conversion.output)));
    terminal_.print(text::shellCommand(program, conversion.arguments));
}

} // namespace quav
