#include "checksums/VerifyST5Task.h"

#include "engine/ToolOutput.h"
#include "platform/PathNames.h"

namespace quav {

VerifyST5Task::VerifyST5Task(TaskHost& queue, const QString& fileName,
                             const std::shared_ptr<QUAVTaskResults>& results)
    : VerifyListTask(queue, fileName, results, ChecksumKind::St5) {}

void VerifyST5Task::check(const checksumlist::List& list) {
    doCreateST5(list);
}

void VerifyST5Task::doCreateST5(const checksumlist::List& list) {
    readEach<Hashed>(
        list, [this](const QString& path) { return st5(path); },
        [&](size_t index, const QString& path, const Hashed& computed) {
            take(list.lines[index], path, computed);
        });
    deliver();
}

VerifyST5Task::Hashed VerifyST5Task::st5(const QString& path) {
    showMainLine(lastPathComponent(path));
    Hashed hashed;
    const QString folder = folderOf(path);
    runTool(QStringLiteral("shntool"), {QStringLiteral("hash"), path},
            isFolder(folder) ? folder : folderOf(fileName()), [&](const QString& piece) {
                const QString said = processTaskOutput(piece);
                hashed.result = said.isEmpty() ? hashed.result : said;
                // A file's name may have the same words in it.
                if (said.contains(tooloutput::hashWarning) &&
                    tooloutput::withoutBackspaces(piece).startsWith(tooloutput::hashComplaint)) {
                    hashed.warning = said.trimmed();
                }
                hashed.isDamaged = hashed.isDamaged || tooloutput::tellsOfDamage(piece);
            });
    return hashed;
}

QString VerifyST5Task::processTaskOutput(const QString& text) {
    const QString piece = tooloutput::withoutBackspaces(text);
    if (const auto percent = tooloutput::hashPiece(piece).percent) {
        showProgress(tr("Verifying: %1%").arg(tooloutput::sixDecimals(*percent)), *percent);
    }
    return tooloutput::hashResult(piece);
}

void VerifyST5Task::take(const Line& line, const QString& path, const Hashed& computed) {
    const QString name = lastPathComponent(path);
    const QString& result = computed.result;
    // Only the last component: an entry that names a folder never equals it.
    const QString entry = (result + name).trimmed();
    const QString noMatch = QStringLiteral("did not match shntool md5 file");
    const auto words = [&](bool matches) { return matches ? QStringLiteral("OK") : noMatch; };
    Verdict verdict{fileName(), path, Verdict::Kind::Ok, line.entry->digest, {}, {}};
    if (result.contains(u"warning")) {
        verdict = checksumfiles::unreadable(fileName(), path, result);
        verdict.expected = line.entry->digest;
        if (computed.isDamaged && verdict.kind == Verdict::Kind::Unreadable) {
            verdict.kind = Verdict::Kind::Failed;
        }
        conclude(name, entry, line.strict ? entry : invalidFormat(), verdict);
        return;
    }
    if (!computed.warning.isEmpty()) {
        addWarning(tr("“%1”: %2").arg(path, computed.warning));
        verdict.note = computed.warning;
    }
    verdict.found = result.section(tooloutput::hashMarker, 0, 0).trimmed();
    const bool strictlyMatches = strictPath(line) == path && line.text == entry;
    const bool matches = isTolerant() ? verdict.found == line.entry->digest : strictlyMatches;
    if (!matches) {
        verdict.kind = result.isEmpty() ? Verdict::Kind::Unreadable : Verdict::Kind::Failed;
    }
    conclude(name, words(matches), line.strict ? words(strictlyMatches) : invalidFormat(), verdict);
}

} // namespace quav
