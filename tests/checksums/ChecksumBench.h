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

/// Has a list written beside the files.
inline void create(Bench& bench, ChecksumKind kind, const QStringList& files) {
    bench.checksum.options().set(checksumOptions().command, ChecksumCommand::Create);
    bench.checksum.options().set(checksumOptions().kind, kind);
    bench.checksum.options().set(checksumOptions().sourceSave, true);
    addFiles(bench.checksum, files);
    if (kind == ChecksumKind::Ffp) {
        QCOMPARE(bench.press(bench.checksum), CommandOutcome::Done);
    } else {
        bench.run(bench.checksum);
    }
}

/// The entry that a file has by the tools alone.
inline QString entryOf(ChecksumKind kind, const QString& file, const QString& name) {
    switch (kind) {
    case ChecksumKind::Md5:
        return QString::fromLatin1(md5Of(file)) + u" *"_s + name;
    case ChecksumKind::St5:
        return QString::fromLatin1(run(u"shntool"_s, {u"hash"_s, u"-q"_s, file}).output.left(32)) +
               u"  [shntool]  "_s + name;
    case ChecksumKind::Ffp:
        return name + u':' +
               QString::fromLatin1(run(u"metaflac"_s, {u"--show-md5"_s, file}).output.trimmed());
    }
    return {};
}

} // namespace quav::test
