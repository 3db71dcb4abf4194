#include "checksums/CreateST5Task.h"

#include "checksums/ChecksumFiles.h"
#include "checksums/ToolWords.h"
#include "engine/QUAVTaskResults.h"
#include "platform/PathNames.h"

#include <algorithm>
#include <iterator>

namespace quav {

CreateST5Task::CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                             const QStringList& arguments)
    : QUAVAsyncNSTaskFileOutputRedirection(fileName, queue, launchPath, arguments) {}

QStringList CreateST5Task::argumentsFor(const QStringList& files) {
    QStringList names;
    std::transform(files.begin(), files.end(), std::back_inserter(names), lastPathComponent);
    QStringList arguments{QStringLiteral("hash"), QStringLiteral("-m")};
    const bool looksLikeOption = std::any_of(
        names.begin(), names.end(), [](const QString& name) { return name.startsWith(u'-'); });
    if (looksLikeOption) {
        // From here on names that begin with a dash are names.
        arguments << QStringLiteral("--");
    }
    return arguments << names;
}

void CreateST5Task::startTask() {
    results()->appendResults(checksumfiles::header(ChecksumKind::St5, QDateTime::currentDateTime()),
                             *this);
    QUAVAsyncNSTaskFileOutputRedirection::startTask();
}

void CreateST5Task::processTaskOutput(const QString& text) {
    const QString piece = toolwords::withoutBackspaces(text);
    const toolwords::HashPiece said = toolwords::hashPiece(piece);
    if (!said.fileName.isEmpty()) {
        showMainLine(said.fileName);
    }
    if (said.percent) {
        showProgress(tr("Creating ST5: %1%").arg(toolwords::sixDecimals(*said.percent)),
                     *said.percent);
    }
    takeLine(piece.endsWith(u'\n') ? piece.chopped(1) : piece);
}

void CreateST5Task::takeLine(const QString& line) {
    if (line.contains(toolwords::hashMarker)) {
        const bool oneCharacter = results()->resultsOf(*this).size() == 1;
        results()->appendResults(oneCharacter ? line : u'\n' + line, *this);
    } else if (line.startsWith(u"shntool [hash]: ")) {
        complaints_ << line;
    }
}

void CreateST5Task::cleanup() {
    const QString text = results()->resultsOf(*this);
    // The digests go into the file; what may be left to tell is why some are missing.
    results()->setResults(complaints_.isEmpty() ? QString() : complaints_.join(u'\n') + u'\n',
                          *this);
    if (cancelled() || !text.contains(toolwords::hashMarker)) {
        return; // an earlier file is better than one with less than everything
    }
    checksumfiles::write(fileName(), text);
    Verdicts verdicts;
    for (const QString& complaint : complaints_) {
        verdicts.push_back(
            {fileName(), fileIn(complaint), Verdict::Kind::Unreadable, {}, {}, complaint});
    }
    results()->appendVerdicts(std::move(verdicts), *this);
}

/// The file that a complaint names at its end, in brackets; the list itself when it names none.
QString CreateST5Task::fileIn(const QString& complaint) const {
    const qsizetype first = complaint.indexOf(u": [");
    return complaint.endsWith(u']') && first >= 0
               ? complaint.mid(first + 3, complaint.size() - first - 4)
               : fileName();
}

void CreateST5Task::finalCleanup() {
    results()->setHasResults(error());
}

} // namespace quav
