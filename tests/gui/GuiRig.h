#pragma once

#include "gui/MainWindow.h"
#include "gui/OutputWindows.h"
#include "gui/StatusPanel.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "support/AudioFixtures.h"
#include "support/FakeDesktop.h"
#include "support/ScriptedPrompts.h"
#include "workbench/Workbench.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <sys/stat.h>

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace quav::test {

/// Makes the tools of a folder wait, each for its own permission, before they do their work.
class Gate {
public:
    /// Replaces the tool by one that waits and then becomes the real one.
    Gate(const QString& toolsDir, const QString& tool) {
        const QString fifo = joinPath(toolsDir, QStringLiteral("gate"));
        const QByteArray name = QFile::encodeName(fifo);
        if (::mkfifo(name.constData(), S_IRUSR | S_IWUSR) != 0) {
            throw std::runtime_error("mkfifo");
        }
        // Open for both, so that nobody waits for the other end.
        descriptor_ = ::open(name.constData(), O_RDWR | O_CLOEXEC);
        const QString script = QStringLiteral("#!/bin/sh\nread -r permission < '%1'\nexec '%2' "
                                              "\"$@\"\n")
                                   .arg(fifo, QStandardPaths::findExecutable(tool));
        QFile::remove(joinPath(toolsDir, tool));
        QFile file(joinPath(toolsDir, tool));
        if (!file.open(QIODevice::WriteOnly) || file.write(script.toUtf8()) < 0) {
            throw std::runtime_error("no script");
        }
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~Gate() {
        // Nobody is left waiting behind a test that failed.
        letPass(64);
        ::close(descriptor_);
    }
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    void letPass(int tools) {
        const QByteArray permissions(tools, '\n');
        if (::write(descriptor_, permissions.constData(),
                    static_cast<size_t>(permissions.size())) != permissions.size()) {
            qWarning("The gate is stuck");
        }
    }

private:
    int descriptor_ = -1;
};

/// The whole program with its windows, over settings and folders of its own and the real `flac`.
class GuiRig {
public:
    explicit GuiRig(int maxThreads = 2)
        : workbench(limited(settings, maxThreads), prompts, desktop, ToolsFolder(toolsDir.path())) {
        const QString flac = QStringLiteral("flac");
        QFile::link(QStandardPaths::findExecutable(flac), joinPath(toolsDir.path(), flac));
        QObject::connect(&workbench.queue(), &QUAVTaskQueue::outputWindowRequested, &outputWindows,
                         &OutputWindows::show);
        window.show();
    }

    /// A path in the rig's own folder.
    QString path(const char* name) const {
        return joinPath(folder.path(), QString::fromUtf8(name));
    }

    QString wav(const char* name) const {
        writeWav(path(name));
        return path(name);
    }

    /// A file that is called FLAC and is none.
    QString noFlac(const char* name) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("This is a text.\n") < 0) {
            throw std::runtime_error("no file");
        }
        return file.fileName();
    }

    /// Puts the tab's files to work in the rig's own folder.
    void start(BaseTab& tab, const QStringList& files) {
        tab.addFiles(files);
        prompts.folders = {folder.path()};
        tab.executeCommand();
    }

    QTemporaryDir folder;
    QTemporaryDir toolsDir;
    Settings settings{joinPath(folder.path(), QStringLiteral("settings.ini"))};
    ScriptedPrompts prompts;
    FakeDesktop desktop;
    Workbench workbench;
    OutputWindows outputWindows{prompts};
    StatusPanel panel{workbench.queue(), outputWindows};
    MainWindow window{workbench, panel, outputWindows};

private:
    static Settings& limited(Settings& settings, int maxThreads) {
        settings.set(keys::maxThreads, maxThreads);
        return settings;
    }
};

/// The shown widget of a kind below another whose text, without the mnemonic, begins so.
template <typename Widget>
Widget* shown(QWidget& above, const char* text) {
    const QList<Widget*> all = above.findChildren<Widget*>();
    for (Widget* one : all) {
        QString label = one->property("text").toString();
        label = label.isEmpty() ? one->property("title").toString() : label;
        if (one->isVisible() && label.remove(u'&').startsWith(QString::fromUtf8(text))) {
            return one;
        }
    }
    return nullptr;
}

/// The text of a shown button that begins so, without the mnemonic.
inline QString buttonText(QWidget& above, const char* text) {
    const auto* button = shown<QAbstractButton>(above, text);
    return button ? button->text().remove(u'&') : QString();
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
    enter.ignore();
    QCoreApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) {
        return false;
    }
    QDropEvent drop(where, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    QCoreApplication::sendEvent(&target, &drop);
    return drop.isAccepted() && drop.dropAction() == Qt::CopyAction;
}

} // namespace quav::test
