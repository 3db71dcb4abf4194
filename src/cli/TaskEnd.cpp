#include "cli/TaskEnd.h"

#include "codecs/ConversionTask.h"
#include "engine/QUAVTask.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"

#include <algorithm>

namespace quav {

QString reasonIn(const QString& report) {
    QStringList lines = report.split(u'\n');
    erase_if(lines, [](const QString& line) { return line.trimmed().isEmpty(); });
    const auto speaksOfError = [](const QString& line) { return line.contains(u"ERROR"); };
    const auto found = std::find_if(lines.rbegin(), lines.rend(), speaksOfError);
    if (found != lines.rend()) {
        return found->trimmed();
    }
    return lines.isEmpty() ? QString() : lines.last().trimmed();
}

namespace {

/// Why a task failed: what it noted of its own source, else the best line of its report.
QString reasonOf(const QUAVTask& task) {
    const QString source = task.source();
    for (const Verdict& verdict : task.results()->verdictsOf(task)) {
        if (!source.isEmpty() && verdict.file == source && !verdict.note.isEmpty()) {
            return verdict.note;
        }
    }
    constexpr qint64 readForReason = 1 << 20;
    return reasonIn(task.results()->reportOf(task).ending(readForReason));
}

} // namespace

TaskEnd endOf(const QUAVTask& task) {
    TaskEnd end;
    end.source = task.source();
    end.title = end.source.isEmpty() ? task.title() : lastPathComponent(end.source);
    end.warnings = task.warnings();
    if (task.cancelled()) {
        end.status = TaskEnd::Status::Cancelled;
    } else if (task.error()) {
        end.status = TaskEnd::Status::Failed;
        end.error = reasonOf(task);
    }
    if (const auto* conversion = dynamic_cast<const ConversionTask*>(&task)) {
        end.output = conversion->outputPath();
    }
    return end;
}

} // namespace quav
