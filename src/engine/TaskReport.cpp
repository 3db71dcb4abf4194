#include "engine/TaskReport.h"

#include "engine/QUAVTask.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace quav {

namespace {

constexpr qint64 whereReasonsStand = 1 << 20;
constexpr qsizetype mostCharacters = 5000; // of a reason; more than the longest path has
constexpr size_t mostVerdicts = 10000;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(TaskReport)
};

int notInOrder(const VerdictCounts& files) {
    return files.failed + files.missing + files.unreadable;
}

/// A line for each file that is not in order, but for the one that is the whole task.
QString lines(const TaskReport& report) {
    QString all;
    if (report.outcome == TaskReport::Outcome::Failed) {
        all = Words::tr("%1: %2").arg(report.name, report.withoutName(report.reason)) + u'\n';
    }
    int left = notInOrder(report.files);
    for (const Verdict& verdict : *report.verdicts) {
        if (verdict.kind == Verdict::Kind::Ok) {
            continue;
        }
        --left;
        if (report.outcome != TaskReport::Outcome::Failed || verdict.file != report.source) {
            all += sentence(verdict) + u'\n';
        }
    }
    if (left > 0) {
        all += Words::tr("%1: %Ln more files that are not shown", nullptr, left).arg(report.name) +
               u'\n';
    }
    return all;
}

} // namespace

QString TaskReport::withoutName(const QString& line) const {
    const QString prefix = name + QStringLiteral(": ");
    return line.startsWith(prefix) ? line.mid(prefix.size()) : line;
}

ReportText TaskReport::failureText() const {
    ReportText text;
    if (!said.ending(whereReasonsStand).contains(reason)) {
        text.append(reason + QStringLiteral("\n\n"));
    }
    text.append(said);
    return text;
}

QString nameOf(const QUAVTask& task) {
    const QString source = task.source();
    return source.isEmpty() ? task.title() : lastPathComponent(source);
}

TaskReport reportOf(const QUAVTask& task) {
    TaskReport report;
    report.name = nameOf(task);
    report.source = task.source();
    report.output = task.output();
    report.warnings = task.warnings();
    report.verdicts = task.results()->verdictsOf(task);
    report.files = VerdictCounts(*report.verdicts);
    report.written = task.written();
    report.proof = task.proof();
    if (task.cancelled()) {
        report.outcome = TaskReport::Outcome::Cancelled;
    } else if (task.error()) {
        report.outcome = TaskReport::Outcome::Failed;
        report.reason = task.reason();
        if (report.reason.size() > mostCharacters) {
            report.reason = report.reason.first(mostCharacters) + u'…';
        }
        report.said = task.results()->reportOf(task);
    }
    return report;
}

TaskReport failuresOf(const TaskReport& report) {
    Verdicts bad;
    for (const Verdict& verdict : *report.verdicts) {
        if (verdict.kind != Verdict::Kind::Ok && bad.size() < mostVerdicts) {
            bad.push_back(verdict);
        }
    }
    TaskReport failures = report;
    failures.verdicts = std::make_shared<const Verdicts>(std::move(bad));
    return failures;
}

ReportText failuresText(const std::vector<TaskReport>& reports) {
    ReportText text;
    for (const TaskReport& report : reports) {
        text.append(lines(report));
    }
    for (const TaskReport& report : reports) {
        // One that said nothing but its reason has said it above.
        const QString end = report.said.ending(whereReasonsStand).trimmed();
        if (!end.isEmpty() && end != report.reason) {
            text.append(u'\n' + report.name + u'\n');
            text.append(report.said);
            text.append(QStringLiteral("\n"));
        }
    }
    return text;
}

} // namespace quav
