#include "checksums/VerifyST5Task.h"

#include "checksums/ToolWords.h"
#include "platform/OrderedWork.h"
#include "platform/PathNames.h"

namespace quav {

VerifyST5Task::VerifyST5Task(TaskHost& queue, const QString& fileName,
                             const std::shared_ptr<QUAVTaskResults>& results)
    : VerifyListTask(queue, fileName, results, ChecksumKind::St5) {}

void VerifyST5Task::check(const checksumlist::List& list) {
    doCreateST5(list);
}

void VerifyST5Task::doCreateST5(const checksumlist::List& list) {
    OrderedWork<QString>::run(
        list.lines.size(), queue().toolsAtOnce(),
        [&](size_t index) {
            const Line& line = list.lines[index];
            return line.entry && !stopRequested() ? st5(pathOf(line)) : QString();
        },
        [&](size_t index, const QString& computed) {
            const Line& line = list.lines[index];
            if (line.entry) {
                take(line, pathOf(line), computed);
            } else {
                concludeInvalid(line);
            }
            return !stopRequested();
        });
    deliver();
}

/// The digest of one file with the marker behind it, or shntool's warning.
QString VerifyST5Task::st5(const QString& path) {
    showMainLine(lastPathComponent(path));
    QString result;
    const QString folder = folderOf(path);
    runTool(QStringLiteral("shntool"), {QStringLiteral("hash"), path},
            isFolder(folder) ? folder : folderOf(fileName()), [&](const QString& piece) {
                const QString said = processTaskOutput(piece);
                result = said.isEmpty() ? result : said;
            });
    return result;
}

QString VerifyST5Task::processTaskOutput(const QString& text) {
    const QString piece = toolwords::withoutBackspaces(text);
    if (const auto percent = toolwords::hashPiece(piece).percent) {
        showProgress(tr("Verifying: %1%").arg(toolwords::sixDecimals(*percent)), *percent);
    }
    return toolwords::hashResult(piece);
}

void VerifyST5Task::take(const Line& line, const QString& path, const QString& computed) {
    const QString name = lastPathComponent(path);
    // Only the last component: an entry that names a folder never equals it.
    const QString entry = (computed + lastPathComponent(path)).trimmed();
    const QString noMatch = QStringLiteral("did not match shntool md5 file");
    const auto words = [&](bool matches) { return matches ? QStringLiteral("OK") : noMatch; };
    Verdict verdict{fileName(), path, Verdict::Kind::Ok, line.entry->digest, {}, {}};
    if (computed.contains(u"warning")) {
        verdict = checksumfiles::unreadable(fileName(), path, computed);
        verdict.expected = line.entry->digest;
        conclude(name, entry, line.strict ? entry : invalidFormat(), verdict);
        return;
    }
    verdict.found = computed.section(toolwords::hashMarker, 0, 0).trimmed();
    const bool strictlyMatches = strictPath(line) == path && line.text == entry;
    const bool matches = isTolerant() ? verdict.found == line.entry->digest : strictlyMatches;
    if (!matches) {
        verdict.kind = computed.isEmpty() ? Verdict::Kind::Unreadable : Verdict::Kind::Failed;
    }
    conclude(name, words(matches), line.strict ? words(strictlyMatches) : invalidFormat(), verdict);
}

} // namespace quav
