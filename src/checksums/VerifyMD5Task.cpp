#include "checksums/VerifyMD5Task.h"

#include "platform/PathNames.h"

namespace quav {

VerifyMD5Task::VerifyMD5Task(TaskHost& queue, const QString& fileName,
                             const std::shared_ptr<QUAVTaskResults>& results)
    : VerifyListTask(queue, fileName, results, ChecksumKind::Md5) {}

void VerifyMD5Task::check(const checksumlist::List& list) {
    doCreateMD5(list);
}

void VerifyMD5Task::doCreateMD5(const checksumlist::List& list) {
    QStringList paths;
    for (const Line& line : list.lines) {
        if (line.entry) {
            paths << pathOf(line);
        }
    }
    const auto count = static_cast<qsizetype>(list.lines.size());
    size_t next = 0;
    const auto passInvalidLines = [&] {
        for (; next < list.lines.size() && !list.lines[next].entry; ++next) {
            concludeInvalid(list.lines[next]);
        }
    };
    passInvalidLines();
    if (next < list.lines.size()) {
        showEntry(list.lines[next].entry->name, next, count);
    }
    FileHash::md5HashesOfFilesAtPaths(
        paths,
        [&](qsizetype index, const FileHash::Digest& digest) {
            const Line& line = list.lines[next];
            ++next;
            take(line, paths[index], digest);
            passInvalidLines();
            // The next one is what is being worked at now.
            const Line& current = next < list.lines.size() ? list.lines[next] : line;
            showEntry(current.entry->name, next, count);
        },
        [this](double share) {
            raiseProgress(share);
            return !stopRequested();
        });
    deliver();
}

void VerifyMD5Task::take(const Line& line, const QString& path, const FileHash::Digest& digest) {
    const QString ok = QStringLiteral("OK");
    const QString failed = QStringLiteral("FAILED");
    const QString found = digest.value_or(QString());
    const auto words = [&](bool matches) { return matches ? ok : failed; };
    const bool matches = digest && found == line.entry->digest;
    QString strictWords = invalidFormat();
    if (line.strict) {
        strictWords = words(digest && strictPath(line) == path && found == line.strict->digest);
    }
    Verdict verdict{fileName(),         path,  matches ? Verdict::Kind::Ok : Verdict::Kind::Failed,
                    line.entry->digest, found, {}};
    if (!digest) {
        verdict = checksumfiles::unreadable(fileName(), path, digest.error().code);
        verdict.expected = line.entry->digest;
    }
    conclude(lastPathComponent(path), words(matches), strictWords, verdict);
}

} // namespace quav
