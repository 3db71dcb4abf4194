#pragma once

#include "gui/MainWindow.h"
#include "gui/OutputWindows.h"
#include "gui/StatusPanel.h"
#include "support/Bench.h"

#include <QMimeData>
#include <QPushButton>
#include <QTest>

namespace quav::test {

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

/// The whole program with its windows; it runs one tool at a time.
class GuiRig : public Bench {
public:
    GuiRig() {
        queue.maxThreadsChanged(1);
        QObject::connect(&queue, &QUAVTaskQueue::outputWindowRequested, &outputWindows,
                         &OutputWindows::show);
        window.show();
    }

    /// A file that is called FLAC and is none.
    QString noFlac(const QString& name) const { return written(name, "This is a text.\n"); }

    /// Has the window put the tab's files to work, with the results in the rig's own folder.
    void start(BaseTab& tab, const QStringList& files) {
        workbench.controller().selectTab(tab.label());
        addFiles(tab, files);
        prompts.folders = {folder.path()};
        press(window, &tab == &encode ? "Encode" : "Decode");
    }

    using Bench::press;
    static void press(QWidget& above, const char* text) { test::press(above, text); }

    QUAVTaskQueue& queue = workbench.queue();
    OutputWindows outputWindows{prompts};
    StatusPanel panel{queue, outputWindows};
    MainWindow window{workbench, panel, outputWindows};
};

/// A rig that encodes 1.wav, 2.wav, …; each tool waits to be let pass before it does its work.
class EncodingRig : public GuiRig {
public:
    /// `first` is what the tools do before they wait, as a line of shell.
    explicit EncodingRig(int files, const QString& first = u":"_s)
        : gate_(*this, u"flac"_s, first, u"exec \"$real\" \"$@\""_s) {
        QStringList sources;
        for (int number = 1; number <= files; ++number) {
            sources << wav(u"%1.wav"_s.arg(number));
        }
        start(encode, sources);
    }

    void letPass(int tools) { gate_.open(tools); }

private:
    Gate gate_;
};

} // namespace quav::test
