#pragma once

#include "checksums/FileHash.h"
#include "support/Bench.h"

namespace quav::test {

inline QByteArray md5Of(const QString& path) {
    return FileHash::md5HashOfFileAtPath(path).value_or(QString()).toLatin1();
}

/// The verdicts, each in its word.
inline QString words(const Verdicts& verdicts) {
    QStringList all;
    for (const Verdict& verdict : verdicts) {
        all << word(verdict.kind);
    }
    return all.join(u' ');
}

/// The report on lists, with the bench's folder taken out.
inline QString verify(Bench& bench, const QStringList& lists) {
    bench.checksum.options().set(checksumOptions().command, ChecksumCommand::Verify);
    addFiles(bench.checksum, lists);
    bench.reports.clear();
    bench.run(bench.checksum);
    return bench.reports.join(u"---"_s).remove(bench.folder.path() + u'/');
}

} // namespace quav::test
