#include "cli/TaskEnd.h"

#include "checksums/VerifyListTask.h"
#include "checksums/VerifyToolTask.h"
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

TaskEnd endOf(const QUAVTask& task) {
    TaskEnd end;
    end.title = task.title();
    end.warnings = task.warnings();
    if (task.cancelled()) {
        end.status = TaskEnd::Status::Cancelled;
    } else if (task.error()) {
        end.status = TaskEnd::Status::Failed;
        const Verdicts verdicts = task.results()->verdictsOf(task);
        const bool checks = dynamic_cast<const VerifyToolTask*>(&task) != nullptr ||
                            dynamic_cast<const VerifyListTask*>(&task) != nullptr;
        const bool isNoted = checks && !verdicts.empty() && !verdicts.front().note.isEmpty();
        end.error = isNoted ? verdicts.front().note : reasonIn(task.results()->resultsOf(task));
    }
    if (const auto* test = dynamic_cast<const VerifyToolTask*>(&task)) {
        end.title = lastPathComponent(test->path());
        end.source = test->path();
    }
    if (const auto* list = dynamic_cast<const VerifyListTask*>(&task)) {
        end.source = list->fileName();
    }
    if (const auto* conversion = dynamic_cast<const ConversionTask*>(&task)) {
        end.source = conversion->fileName();
        end.output = conversion->outputPath();
    }
    return end;
}

} // namespace quav
