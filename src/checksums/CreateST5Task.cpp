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
        setTextFieldString(said.fileName);
        push(MainLine);
    }
    if (said.percent) {
        setTopTextFieldString(tr("Creating ST5: %1%").arg(toolwords::sixDecimals(*said.percent)));
        setProgressIndicatorValue(*said.percent);
        push(StatusLine | Bar);
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
    checksumfiles::write(fileName(), results()->resultsOf(*this));
    if (!error()) {
        return;
    }
    // The digests are in the file; what is left to tell is why some are not.
    results()->setResults(complaints_.join(u'\n') + u'\n', *this);
    Verdicts verdicts;
    for (const QString& complaint : complaints_) {
        verdicts.push_back({fileName(), complaint, Verdict::Kind::Unreadable, {}, {}, complaint});
    }
    results()->appendVerdicts(std::move(verdicts), *this);
}

void CreateST5Task::finalCleanup() {
    results()->setHasResults(false);
}

} // namespace quav
