#pragma once

#include "support/AudioFixtures.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <vector>

namespace quav::test {

/// The command line's real program in a place of its own: a folder to work in, settings that are
/// nobody's, and a tools folder with links to the real tools.
class Cli {
public:
    Cli() {
        for (const QString& name : {QStringLiteral("in"), QStringLiteral("out")}) {
            QDir(folder_.path()).mkdir(name);
        }
        QFile::link(QStandardPaths::findExecutable(QStringLiteral("flac")), tool());
    }

    QString path(const QString& name) const { return folder_.filePath(name); }
    QString in(const QString& name) const { return path(QStringLiteral("in/") + name); }
    QString out(const QString& name) const { return path(QStringLiteral("out/") + name); }
    QString tool() const { return tools_.filePath(QStringLiteral("flac")); }
    QString settingsFile() const { return config_.filePath(QStringLiteral("quav/quav.ini")); }

    /// A process that is ready to be started in the working folder.
    void prepare(QProcess& process, const QStringList& arguments) const {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QUAV_TOOLS_DIR"), tools_.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), config_.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder_.path());
        process.setStandardInputFile(QProcess::nullDevice());
        process.setProgram(QStringLiteral(QUAV_CLI));
        process.setArguments(arguments);
    }

    Ran run(const QStringList& arguments) const {
        QProcess process;
        prepare(process, arguments);
        return finished(process);
    }

    /// Runs a script of the shell that knows the program as $QUAV.
    Ran shell(const QString& script) const {
        QProcess process;
        prepare(process, {});
        auto environment = process.processEnvironment();
        environment.insert(QStringLiteral("QUAV"), QStringLiteral(QUAV_CLI));
        process.setProcessEnvironment(environment);
        process.setProgram(QStringLiteral("sh"));
        process.setArguments({QStringLiteral("-c"), script});
        return finished(process);
    }

    Ran encode(const QStringList& arguments) const {
        return run(
            QStringList{QStringLiteral("encode"), QStringLiteral("--to"), QStringLiteral("flac")} +
            arguments);
    }

    Ran decode(const QStringList& arguments) const {
        return run(
            QStringList{QStringLiteral("decode"), QStringLiteral("--to"), QStringLiteral("wav")} +
            arguments);
    }

    QString wav(const QString& name, unsigned seed = 1) const {
        WavShape shape;
        shape.frames = 30011;
        shape.seed = seed;
        writeWav(in(name), shape);
        return in(name);
    }

    /// A FLAC file made by the tool itself.
    QString flac(const QString& name) const {
        const QString source = path(QStringLiteral("source.wav"));
        writeWav(source);
        test::run(QStringLiteral("flac"), {QStringLiteral("-s"), QStringLiteral("-f"), source,
                                           QStringLiteral("-o"), in(name)});
        QFile::remove(source);
        return in(name);
    }

    QStringList namesIn(const QString& name) const {
        return QDir(path(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    static Ran finished(QProcess& process) {
        process.start();
        process.waitForFinished(-1);
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError()};
    }

    QTemporaryDir folder_;
    QTemporaryDir config_;
    QTemporaryDir tools_;
};

inline bool isSoundFlac(const QString& path) {
    return run(QStringLiteral("flac"), {QStringLiteral("-s"), QStringLiteral("-t"), path}).status ==
           0;
}

/// The objects of an output that has one in every line; a line that holds none becomes an empty
/// object.
inline std::vector<QJsonObject> jsonLines(const QByteArray& output) {
    std::vector<QJsonObject> objects;
    for (const QByteArray& line : output.trimmed().split('\n')) {
        objects.push_back(QJsonDocument::fromJson(line).object());
    }
    return objects;
}

inline QStringList words(const QString& list) {
    return list.split(u' ', Qt::SkipEmptyParts);
}

} // namespace quav::test
