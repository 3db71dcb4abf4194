#include "checksums/CreateST5Task.h"

#include "checksums/ChecksumFiles.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolOutput.h"
#include "engine/ToolOutputReader.h"
#include "engine/ToolsFolder.h"
#include "platform/OrderedWork.h"

#include <algorithm>
#include <csignal>
#include <utility>

namespace quav {

namespace {

const QString shntool = QStringLiteral("shntool");

} // namespace

CreateST5Task::CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                             const QStringList& files)
    : CreateST5Task(fileName, queue, launchPath,
                    HashRun::over(files, launchPath, queue.toolsFolder().environment())) {}

CreateST5Task::CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                             std::vector<HashRun> runs)
    : QUAVAsyncNSTaskFileOutputRedirection(fileName, queue, launchPath, runs.front().arguments()),
      launchPath_(launchPath), runs_(std::move(runs)) {
    setDirectory(runs_.front().folder());
}

void CreateST5Task::startTask() {
    results()->appendResults(checksumfiles::header(ChecksumKind::St5, QDateTime::currentDateTime()),
                             *this);
    QUAVAsyncNSTaskFileOutputRedirection::startTask();
}

void CreateST5Task::terminateTool() {
    children_.signal(SIGTERM);
    QUAVAsyncNSTaskFileOutputRedirection::terminateTool();
}

void CreateST5Task::abandon() {
    abandoned_ = true;
    children_.signal(SIGKILL);
    QUAVAsyncNSTaskFileOutputRedirection::abandon();
}

void CreateST5Task::processTaskOutput(const QString& text) {
    take(text, runs_.front());
}

void CreateST5Task::take(const QString& text, HashRun& run) {
    const QString piece = tooloutput::withoutBackspaces(text);
    const tooloutput::HashPiece said = tooloutput::hashPiece(piece);
    if (!said.fileName.isEmpty()) {
        showMainLine(said.fileName);
    }
    if (said.percent) {
        showProgress(tr("Creating ST5: %1%").arg(tooloutput::sixDecimals(*said.percent)),
                     *said.percent);
    }
    run.take(piece);
}

void CreateST5Task::runToItsEnd(HashRun& run) {
    if (stopRequested()) {
        return;
    }
    ToolOutputReader pieces;
    const auto hand = [&](const QStringList& complete) {
        for (const QString& piece : complete) {
            take(piece, run);
        }
    };
    const auto status =
        runToEnd({launchPath_, run.arguments(), queue().toolsFolder().environment(), run.folder()},
                 children_, [&](const QByteArray& bytes) { hand(pieces.feed(bytes)); });
    hand(pieces.finish());
    if (!status) {
        run.fail(tr("shntool could not be started: %1").arg(status.error()));
    } else if (*status != 0) {
        run.fail(tooloutput::failureOf(shntool, *status));
    }
}

void CreateST5Task::runTheOthers() {
    if (const int status = exitStatus().value_or(0); status != 0) {
        runs_.front().fail(tooloutput::failureOf(shntool, status));
    }
    OrderedWork<bool>::run(
        runs_.size() - 1, queue().toolsAtOnce(),
        [this](size_t index) {
            runToItsEnd(runs_[index + 1]);
            return true;
        },
        [this](size_t /*index*/, bool /*done*/) { return !stopRequested(); });
}

void CreateST5Task::cleanup() {
    runTheOthers();
    // The digests go into the file; what may be left to tell is why some are missing.
    const QString header = results()->resultsOf(*this);
    const QString words = this->words();
    results()->setResults(words, *this);
    if (stopRequested()) {
        return; // an earlier file is better than one with less than everything
    }
    if (std::any_of(runs_.begin(), runs_.end(), [](const HashRun& run) {
            return !run.isComplete() || !run.failure().isEmpty();
        })) {
        setError(true);
    }
    if (const QString told = save(header); !told.isEmpty()) {
        addWarning(told);
        results()->setResults(told + u'\n' + words, *this);
    }
    for (const HashRun& run : runs_) {
        for (const QString& warning : run.warnings()) {
            addWarning(warning);
        }
    }
    results()->appendVerdicts(verdicts(), *this);
}

/// Writes the file if there is anything to write; gives a sentence about an earlier one.
QString CreateST5Task::save(const QString& header) {
    const QStringList lines = entries();
    if (lines.isEmpty()) {
        return {};
    }
    QString text = header;
    for (const QString& line : lines) {
        text += text.size() == 1 ? line : u'\n' + line;
    }
    QString told;
    if (std::all_of(runs_.begin(), runs_.end(),
                    [](const HashRun& run) { return run.isComplete(); })) {
        checksumfiles::write(fileName(), text);
    } else {
        told = checksumfiles::writeIncomplete(fileName(), text);
    }
    noteWritten(fileName());
    return told;
}

/// The lines of all runs, in the order of the files.
QStringList CreateST5Task::entries() const {
    std::vector<HashRun::Entry> all;
    for (const HashRun& run : runs_) {
        all.insert(all.end(), run.entries().begin(), run.entries().end());
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList lines;
    for (HashRun::Entry& entry : all) {
        lines << std::move(entry.second);
    }
    return lines;
}

Verdicts CreateST5Task::verdicts() const {
    Verdicts verdicts;
    for (const HashRun& run : runs_) {
        for (const auto& [file, words, isDamage] : run.remarks()) {
            const auto kind = isDamage ? Verdict::Kind::Failed : Verdict::Kind::Unreadable;
            verdicts.push_back(
                {fileName(), file.isEmpty() ? fileName() : file, kind, {}, {}, words});
        }
    }
    return verdicts;
}

/// A line each.
QString CreateST5Task::words() const {
    QString all;
    for (const HashRun& run : runs_) {
        for (const QString& line : run.words()) {
            all += line + u'\n';
        }
    }
    return all;
}

void CreateST5Task::finalCleanup() {
    results()->setHasResults(error());
}

} // namespace quav
