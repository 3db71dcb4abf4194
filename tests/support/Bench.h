#pragma once

#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"
#include "codecs/DecodeOptions.h"
#include "codecs/DecodeTab.h"
#include "codecs/EncodeOptions.h"
#include "codecs/EncodeTab.h"
#include "engine/QUAVTaskResults.h"
#include "support/Adding.h"
#include "support/Place.h"
#include "workbench/Workbench.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace quav::test {

/// The whole program without a face.
struct Bench : Place {
    Workbench workbench{settings, prompts, desktop, ToolsFolder(toolsDir.path())};
    EncodeTab& encode = workbench.tab<EncodeTab>();
    DecodeTab& decode = workbench.tab<DecodeTab>();
    ChecksumTab& checksum = workbench.tab<ChecksumTab>();
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

    QString out(const QString& name) const { return path(u"out/"_s + name); }

    /// Presses the tab's button; work that the tab does in the background is waited for.
    CommandOutcome press(BaseTab& tab) {
        prompts.folders.push_back(path(u"out"_s));
        QSignalSpy ended(&tab, &BaseTab::commandEnded);
        const CommandOutcome outcome = tab.executeCommand();
        return outcome == CommandOutcome::Running && ended.wait(patience)
                   ? ended[0][0].value<CommandOutcome>()
                   : outcome;
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
