#pragma once

#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"
#include "gui/MainWindow.h"
#include "gui/OutputWindows.h"
#include "gui/StatusPanel.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "support/Adding.h"
#include "support/AudioFixtures.h"
#include "support/FakeDesktop.h"
#include "support/ScriptedPrompts.h"
#include "workbench/Workbench.h"

#include <QMimeData>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <stdexcept>

namespace quav::test {

using namespace Qt::StringLiterals;

/// The shown widget of a kind below another whose text, without the mnemonic, begins so.
template <typename Widget>
Widget* shown(QWidget& above, const char* text) {
    const QList<Widget*> all = above.findChildren<Widget*>();
    for (Widget* one : all) {
        QString label = one->property("text").toString() + one->property("title").toString();
        if (one->isVisible() && label.remove(u'&').startsWith(QString::fromUtf8(text))) {
            return one;
        }
    }
    return nullptr;
}

/// Presses the button whose text begins so.
inline void press(QWidget& above, const char* text) {
    QTest::mouseClick(shown<QPushButton>(above, text), Qt::LeftButton);
}

/// Keys and shortcuts work in the active window only.
inline bool becomesActive(QWidget& window) {
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window, quav::test::patience);
}

/// Drags files over a widget and drops them. False when the widget does not take them.
inline bool dropOn(QWidget& target, const QStringList& files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) {
        urls << QUrl::fromLocalFile(file);
    }
    data.setUrls(urls);
    const QPoint where = target.rect().center();
    QDragEnterEvent enter(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    const auto taken = [&target](QDropEvent& event) {
        event.ignore();
        QCoreApplication::sendEvent(&target, &event);
        return event.isAccepted();
    };
    return taken(enter) && taken(drop) && drop.dropAction() == Qt::CopyAction;
}

/// The whole program with its windows, over settings and folders of its own and the real `flac`;
/// it runs one tool at a time.
class GuiRig {
public:
    GuiRig()
        : workbench((settings.set(keys::maxThreads, 1), settings), prompts, desktop,
                    ToolsFolder(toolsDir.path())) {
        QFile::link(QStandardPaths::findExecutable(u"flac"_s), tool);
        QObject::connect(&queue, &QUAVTaskQueue::outputWindowRequested, &outputWindows,
                         &OutputWindows::show);
        window.show();
    }

    /// A path in the rig's own folder.
    QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }

    QString wav(const char* name) const {
        writeWav(path(name));
        return path(name);
    }

    /// A file that is called FLAC and is none.
    QString noFlac(const char* name) const { return written(path(name), "This is a text.\n"); }

    /// Has the window put the tab's files to work, with the results in the rig's own folder.
    void start(BaseTab& tab, const QStringList& files) {
        workbench.controller().selectTab(tab.label());
        addFiles(tab, files);
        prompts.folders = {folder.path()};
        press(window, &tab == &encode ? "Encode" : "Decode");
    }

    static QString written(const QString& path, const QByteArray& text) {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(text);
        return path;
    }

    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    QString tool = toolsDir.filePath(u"flac"_s);
    Settings settings{folder.filePath(u"settings.ini"_s)};
    ScriptedPrompts prompts;
    FakeDesktop desktop;
    Workbench workbench;
    QUAVTaskQueue& queue = workbench.queue();
    EncodeTab& encode = workbench.encodeTab();
    DecodeTab& decode = workbench.decodeTab();
    ChecksumTab& checksum = workbench.checksumTab();
    OutputWindows outputWindows{prompts};
    StatusPanel panel{queue, outputWindows};
    MainWindow window{workbench, panel, outputWindows};
};

/// A rig that encodes 1.wav, 2.wav, …; each tool waits to be let pass before it does its work.
class EncodingRig : public GuiRig {
public:
    /// `first` is what the tools do before they wait, as a line of shell.
    explicit EncodingRig(int files, const QString& first = {}) {
        // Open for both, so that nobody waits for the other end.
        if (::mkfifo(QFile::encodeName(gate_.fileName()).constData(), S_IRUSR | S_IWUSR) != 0 ||
            !gate_.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            throw std::runtime_error("no gate");
        }
        const QString script =
            u"#!/bin/sh\n%1\nread -r permission < '%2'\nexec '%3' \"$@\"\n"_s.arg(
                first, gate_.fileName(), QFile::symLinkTarget(tool));
        QFile::remove(tool);
        QFile::setPermissions(written(tool, script.toUtf8()), QFile::ReadOwner | QFile::ExeOwner);
        QStringList sources;
        for (int number = 1; number <= files; ++number) {
            sources << wav(qPrintable(u"%1.wav"_s.arg(number)));
        }
        start(encode, sources);
    }
    /// Nobody is left waiting behind a test that failed.
    ~EncodingRig() { letPass(64); }

    void letPass(int tools) { gate_.write(QByteArray(tools, '\n')); }

private:
    QFile gate_{toolsDir.filePath(u"gate"_s)};
};

} // namespace quav::test
