#include "checksums/VerifyFFPTask.h"

#include "checksums/Fingerprint.h"
#include "engine/FailureReason.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolOutput.h"
#include "platform/FlacFile.h"
#include "platform/OrderedWork.h"
#include "platform/PathNames.h"

#include <algorithm>

namespace quav {

VerifyFFPTask::VerifyFFPTask(TaskHost& queue, const QString& fileName,
                             const std::shared_ptr<QUAVTaskResults>& results)
    : VerifyListTask(queue, fileName, results, ChecksumKind::Ffp) {}

void VerifyFFPTask::listIsEmpty() {
    setError(true);
}

void VerifyFFPTask::check(const checksumlist::List& list) {
    const QStringList matching = doVerifyFPP(list);
    deliver();
    if (matching.isEmpty() || stopRequested()) {
        return;
    }
    results()->appendResults(
        QStringLiteral("\nVerify Flac Files in %1\n").arg(lastPathComponent(fileName())), *this);
    verifyFlacFilesSync(matching);
    deliver();
}

QStringList VerifyFFPTask::doVerifyFPP(const checksumlist::List& list) {
    QStringList matching;
    readEach<Entry>(
        list, [this](const QString& path) { return fingerprint(path); },
        [&](size_t index, const QString& path, const Entry& read) {
            const Line& line = list.lines[index];
            showEntry(line.entry->name, index + 1, list.allLines);
            if (take(line, path, read)) {
                matching << path;
            }
        });
    std::sort(matching.begin(), matching.end());
    return matching;
}

/// The entry of a file as it should stand in the list, or the tool's complaint.
VerifyFFPTask::Entry VerifyFFPTask::fingerprint(const QString& path) {
    if (const auto complaint = fingerprint::complaintOfSpecialFile(path)) {
        return complaint->trimmed();
    }
    constexpr qsizetype longest = 1 << 20; // of what a tool may go on saying
    QString output;
    const ToolCall call = fingerprint::callFor(path);
    const int status = runTool(call.tool, call.arguments, {}, [&](const QString& piece) {
        if (output.size() + piece.size() <= longest) {
            output += piece;
        }
    });
    return fingerprint::entryOf(path, output, status).map([](const QString& entry) {
        return entry.trimmed();
    });
}

bool VerifyFFPTask::take(const Line& line, const QString& path, const Entry& read) {
    const QString name = lastPathComponent(path);
    const QString actual = read ? *read : read.error();
    Verdict verdict{fileName(), path, Verdict::Kind::Ok, line.entry->digest, {}, {}};
    if (!read || fingerprint::isComplaint(actual)) {
        verdict = checksumfiles::unreadable(fileName(), path, actual);
        verdict.expected = line.entry->digest;
        if (fingerprint::inFile(path) == line.entry->digest) {
            verdict.note += tr("; the fingerprint that its beginning has is that of the list");
        }
        const QString strictWords = line.strict ? name : invalidFormat();
        conclude(actual, name, strictWords, verdict); // the tool's words come first
        return false;
    }
    const QString noMatch = QStringLiteral("did not match fingerprint file");
    const auto words = [&](bool matches) { return matches ? QStringLiteral("OK") : noMatch; };
    verdict.found = actual.section(u':', -1);
    const bool strictlyMatches = line.strict && strictPath(line) == path &&
                                 line.strict->name + u':' + line.strict->digest == actual;
    const bool matches = isTolerant() ? verdict.found == line.entry->digest : strictlyMatches;
    verdict.kind = matches ? Verdict::Kind::Ok : Verdict::Kind::Failed;
    if (matches && fingerprint::isUnset(actual)) {
        verdict.note = fingerprint::unsetNote();
        addWarning(fingerprint::unsetWarning(path));
    }
    conclude(name, words(matches), line.strict ? words(strictlyMatches) : invalidFormat(), verdict);
    return matches;
}

void VerifyFFPTask::verifyFlacFilesSync(const QStringList& paths) {
    showProgress(tr("Verifying FLAC File"), 0);
    QMultiHash<QString, size_t> places; // of the verdicts about each file
    for (size_t i = 0; i < verdicts().size(); ++i) {
        places.insert(verdicts()[i].file, i);
    }
    OrderedWork<Tested>::run(
        static_cast<size_t>(paths.size()), queue().toolsAtOnce(),
        [&](size_t index) {
            return stopRequested() ? Tested{} : test(paths[static_cast<qsizetype>(index)]);
        },
        [&](size_t index, const Tested& tested) {
            if (!stopRequested()) {
                results()->appendResults(tested.log.text(), *this);
                for (const size_t place : places.values(paths[static_cast<qsizetype>(index)])) {
                    noteDamage(verdicts()[place], tested);
                }
            }
            return !stopRequested();
        });
}

VerifyFFPTask::Tested VerifyFFPTask::test(const QString& path) {
    const QString file = lastPathComponent(path);
    Tested tested;
    tested.log = TestLog(queue().spillFile());
    const int status = runTool(
        QStringLiteral("flac"), {QStringLiteral("-t"), path}, {}, [&](const QString& piece) {
            const QString said = processFlacFileOutput(piece, file);
            if (said == u"ok") {
                tested.log.add(QStringLiteral("%1: testing, 100% complete").arg(file));
            }
            if (!said.isEmpty()) {
                tested.log.add(QStringLiteral("%1: %2").arg(file, said));
            }
        });
    if (wasKilled(status)) {
        tested.isJudged = false;
        tested.damage = failureReason({QStringLiteral("flac"), status, {}, false, {}}, {});
    } else if (status != 0) {
        tested.damage = tr("flac found it damaged");
    } else if (const auto count = flacCount(path); count && !count->agrees()) {
        tested.damage = count->difference();
    }
    return tested;
}

QString VerifyFFPTask::processFlacFileOutput(const QString& piece, const QString& file) {
    QString said = tooloutput::flacWords(piece, file);
    if (said.contains(u'%')) {
        const double percent =
            said.section(QStringLiteral(", "), 1, 1).section(u'%', 0, 0).toDouble();
        showProgress(tr("Verifying %1: %2%").arg(file, tooloutput::sixDecimals(percent)), percent);
    }
    return said;
}

void VerifyFFPTask::noteDamage(Verdict& verdict, const Tested& tested) {
    if (!tested.damage.isEmpty() && verdict.kind == Verdict::Kind::Ok) {
        // Nothing is known of a file whose test did not come to its end.
        verdict.kind = tested.isJudged ? Verdict::Kind::Failed : Verdict::Kind::Unreadable;
        verdict.note = tested.damage;
    }
}

} // namespace quav
