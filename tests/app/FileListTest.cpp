#include "app/FactsReader.h"
#include "app/FileKinds.h"
#include "app/QUAVController.h"
#include "codecs/DecodeOptions.h"
#include "codecs/DecodeTab.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "support/Adding.h"
#include "support/AudioFixtures.h"
#include "support/Rig.h"
#include "support/ScriptedPrompts.h"
#include "support/Table.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace quav;
using namespace Qt::StringLiterals;
using namespace quav::test;

namespace {

class NoOptions : public OptionTable {};

/// A tab without work of its own.
class PlainTab : public BaseTab {
public:
    PlainTab(const QString& label, const Services& services) : BaseTab(label, table(), services) {}

    int shown = 0;

    void displayRelevantOptions() override { ++shown; }
    CommandOutcome executeCommand() override { return CommandOutcome::NothingToDo; }

private:
    static const OptionTable& table() {
        static const NoOptions none;
        return none;
    }
};

struct Shell {
    Rig rig;
    test::ScriptedPrompts prompts;
    Services services{rig.settings, prompts, rig.desktop, rig.tools, rig.queue, rig.claims};
    PlainTab decode{tabs::decode, services};
    PlainTab encode{tabs::encode, services};
    QUAVController controller{services};

    Shell() {
        controller.addTab(decode);
        controller.addTab(encode);
    }

    /// Makes empty files in the rig's folder and returns their paths.
    QStringList touch(const QStringList& names) const {
        QStringList paths;
        for (const QString& name : names) {
            paths << rig.path(name);
            QDir().mkpath(folderOf(paths.last()));
            QFile file(paths.last());
            if (!file.open(QIODevice::WriteOnly)) {
                qFatal("cannot make %s", qPrintable(name));
            }
        }
        return paths;
    }

    static QString names(const BaseTab& tab) {
        QStringList names;
        for (const QString& path : tab.fileNames()) {
            names << lastPathComponent(path);
        }
        return names.join(u'|');
    }
};

/// What the columns behind the name read.
QString rowText(const FileList& files, int row) {
    QStringList texts;
    for (int column = FileList::Folder; column < files.columnCount(); ++column) {
        texts << files.index(row, column).data().toString();
    }
    return texts.join(u'|');
}

QStringList list(const char* names) {
    return QString::fromUtf8(names).split(u'|', Qt::SkipEmptyParts);
}

} // namespace

class FileListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesAreListedOnceInNaturalOrder() {
        Shell shell;
        const QAbstractItemModelTester tester(&shell.decode.files());
        const QStringList paths = shell.touch(list("track10.flac|Track2.flac|track1.FLAC"));
        addFiles(shell.decode, paths);
        addFiles(shell.decode, {paths[1], shell.rig.path(u"./track10.flac"_s)});
        shell.decode.addFile(paths[0]);
        QCOMPARE(Shell::names(shell.decode), u"track1.FLAC|Track2.flac|track10.flac");
        addFiles(shell.decode, shell.touch(list("track3.flac")));
        QCOMPARE(Shell::names(shell.decode), u"track1.FLAC|Track2.flac|track3.flac|track10.flac");
        QCOMPARE(shell.decode.files().extensions(), list("FLAC|flac"));
        shell.decode.filterGivenExtension(u"FLAC"_s);
        shell.decode.deleteSelectedRows({0, 2});
        QCOMPARE(Shell::names(shell.decode), u"track3.flac");
        shell.decode.clearButtonClick();
        QCOMPARE(shell.decode.files().rowCount(), 0);
    }

    void whatATabCannotTakeIsSkippedAndSaid_data() {
        columns<QString, QString, QString>("names", "listed", "alert");
        const QString some = u"Some files types were not recognized by this tab and were skipped"_s;
        row("all good", "d/a.flac", "a.flac", "");
        row("some", "d/a.flac|d/b.txt", "a.flac", some);
        row("none", "d/b.txt", "", "File types not supported by this tab");
        row("no extension", "d/a.flac|d/README", "a.flac", some);
        row("bookkeeping", "d/a.flac|d/.DS_Store|d/.TOC.plist", "a.flac", "");
    }
    void whatATabCannotTakeIsSkippedAndSaid() {
        QFETCH(QString, names);
        QFETCH(QString, alert);
        Shell shell;
        shell.touch(names.split(u'|'));
        addFiles(shell.encode, {shell.rig.path(u"d"_s)});
        QTEST(Shell::names(shell.encode), "listed");
        QCOMPARE(shell.prompts.delayedAlerts.join(u'|'), alert);
        QVERIFY(alert.isEmpty() || shell.prompts.lastDelay == std::chrono::milliseconds(500));
        shell.prompts.delayedAlerts.clear();
        shell.rig.settings.set(keys::warnOnFilesSkipped, false);
        addFiles(shell.encode, {shell.rig.path(u"d"_s)});
        QVERIFY(shell.prompts.delayedAlerts.isEmpty());
    }

    void plainAudioIsTakenWhateverItsName() {
        Shell shell;
        const QString odd = shell.rig.path(u"take.bin"_s);
        QVERIFY(writeWav(odd, {.frames = 10}));
        addFiles(shell.encode, {odd});
        QCOMPARE(Shell::names(shell.encode), u"take.bin");
        QVERIFY(!isValidFile(tabs::tags, shell.touch(list("b.bin"))[0]));
        QVERIFY(isValidFile(tabs::checksum, u"/x/anything"_s));
        QVERIFY(!isValidFile(tabs::encode, shell.touch(list("no.m4a"))[0]));
    }

    void namesThatAreNotUtf8AreReported() {
        Shell shell;
        QVERIFY(test::run(u"sh"_s, {u"-c"_s, u"touch \"$(printf '%s/\\374.flac' \"$0\")\""_s,
                                    shell.rig.folder.path()})
                    .status == 0);
        addFiles(shell.decode, {shell.rig.folder.path()});
        QVERIFY(shell.prompts.delayedAlerts.join(u'\n').contains(u"not valid UTF-8"));
        shell.prompts.delayedAlerts.clear();
        addFiles(shell.decode, {shell.rig.path(u"\uFFFD.flac"_s)});
        QVERIFY(shell.prompts.delayedAlerts.join(u'\n').contains(u"not valid UTF-8"));
        QCOMPARE(shell.decode.files().rowCount(), 0);
    }

    void filesDroppedOnTheProgramGoToTheRightTab_data() {
        columns<QString, QString, QString, QString, QString>("selected", "names", "decode",
                                                             "encode", "selectedThen");
        row("selected tab", "encode", "a.flac|b.mp3", "", "a.flac", "encode");
        row("about, FLAC", "about", "a.Flac", "a.Flac", "", "decode");
        row("about, WAV", "about", "a.wav", "", "a.wav", "encode");
        row("about, Opus", "about", "a.opus", "a.opus", "", "decode");
        row("about, unknown", "about", "a.mp3", "", "", "encode");
        row("about, several", "about", "a.wav|b.flac", "b.flac", "a.wav", "decode");
    }
    void filesDroppedOnTheProgramGoToTheRightTab() {
        QFETCH(QString, selected);
        QFETCH(QString, names);
        Shell shell;
        shell.controller.selectTab(selected);
        QSignalSpy changed(&shell.controller, &QUAVController::selectedTabChanged);
        shell.controller.addFiles(shell.touch(names.split(u'|')));
        QTRY_VERIFY(!shell.controller.searches().isBusy() && !shell.decode.searches().isBusy() &&
                    !shell.encode.searches().isBusy());
        QTEST(Shell::names(shell.decode), "decode");
        QTEST(Shell::names(shell.encode), "encode");
        QTEST(shell.controller.selectedTabViewItem(), "selectedThen");
        QVERIFY(shell.prompts.delayedAlerts.isEmpty());
    }

    void foldersDroppedOnTheProgramAreSearched() {
        Shell shell;
        shell.touch(list("d/e/a.flac|d/.DS_Store|d/README"));
        shell.controller.selectTab(tabs::encode);
        QCOMPARE(shell.encode.shown, 1);
        shell.controller.addFiles({shell.rig.path(u"d"_s)});
        QTRY_COMPARE(Shell::names(shell.encode), u"a.flac");
        shell.controller.selectTab(0);
        QCOMPARE(shell.controller.selectedTabViewItem(), u"decode");
        QCOMPARE(shell.controller.tabLabels(), list("decode|encode|about"));
    }

    void quittingAsksWhileTasksAreQueued_data() {
        columns<int, bool, bool>("tasks", "answer", "quits");
        row("empty queue", 0, false, true);
        row("three, no", 3, false, false);
        row("three, yes", 3, true, true);
    }
    void quittingAsksWhileTasksAreQueued() {
        QFETCH(int, tasks);
        QFETCH(bool, answer);
        Shell shell;
        for (int i = 0; i < tasks; ++i) {
            shell.rig.queue.addTask(std::make_shared<QUAVTask>(shell.rig.queue));
        }
        shell.prompts.answers = {answer};
        QTEST(shell.controller.applicationShouldTerminate(), "quits");
        QCOMPARE(shell.prompts.questions.size(), tasks > 0 ? 1U : 0U);
        if (tasks > 0) {
            const Question& asked = shell.prompts.questions[0];
            QCOMPARE(asked.title, u"Tasks in Progress");
            QCOMPARE(asked.message,
                     u"There are 3 tasks in the queue.  Are you sure you want to quit?");
            QCOMPARE(asked.defaultButton, u"No");
        }
        shell.prompts.answers = {false};
        QVERIFY(!shell.controller.windowShouldClose());
        QCOMPARE(shell.prompts.questions.back().alternateButton, u"Quit");
    }

    void dropsAreReadOneAfterTheOtherAndCanBeCancelled() {
        Shell shell;
        const QStringList paths = shell.touch(list("d/a.flac|d/b.flac|c.flac"));
        QStringList lists;
        QObject::connect(&shell.decode, &BaseTab::filesRead, &shell.decode,
                         [&] { lists << Shell::names(shell.decode); });
        shell.decode.addFiles({shell.rig.path(u"d"_s)});
        shell.decode.addFiles({paths[2]});
        QVERIFY(Shell::names(shell.decode).isEmpty());
        QTRY_COMPARE(lists, (QStringList{u"a.flac|b.flac"_s, u"c.flac|a.flac|b.flac"_s}));
        shell.decode.clearFiles();
        QSignalSpy read(&shell.decode, &BaseTab::filesRead);
        shell.decode.addFiles({shell.rig.path(u"d"_s)});
        shell.decode.addFiles({paths[2]});
        shell.decode.endWork();
        QTRY_COMPARE(read.size(), 2);
        QVERIFY(!read[0][0].toBool() && shell.decode.fileNames().isEmpty());
        BaseTab& gone = *new PlainTab(tabs::decode, shell.services);
        gone.addFiles({shell.rig.path(u"d"_s)});
        delete &gone; // waits for the search
    }

    void factsAreShownAsTheyAreRead_data() {
        columns<QByteArray, WavShape, QString, int>("name", "shape", "texts", "misalignment");
        row("CD", QByteArray("a.wav"), WavShape{.frames = 44100}, u"|0:01|16/44.1|176 kB"_s, 0);
        row("CD, misaligned", QByteArray("a.wav"), WavShape{.frames = 44101},
            u"|0:01|16/44.1|176 kB"_s, 4);
        row("mono", QByteArray("a.wav"), WavShape{.frames = 48000, .channels = 1, .rate = 48000},
            u"|0:01|16/48 mono|96 kB"_s, 0);
        row("surround", QByteArray("a.wav"),
            WavShape{.frames = 192000, .channels = 6, .bits = 24, .rate = 96000},
            u"|0:02|24/96, 6 ch|3 MB"_s, 0);
        row("FLAC", QByteArray("a.flac"), WavShape{.frames = 88204, .bits = 24},
            u"|0:02|24/44.1|"_s, 0);
        row("FLAC, misaligned", QByteArray("a.flac"), WavShape{.frames = 589}, u"|0:00|16/44.1|"_s,
            4);
        row("no audio", QByteArray("a.txt"), WavShape{}, u"|||2 bytes"_s, 0);
    }
    void factsAreShownAsTheyAreRead() {
        QFETCH(QByteArray, name);
        QFETCH(WavShape, shape);
        QFETCH(QString, texts);
        Shell shell;
        const QString path = shell.rig.path(QString::fromLatin1(name));
        const QString wav = shell.rig.path(u"a.wav"_s);
        QVERIFY(writeWav(wav, shape));
        if (name.endsWith("flac")) {
            QCOMPARE(test::run(u"flac"_s, {u"-s"_s, wav, u"-o"_s, path}).status, 0);
        } else if (name.endsWith("txt")) {
            QFile text(path);
            QVERIFY(text.open(QIODevice::WriteOnly) && text.write("x\n") > 0);
        }
        QSignalSpy finished(&shell.decode.facts(), &FactsReader::finished);
        shell.decode.addFile(path);
        shell.decode.facts().start();
        QVERIFY(finished.wait(test::patience));
        const QString shown = rowText(shell.decode.files(), 0);
        QVERIFY2(shown.startsWith(texts), qPrintable(shown));
        const FileFacts* facts = shell.decode.options().facts().of(path);
        QVERIFY(facts);
        QTEST(facts->misalignment, "misalignment");
    }

    void aFlacFileTakesNoFactsFromTheOthers() {
        Shell shell;
        DecodeTab tab(shell.services);
        const QString first = shell.rig.path(u"a.wv"_s);
        const QString flac = shell.rig.path(u"b.flac"_s);
        QVERIFY(writeWav(first) && writeWav(flac));
        QSignalSpy finished(&tab.facts(), &FactsReader::finished);
        tab.facts().start();
        tab.addFile(first);
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(tab.options().facts().of(first));
        QVERIFY(!tab.options().applies(decodeOptions().flacThroughErrors.info()));
        tab.addFile(flac);
        QVERIFY(tab.options().facts().of(first));
        QVERIFY(tab.options().applies(decodeOptions().flacThroughErrors.info()));
        tab.clearFiles();
        QVERIFY(!tab.options().applies(decodeOptions().flacThroughErrors.info()));
    }

    void factsAreReadAnewWhenAFileChanges() {
        Shell shell;
        const QString first = shell.rig.path(u"a.wav"_s);
        const QString second = shell.rig.path(u"b.wav"_s);
        QVERIFY(writeWav(first, {.frames = 44100}));
        QVERIFY(writeWav(second, {.frames = 22050}));
        FactsReader& facts = shell.decode.facts();
        facts.start();
        shell.decode.addFoundFiles({first, second, shell.rig.path(u"none.wav"_s)});
        shell.decode.addFile(shell.rig.path(u"c.wav"_s));
        QTRY_COMPARE(facts.length(), std::chrono::milliseconds(1500));
        QTRY_COMPARE(facts.bytes(), qint64(66150 * 4 + 2 * 44));
        QVERIFY(writeWav(first, {.frames = 88200}));
        QFile touched(first);
        QVERIFY(touched.open(QIODevice::ReadWrite) &&
                touched.setFileTime(QDateTime::fromSecsSinceEpoch(1),
                                    QFileDevice::FileModificationTime));
        touched.close();
        shell.decode.filterGivenExtension(u"none"_s);
        QTRY_COMPARE(facts.length(), std::chrono::milliseconds(2500));
        shell.decode.deleteSelectedRows({1});
        QCOMPARE(facts.length(), std::chrono::milliseconds(2000));
        shell.decode.clearFiles();
        QCOMPARE(facts.bytes(), 0);
    }

    void sortingTheRowsKeepsTheOrderOfThePaths_data() {
        columns<int, Qt::SortOrder, QString>("column", "order", "rows");
        const QString paths = u"b.wav/CD1 a.wav/CD2 c.wav/CD10"_s;
        row("not", -1, Qt::AscendingOrder, paths);
        row("name", int(FileList::Name), Qt::AscendingOrder, u"a.wav/CD2 b.wav/CD1 c.wav/CD10"_s);
        row("folder", int(FileList::Folder), Qt::DescendingOrder,
            u"c.wav/CD10 a.wav/CD2 b.wav/CD1"_s);
        row("length", int(FileList::Length), Qt::AscendingOrder,
            u"a.wav/CD2 c.wav/CD10 b.wav/CD1"_s);
        row("size", int(FileList::Size), Qt::DescendingOrder, u"b.wav/CD1 c.wav/CD10 a.wav/CD2"_s);
    }
    void sortingTheRowsKeepsTheOrderOfThePaths() {
        QFETCH(int, column);
        QFETCH(Qt::SortOrder, order);
        Shell shell;
        FileList& files = shell.decode.files();
        const QAbstractItemModelTester tester(&files);
        const QStringList paths = shell.touch(list("CD1/b.wav|CD2/a.wav|CD10/c.wav"));
        QVERIFY(writeWav(paths[0], {.frames = 3000}) && writeWav(paths[1], {.frames = 1000}) &&
                writeWav(paths[2], {.frames = 2000}));
        shell.decode.facts().start();
        QSignalSpy finished(&shell.decode.facts(), &FactsReader::finished);
        files.sort(column, order);
        shell.decode.addFoundFiles(paths);
        QTRY_VERIFY(!finished.isEmpty());
        const auto shown = [&] {
            QStringList rows;
            for (int row = 0; row < files.rowCount(); ++row) {
                rows << files.index(row, FileList::Name).data().toString() + u'/' +
                            files.index(row, FileList::Folder).data().toString();
            }
            return rows.join(u' ');
        };
        QTEST(shown(), "rows");
        QCOMPARE(shell.decode.fileNames(), paths);
        const QPersistentModelIndex last = files.index(2, FileList::Name);
        const QString name = last.data().toString();
        files.sort(FileList::Name, Qt::DescendingOrder);
        QCOMPARE(last.data().toString(), name);
        shell.decode.deleteSelectedRows({0});
        QCOMPARE(shell.decode.fileNames(), paths.first(2));
    }

    void theAddButtonTakesTheChosenFiles() {
        Shell shell;
        shell.prompts.files = shell.touch(list("b.flac|a.flac"));
        shell.decode.addButtonClick();
        QTRY_COMPARE(Shell::names(shell.decode), u"a.flac|b.flac");
    }

    void outputFoldersAreListedByExtension() {
        const Shell shell;
        shell.touch(list("a.flac|b.FLAC|c.wav|d/e.flac"));
        QStringList found =
            BaseTab::getFilesFromOutputDirectory(shell.rig.folder.path(), u"flac"_s);
        found.sort();
        QCOMPARE(found, (QStringList{shell.rig.path(u"a.flac"_s), shell.rig.path(u"b.FLAC"_s)}));
    }
};

QTEST_GUILESS_MAIN(FileListTest)
#include "FileListTest.moc"
