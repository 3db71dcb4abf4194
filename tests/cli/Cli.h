#pragma once

#include "support/Place.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>
#include <vector>

namespace quav::test {

inline QStringList words(const QString& list) {
    return list.split(u' ', Qt::SkipEmptyParts);
}

/// The command line's real program, in a place whose files it finds in the folder "in" where it
/// works. The place of the last one made is the test's own place too; scripts of the shell know the
/// program as $QUAV.
class Cli : public Place {
public:
    Cli() {
        QDir(folder.path()).mkdir(u"in"_s);
        QDir(folder.path()).mkdir(u"out"_s);
        QDir::setCurrent(folder.path());
        qputenv("QUAV", QUAV_CLI);
        qputenv("QUAV_TOOLS_DIR", QFile::encodeName(toolsDir.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config_.path()));
        qputenv("XDG_STATE_HOME", QFile::encodeName(config_.filePath(u"state"_s)));
    }

    QString in(const QString& name) const { return path(u"in/"_s + name); }
    QString out(const QString& name) const { return path(u"out/"_s + name); }
    QString tool(const QString& name = u"flac"_s) const { return Place::tool(name); }
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
            test::run(u"chown"_s,
                      {u"-R"_s, nobody, folder.path(), config_.path(), toolsDir.path()});
        }
    }

    Ran shell(const QString& script) const { return test::run(u"sh"_s, {u"-c"_s, script}); }

    QString wav(const QString& name, unsigned seed = 1) const {
        return Place::wav(u"in/"_s + name, {.frames = frames, .seed = seed});
    }
    QString flac(const QString& name) const {
        return Place::flac(u"in/"_s + name, {.frames = frames});
    }

    QStringList namesIn(const QString& name) const {
        return QDir(path(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private:
    inline static const QString nobody = u"65534"_s;

    static constexpr int frames = 30011;

    QTemporaryDir config_;
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
