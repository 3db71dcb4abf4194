#include "cli/RunEvents.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "engine/FailureReason.h"
#include "platform/ClockText.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace quav {

namespace {

QString word(TaskEnd::Status status) {
    switch (status) {
    case TaskEnd::Status::Done:
        return QStringLiteral("done");
    case TaskEnd::Status::Failed:
        return QStringLiteral("failed");
    case TaskEnd::Status::Cancelled:
        return QStringLiteral("cancelled");
    }
    return {};
}

/// What a tool said, without the file's name if it put that before its words.
QString words(const QString& said, const QString& title) {
    const QString prefix = title + QStringLiteral(": ");
    return text::printable(said.startsWith(prefix) ? said.mid(prefix.size()) : said);
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

QString line(const TaskEnd& end) {
    const QString name = text::printable(end.title);
    switch (end.status) {
    case TaskEnd::Status::Done:
        return QCoreApplication::translate("RunEvents", "done: %1").arg(name);
    case TaskEnd::Status::Failed:
        return QCoreApplication::translate("RunEvents", "failed: %1: %2")
            .arg(name, words(end.error, end.title));
    case TaskEnd::Status::Cancelled:
        return QCoreApplication::translate("RunEvents", "cancelled: %1").arg(name);
    }
    return {};
}

/// What has become of the tasks; of the files first, where files were checked. One that is damaged
/// is not a task that failed, so that a count of none says nothing there, or the wrong thing.
QString counted(const RunSummary& summary) {
    const VerdictCounts& counts = summary.counts;
    if (counts.ok == 0 && counts.allOk()) {
        return QCoreApplication::translate("RunEvents", "%1 done, %2 failed, %3 cancelled")
            .arg(summary.done)
            .arg(summary.failed)
            .arg(summary.cancelled);
    }
    QString text = QCoreApplication::translate("RunEvents", "%1; tasks: %2 done")
                       .arg(counts.text())
                       .arg(summary.done);
    if (summary.failed > 0) {
        text += QCoreApplication::translate("RunEvents", ", %1 failed").arg(summary.failed);
    }
    if (summary.cancelled > 0) {
        text += QCoreApplication::translate("RunEvents", ", %1 cancelled").arg(summary.cancelled);
    }
    return text;
}

} // namespace

TextEvents::TextEvents(Terminal& terminal, Detail detail) : terminal_(terminal), detail_(detail) {}

void TextEvents::stalled(const ToolStall& stall) {
    QString line = QCoreApplication::translate("RunEvents", "stalled: %1: %2 has neither read, "
                                                            "written nor printed anything for %3")
                       .arg(text::printable(stall.title), stall.tool, spanInWords(stall.quiet));
    if (stall.endedAfter.count() > 0) {
        line += QCoreApplication::translate("RunEvents", "; after %1 it is ended")
                    .arg(spanInWords(stall.endedAfter));
    }
    terminal_.say(line);
}

void TextEvents::finished(const TaskEnd& end) {
    if (detail_ == Detail::EveryTask || end.status == TaskEnd::Status::Failed) {
        terminal_.say(line(end));
    }
    for (const QString& warning : end.warnings) {
        terminal_.say(QCoreApplication::translate("RunEvents", "warning: %1: %2")
                          .arg(text::printable(end.title), words(warning, end.title)));
    }
}

void TextEvents::found(const Verdicts& /*verdicts*/) {
    // The report says it.
}

void TextEvents::report(const QString& /*title*/, const ReportText& text) {
    terminal_.print(text);
}

void TextEvents::summary(const RunSummary& summary) {
    if (detail_ == Detail::Nothing) {
        return;
    }
    const auto time = std::chrono::ceil<std::chrono::seconds>(summary.time);
    terminal_.say(QCoreApplication::translate("RunEvents", "%1, warnings: %2, time %3")
                      .arg(counted(summary))
                      .arg(summary.warnings)
                      .arg(clockText(time)));
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

void JsonEvents::finished(const TaskEnd& end) {
    QJsonObject event{{QStringLiteral("event"), QStringLiteral("finished")},
                      {QStringLiteral("title"), end.title},
                      {QStringLiteral("status"), word(end.status)},
                      {QStringLiteral("warnings"), QJsonArray::fromStringList(end.warnings)}};
    addTo(event, QStringLiteral("source"), end.source);
    addTo(event, QStringLiteral("output"), end.output);
    addTo(event, QStringLiteral("error"), end.error);
    terminal_.print(jsonLine(event));
    TextEvents::finished(end);
}

void JsonEvents::found(const Verdicts& verdicts) {
    for (const Verdict& verdict : verdicts) {
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
        terminal_.print(jsonLine(event));
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

void JsonEvents::summary(const RunSummary& summary) {
    constexpr double millisecondsPerSecond = 1000;
    terminal_.print(
        jsonLine({{QStringLiteral("event"), QStringLiteral("summary")},
                  {QStringLiteral("done"), summary.done},
                  {QStringLiteral("failed"), summary.failed},
                  {QStringLiteral("cancelled"), summary.cancelled},
                  {QStringLiteral("warnings"), summary.warnings},
                  {QStringLiteral("files"), asJson(summary.counts)},
                  {QStringLiteral("seconds"),
                   static_cast<double>(summary.time.count()) / millisecondsPerSecond}}));
    TextEvents::summary(summary);
}

} // namespace quav
