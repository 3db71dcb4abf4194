#pragma once

#include "engine/ToolsFolder.h"
#include "platform/Settings.h"
#include "platform/Translations.h"
#include "support/AudioFixtures.h"
#include "support/FakeDesktop.h"
#include "support/ScriptedPrompts.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/stat.h>

#include <stdexcept>

namespace quav::test {

/// A place of a test's own, on which every other rig stands: a folder with what the test makes,
/// settings and state that are nobody's, a desktop and a user that keep a record, and a tools
/// folder with links to the real tools: those of the build first, which are found in QUAV_TOOLS.
class Place {
public:
    Place() {
        qputenv("XDG_STATE_HOME", QFile::encodeName(path(u"state"_s)));
        QStringList names{u"sh"_s};
        for (const ToolDefinition& definition : ToolsFolder::definitions()) {
            names << QString::fromLatin1(definition.name);
        }
        for (const QString& name : names) {
            const QString ours = QStringLiteral(QUAV_TOOLS "/") + name;
            const QString real = QFile::exists(ours) ? ours : QStandardPaths::findExecutable(name);
            if (!real.isEmpty()) {
                QFile::link(real, tool(name));
            }
        }
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    /// The path of a name in the folder; a full path is its own.
    QString path(const QString& name) const { return QDir(folder.path()).filePath(name); }
    QString tool(const QString& name) const { return toolsDir.filePath(name); }

    /// A file, in a folder that is made where it is missing; its path.
    QString written(const QString& name, const QByteArray& bytes) const {
        if (!writeFile(path(name), bytes)) {
            throw std::runtime_error("a file of the test could not be written");
        }
        return path(name);
    }

    QString wav(const QString& name, const WavShape& shape = {}) const {
        writeWav(made(name), shape);
        return path(name);
    }

    /// A FLAC file made by the tool itself.
    QString flac(const QString& name, const WavShape& shape = {}) const {
        const QString source = wav(u"source of fixture.wav"_s, shape);
        test::run(u"flac"_s,
                  {u"-s"_s, u"-f"_s, u"-T"_s, u"TITLE=Größe"_s, source, u"-o"_s, made(name)});
        QFile::remove(source);
        return path(name);
    }

    /// A shell script in the place of a tool.
    void replaceTool(const QString& name, const QString& script) const {
        QFile file(tool(name));
        file.remove();
        file.open(QIODevice::WriteOnly);
        file.write("#!/bin/sh\n" + script.toUtf8());
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    const Translations translations;
    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    Settings settings{folder.filePath(u"settings.ini"_s)};
    ScriptedPrompts prompts;
    FakeDesktop desktop;

private:
    QString made(const QString& name) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        return path(name);
    }
};

/// Puts a script in a tool's place that notes each run and then waits until it is let on.
class Gate {
public:
    /// `before` and `after` are what the script does before it waits and then, as lines of shell;
    /// "$real" is the tool.
    Gate(const Place& place, const QString& tool, const QString& before = u":"_s,
         const QString& after = u":"_s)
        : runs_(place.path(u"runs"_s)), gate_(place.path(u"gate"_s)) {
        // Open for both, so that nobody waits for the other end.
        if (::mkfifo(QFile::encodeName(gate_.fileName()).constData(), S_IRUSR | S_IWUSR) != 0 ||
            !gate_.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            throw std::runtime_error("no gate");
        }
        place.replaceTool(tool, u"real='%1'\n%2\necho >>'%3'\nread -r on <'%4'\n%5\n"_s.arg(
                                    QFile::symLinkTarget(place.tool(tool)), before, runs_,
                                    gate_.fileName(), after));
    }
    /// Nobody is left waiting behind a test that failed.
    ~Gate() { open(); }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    /// Lets so many of the runs on; as a rule all that there will be.
    void open(int runs = 64) const { gate_.write(QByteArray(runs, '\n')); }
    int runs() const { return static_cast<int>(contents(runs_).size()); }

private:
    QString runs_;
    mutable QFile gate_;
};

} // namespace quav::test
