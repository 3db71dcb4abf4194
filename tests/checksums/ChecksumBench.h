#pragma once

#include "checksums/FileHash.h"
#include "support/Bench.h"

#include <QTest>

#include <sys/stat.h>

#include <stdexcept>

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

/// Puts a script in a tool's place that notes each run, and says nothing more until it is let on.
class Gate {
public:
    /// `words` is what the script prints before it waits.
    Gate(const Bench& bench, const QString& tool, const QString& words = {})
        : runs_(bench.path(u"runs"_s)), gate_(bench.path(u"gate"_s)) {
        // Open for both, so that nobody waits for the other end.
        if (::mkfifo(QFile::encodeName(gate_.fileName()).constData(), S_IRUSR | S_IWUSR) != 0 ||
            !gate_.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            throw std::runtime_error("no gate");
        }
        bench.replaceTool(tool, u"printf '%1'; echo >>'%2'; read -r on <'%3'\n"_s.arg(
                                    words, runs_, gate_.fileName()));
    }
    /// Nobody is left waiting behind a test that failed.
    ~Gate() { open(); }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    void open() const { gate_.write(QByteArray(64, '\n')); }
    int runs() const { return static_cast<int>(contents(runs_).size()); }

private:
    QString runs_;
    mutable QFile gate_;
};

} // namespace quav::test
