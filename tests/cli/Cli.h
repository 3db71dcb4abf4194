#pragma once

#include "support/AudioFixtures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>
#include <vector>

namespace quav::test {

using namespace Qt::StringLiterals;

inline QStringList words(const QString& list) {
    return list.split(u' ', Qt::SkipEmptyParts);
}

/// Writes a file, and the folder that it is to be in.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// The command line's real program in a place of its own: a folder to work in, settings that are
/// nobody's, and a tools folder with links to the real tools. The place of the last one made is
/// the test's own place too; scripts of the shell know the program as $QUAV.
class Cli {
public:
    Cli() {
        QDir(folder_.path()).mkdir(u"in"_s);
        QDir(folder_.path()).mkdir(u"out"_s);
        QFile::link(QStandardPaths::findExecutable(u"flac"_s), tool());
        QFile::link(QStandardPaths::findExecutable(u"metaflac"_s), tools_.filePath(u"metaflac"_s));
        QFile::link(QStringLiteral(QUAV_TOOLS "/shntool"), tools_.filePath(u"shntool"_s));
        QDir::setCurrent(folder_.path());
        qputenv("QUAV", QUAV_CLI);
        qputenv("QUAV_TOOLS_DIR", QFile::encodeName(tools_.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config_.path()));
        qputenv("XDG_STATE_HOME", QFile::encodeName(config_.filePath(u"state"_s)));
    }

    QString path(const QString& name) const { return folder_.filePath(name); }
    QString in(const QString& name) const { return path(u"in/"_s + name); }
    QString out(const QString& name) const { return path(u"out/"_s + name); }
    QString tool(const QString& name = u"flac"_s) const { return tools_.filePath(name); }
    QString settingsFile() const { return config_.filePath(u"quav/quav.ini"_s); }

    static QString program() { return QStringLiteral(QUAV_CLI); }
    Ran run(const QString& arguments) const { return test::run(program(), words(arguments)); }
    Ran encode(const QString& arguments) const { return run(u"encode --to flac "_s + arguments); }
    Ran decode(const QString& arguments) const { return run(u"decode --to wav "_s + arguments); }
    /// Runs it as somebody who is not root. Where we are, the place must have been given away.
    Ran runAsOrdinaryUser(const QString& arguments) const {
        if (geteuid() != 0) {
            return run(arguments);
        }
        return test::run(u"setpriv"_s, words(u"--reuid=%1 --regid=%1 --clear-groups"_s.arg(nobody))
                                           << tool(u"quav-cli"_s) << words(arguments));
    }
    /// Gives everything here to that user, and a copy of the program, since not everybody may be
    /// able to enter the folder where it was built.
    void giveAway() const {
        if (geteuid() == 0) {
            QFile::copy(program(), tool(u"quav-cli"_s));
            test::run(u"chown"_s, {u"-R"_s, nobody, folder_.path(), config_.path(), tools_.path()});
        }
    }

    Ran shell(const QString& script) const { return test::run(u"sh"_s, {u"-c"_s, script}); }

    QString wav(const QString& name, unsigned seed = 1) const {
        QDir().mkpath(QFileInfo(in(name)).path());
        writeWav(in(name), {.frames = 30011, .seed = seed});
        return in(name);
    }

    /// A FLAC file made by the tool itself.
    QString flac(const QString& name) const {
        const QString source = wav(u"source.wav"_s);
        test::run(u"flac"_s, words(u"-s --delete-input-file -o"_s) << in(name) << source);
        return in(name);
    }

    QStringList namesIn(const QString& name) const {
        return QDir(path(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    inline static const QString nobody = u"65534"_s;

    QTemporaryDir folder_;
    QTemporaryDir config_;
    QTemporaryDir tools_;
};

inline bool isSoundFlac(const QString& path) {
    return run(u"flac"_s, {u"-s"_s, u"-t"_s, path}).status == 0;
}

/// The objects of an output with one in every line; a line without one becomes an empty object.
inline std::vector<QJsonObject> jsonLines(const QByteArray& output) {
    std::vector<QJsonObject> objects;
    for (const QByteArray& line : output.trimmed().split('\n')) {
        objects.push_back(QJsonDocument::fromJson(line).object());
    }
    return objects;
}

} // namespace quav::test
