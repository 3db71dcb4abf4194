#pragma once

#include "checksums/ChecksumOptions.h"
#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"
#include "engine/QUAVTaskResults.h"
#include "platform/Settings.h"
#include "support/AudioFixtures.h"
#include "support/FakeDesktop.h"
#include "support/ScriptedPrompts.h"
#include "workbench/Workbench.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace quav::test {

/// The whole program without a face, in a folder of its own and with the real tools: those of the
/// build, which are found in QUAV_TOOLS, and those of the system.
struct Bench {
    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    const bool hasOwnState =
        qputenv("XDG_STATE_HOME", QFile::encodeName(folder.filePath(u"state"_s)));
    Settings settings{folder.filePath(u"settings.ini"_s)};
    ScriptedPrompts prompts;
    FakeDesktop desktop;
    Workbench workbench{settings, prompts, desktop, realTools(toolsDir)};
    EncodeTab& encode = workbench.encodeTab();
    DecodeTab& decode = workbench.decodeTab();
    ChecksumTab& checksum = workbench.checksumTab();
    QStringList failed;  ///< titles
    QStringList reports; ///< texts of the windows
    Verdicts verdicts;   ///< of the last one of them

    Bench() {
        QDir(folder.path()).mkdir(u"out"_s);
        QUAVTaskQueue& queue = workbench.queue();
        QObject::connect(&queue, &QUAVTaskQueue::taskFinished, &queue,
                         [this](const std::shared_ptr<QUAVTask>& task) {
                             if (task->error()) {
                                 failed << task->title();
                             }
                         });
        QObject::connect(
            &queue, &QUAVTaskQueue::outputWindowRequested, &queue,
            [this](const ReportText& text, const QString& /*title*/, const Verdicts& found) {
                reports << text.text();
                verdicts = found;
            });
    }

    static ToolsFolder realTools(const QTemporaryDir& dir) {
        for (const char* tool :
             {"flac", "metaflac", "wavpack", "wvunpack", "shntool", "mac", "ttaenc", "shorten"}) {
            const QString name = QString::fromLatin1(tool);
            const QString ours = QStringLiteral(QUAV_TOOLS "/") + name;
            QFile::link(QFile::exists(ours) ? ours : QStandardPaths::findExecutable(name),
                        dir.filePath(name));
        }
        return ToolsFolder(dir.path());
    }

    /// A shell script in the place of a tool.
    void replaceTool(const QString& name, const QString& script) const {
        QFile file(toolsDir.filePath(name));
        file.remove();
        file.open(QIODevice::WriteOnly);
        file.write("#!/bin/sh\n" + script.toUtf8());
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    QString path(const QString& name) const { return folder.filePath(name); }
    QString out(const QString& name) const { return path(u"out/"_s + name); }

    CommandOutcome press(BaseTab& tab) {
        prompts.folders.push_back(path(u"out"_s));
        return tab.executeCommand();
    }

    /// Presses the tab's button and waits until nothing is left to do.
    void run(BaseTab& tab) {
        QSignalSpy idle(&workbench.queue(), &QUAVTaskQueue::becameIdle);
        QCOMPARE(press(tab), CommandOutcome::Queued);
        QTRY_VERIFY(idle.count() > 0 && workbench.queue().taskCount() == 0);
    }

    QStringList outputs() const {
        return QDir(path(u"out"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QString written(const QString& name, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return path(name);
    }

    QString wav(const QString& name, const WavShape& shape = {}) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        writeWav(path(name), shape);
        return path(name);
    }

    /// A FLAC file made by the tool itself.
    QString flac(const QString& name, const WavShape& shape = {}) const {
        const QString source = wav(u"source of fixture.wav"_s, shape);
        QDir().mkpath(QFileInfo(path(name)).path());
        test::run(u"flac"_s,
                  {u"-s"_s, u"-f"_s, u"-T"_s, u"TITLE=Größe"_s, source, u"-o"_s, path(name)});
        QFile::remove(source);
        return path(name);
    }
};

inline void damage(const QString& path, bool truncate) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 middle = file.size() / 2;
    if (truncate) {
        QVERIFY(file.resize(middle));
    } else {
        file.seek(middle);
        const char byte = static_cast<char>(~file.peek(1)[0]);
        QCOMPARE(file.write(&byte, 1), 1);
    }
}

} // namespace quav::test
