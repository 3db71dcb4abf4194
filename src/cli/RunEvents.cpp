#include "cli/RunEvents.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "engine/FailureReason.h"
#include "platform/ClockText.h"
#include "platform/ListText.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace quav {

namespace {

QString word(TaskReport::Outcome outcome) {
    switch (outcome) {
    case TaskReport::Outcome::Done:
        return QStringLiteral("done");
    case TaskReport::Outcome::Failed:
        return QStringLiteral("failed");
    case TaskReport::Outcome::Cancelled:
        return QStringLiteral("cancelled");
    }
    return {};
}

/// A line about the task, without its name and fit for a terminal.
QString words(const QString& said, const TaskReport& report) {
    return text::printable(report.withoutName(said));
}

void addTo(QJsonObject& event, const QString& key, const QString& value) {
    if (!value.isEmpty()) {
        event.insert(key, value);
    }
}

QJsonObject asJson(const VerdictCounts& counts) {
    return {{word(Verdict::Kind::Ok), counts.ok},
            {word(Verdict::Kind::Failed), counts.failed},
            {word(Verdict::Kind::Missing), counts.missing},
            {word(Verdict::Kind::Unreadable), counts.unreadable}};
}

QString line(const TaskReport& report) {
    const QString name = text::printable(report.name);
    switch (report.outcome) {
    case TaskReport::Outcome::Done:
        return QCoreApplication::translate("RunEvents", "done: %1").arg(name);
    case TaskReport::Outcome::Failed:
        return QCoreApplication::translate("RunEvents", "failed: %1: %2")
            .arg(name, words(report.reason, report));
    case TaskReport::Outcome::Cancelled:
        return QCoreApplication::translate("RunEvents", "cancelled: %1").arg(name);
    }
    return {};
}

/// What has become of the tasks; of the files first, where files were checked. One that is damaged
/// is not a task that failed, so that a count of none says nothing there, or the wrong thing.
QString inWords(const BatchSummary& summary, std::chrono::seconds time) {
    const VerdictCounts& files = summary.files();
    const bool checked = files.ok > 0 || !files.allOk();
    QStringList parts{
        QCoreApplication::translate("RunEvents", "%Ln done", nullptr, summary.done())};
    if (summary.failed() > 0 || !checked) {
        parts << QCoreApplication::translate("RunEvents", "%Ln failed", nullptr, summary.failed());
    }
    if (summary.cancelled() > 0 || !checked) {
        parts << QCoreApplication::translate("RunEvents", "%Ln cancelled", nullptr,
                                             summary.cancelled());
    }
    if (summary.proven() > 0) {
        parts << QCoreApplication::translate("RunEvents", "%Ln with the sound of the original",
                                             nullptr, summary.proven());
    }
    parts << QCoreApplication::translate("RunEvents", "warnings: %Ln", nullptr, summary.warnings())
          << QCoreApplication::translate("RunEvents", "time %1").arg(clockText(time));
    return checked ? QCoreApplication::translate("RunEvents", "%1; tasks: %2", "files, then tasks")
                         .arg(files.text(), listed(parts))
                   : listed(parts);
}

QJsonObject asJson(const Verdict& verdict) {
    QJsonObject event{{QStringLiteral("event"), QStringLiteral("verdict")},
                      {QStringLiteral("file"), verdict.file},
                      {QStringLiteral("verdict"), word(verdict.kind)}};
    addTo(event, QStringLiteral("list"), verdict.list);
    addTo(event, QStringLiteral("expected"), verdict.expected);
    addTo(event, QStringLiteral("found"), verdict.found);
    addTo(event, QStringLiteral("note"), verdict.note);
    if (verdict.onlySpelling) {
        event.insert(QStringLiteral("onlySpelling"), true);
    }
    return event;
}

QJsonObject asJson(const TaskReport& report) {
    QJsonObject event{{QStringLiteral("event"), QStringLiteral("finished")},
                      {QStringLiteral("title"), report.name},
                      {QStringLiteral("status"), word(report.outcome)},
                      {QStringLiteral("warnings"), QJsonArray::fromStringList(report.warnings)},
                      {QStringLiteral("written"), QJsonArray::fromStringList(report.written)}};
    addTo(event, QStringLiteral("source"), report.source);
    addTo(event, QStringLiteral("output"), report.output);
    addTo(event, QStringLiteral("error"), report.reason);
    if (report.proof.isSameSound) {
        event.insert(QStringLiteral("proven"), QStringLiteral("sound"));
    }
    addTo(event, QStringLiteral("unproven"), report.proof.whyNot);
    return event;
}

} // namespace

TextEvents::TextEvents(Terminal& terminal, Detail detail) : terminal_(terminal), detail_(detail) {}

void TextEvents::stalled(const ToolStall& stall) {
    const QString name = text::printable(stall.title);
    const QString quiet = spanInWords(stall.quiet);
    terminal_.say(
        stall.endedAfter.count() > 0
            ? QCoreApplication::translate("RunEvents",
                                          "stalled: %1: %2 has neither read, written nor printed "
                                          "anything for %3; after %4 it is ended")
                  .arg(name, stall.tool, quiet, spanInWords(stall.endedAfter))
            : QCoreApplication::translate("RunEvents", "stalled: %1: %2 has neither read, written "
                                                       "nor printed anything for %3")
                  .arg(name, stall.tool, quiet));
}

// What a task found out about files stands in its set's report.
void TextEvents::finished(const TaskReport& report) {
    if (detail_ == Detail::EveryTask || report.outcome == TaskReport::Outcome::Failed) {
        terminal_.say(line(report));
    }
    for (const QString& warning : report.warnings) {
        terminal_.say(QCoreApplication::translate("RunEvents", "warning: %1: %2")
                          .arg(text::printable(report.name), words(warning, report)));
    }
}

void TextEvents::report(const QString& /*title*/, const ReportText& text) {
    terminal_.print(text);
}

void TextEvents::summary(const BatchSummary& summary, std::chrono::milliseconds time) {
    if (detail_ != Detail::Nothing) {
        terminal_.say(inWords(summary, std::chrono::ceil<std::chrono::seconds>(time)));
    }
}

void JsonEvents::stalled(const ToolStall& stall) {
    const auto seconds = std::chrono::round<std::chrono::seconds>(stall.quiet);
    QJsonObject event{{QStringLiteral("event"), QStringLiteral("stalled")},
                      {QStringLiteral("title"), stall.title},
                      {QStringLiteral("tool"), stall.tool},
                      {QStringLiteral("seconds"), static_cast<qint64>(seconds.count())}};
    addTo(event, QStringLiteral("source"), stall.source);
    terminal_.print(jsonLine(event));
    TextEvents::stalled(stall);
}

void JsonEvents::finished(const TaskReport& report) {
    terminal_.print(jsonLine(asJson(report)));
    TextEvents::finished(report);
    for (const Verdict& verdict : *report.verdicts) {
        terminal_.print(jsonLine(asJson(verdict)));
    }
}

void JsonEvents::report(const QString& title, const ReportText& text) {
    // A text may be longer than the memory has room for: its line is written as it is read.
    terminal_.printPart(QStringLiteral(R"({"event":"report","text":")"));
    text.read([this](const QByteArray& piece) {
        terminal_.printPart(jsonCharacters(QString::fromUtf8(piece)));
    });
    const QString rest = jsonLine(QJsonObject{{QStringLiteral("title"), title}});
    terminal_.print(QStringLiteral("\",") + rest.mid(1));
}

void JsonEvents::summary(const BatchSummary& summary, std::chrono::milliseconds time) {
    constexpr double millisecondsPerSecond = 1000;
    terminal_.print(jsonLine(
        {{QStringLiteral("event"), QStringLiteral("summary")},
         {QStringLiteral("done"), summary.done()},
         {QStringLiteral("failed"), summary.failed()},
         {QStringLiteral("cancelled"), summary.cancelled()},
         {QStringLiteral("warnings"), summary.warnings()},
         {QStringLiteral("proven"), summary.proven()},
         {QStringLiteral("files"), asJson(summary.files())},
         {QStringLiteral("seconds"), static_cast<double>(time.count()) / millisecondsPerSecond}}));
    TextEvents::summary(summary, time);
}

} // namespace quav
