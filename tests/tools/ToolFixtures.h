#pragma once

#include "support/AudioFixtures.h"

#include <QDir>
#include <QTemporaryDir>

namespace quav::test {

/// A folder for the files of a test.
struct ToolFolder {
    QTemporaryDir folder;

    QString path(const QString& name) const { return folder.filePath(name); }
    QStringList files() const { return QDir(path({})).entryList(QDir::Files | QDir::Hidden); }
    /// Returns the file's path.
    QString write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) >= 0 ? path(name) : QString();
    }
};

/// Runs a tool between pipes; one that does not end within a minute is killed and has the status
/// -1.
inline Ran pipe(const QString& program, const QStringList& arguments,
                const QByteArray& input = {}) {
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(quav::test::patience)) {
        process.kill();
        process.waitForFinished(quav::test::patience);
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

/// The samples of a file as another program reads them, after its checksums; nothing when that
/// fails.
inline QByteArray judged(const QString& path, int bits) {
    const QString format = bits == 8 ? u"u8"_s : u"s%1le"_s.arg(bits);
    const Ran ran = run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-err_detect"_s, u"crccheck+explode"_s,
                                      u"-i"_s, path, u"-f"_s, format, u"-"_s});
    return ran.status == 0 ? ran.output : QByteArray();
}

} // namespace quav::test
