#pragma once

#include "tools/ToolFixtures.h"

#include <QFileInfo>
#include <QtEndian>

namespace quav::test {

inline const auto program = QStringLiteral(QUAV_SHNTOOL);

inline QByteArray samplesOf(const QByteArray& wav) {
    const qsizetype data = wav.indexOf("data");
    return wav.mid(data + 8, qFromLittleEndian<qint32>(wav.constData() + data + 4));
}

/// A folder in which our shntool runs, with one for its outputs, "o".
struct ShntoolFolder : ToolFolder {
    void emptyOutputs() const {
        QDir(path(u"o"_s)).removeRecursively();
        QDir(path({})).mkdir(u"o"_s);
    }

    Ran shntool(const QStringList& arguments, const QString& limit = {}) const {
        QProcess process;
        process.setWorkingDirectory(path({}));
        process.setStandardInputFile(QProcess::nullDevice());
        if (limit.isEmpty()) {
            process.start(program, arguments);
        } else {
            process.start(u"sh"_s,
                          QStringList{u"-c"_s, limit + u"; exec \"$0\" \"$@\""_s, program} +
                              arguments);
        }
        const bool ended = process.waitForFinished(quav::test::patience);
        return {ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Ran shntool(const QString& line) const { return shntool(QProcess::splitCommand(line)); }

    bool make(const QString& command) const {
        QProcess process;
        process.setWorkingDirectory(path({}));
        QStringList words = QProcess::splitCommand(command);
        const QString tool = QFileInfo(program).path() + u'/' + words.first();
        process.start(QFileInfo::exists(tool) ? tool : words.first(), words.mid(1));
        return process.waitForFinished(quav::test::patience) && process.exitCode() == 0;
    }

    QStringList outputs() const {
        return QDir(path(u"o"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
    QByteArray digestOf(const QString& file) const {
        return shntool({u"hash"_s, u"-q"_s, u"--"_s, file}).output.first(32);
    }
};

} // namespace quav::test
