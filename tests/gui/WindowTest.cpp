#include "GuiRig.h"
#include "app/FileKinds.h"
#include "gui/FileListView.h"
#include "support/Table.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <functional>
#include <tuple>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Tab = std::function<BaseTab&(GuiRig&)>;
using Act = std::function<void(GuiRig&)>;
using Claim = std::function<bool(GuiRig&)>;

QSlider& levelOf(GuiRig& rig) {
    return *rig.window.findChild<QSlider*>();
}

FileListView& listOf(GuiRig& rig, BaseTab& tab) {
    const QList<FileListView*> lists = rig.window.findChildren<FileListView*>();
    for (FileListView* list : lists) {
        if (list->model() == &tab.files()) {
            return *list;
        }
    }
    throw std::runtime_error("no list");
}

FileListView& encodeList(GuiRig& rig) {
    rig.workbench.controller().selectTab(tabs::encode);
    return listOf(rig, rig.workbench.encodeTab());
}

void select(FileListView& list, int first, int last) {
    list.selectionModel()->select({list.model()->index(first, 0), list.model()->index(last, 0)},
                                  QItemSelectionModel::ClearAndSelect);
}

QStringList names(const FileList& files) {
    QStringList names;
    for (int row = 0; row < files.rowCount(); ++row) {
        names << files.index(row, 0).data().toString();
    }
    return names;
}

QMenu* extensionMenu(FileListView& list) {
    Q_EMIT list.contextMenu().aboutToShow();
    return list.contextMenu().actions().at(1)->menu();
}

QStringList texts(const QMenu& menu) {
    QStringList texts;
    const QList<QAction*> actions = menu.actions();
    for (const QAction* action : actions) {
        texts << action->text();
    }
    return texts;
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesDroppedOnTheListAreListedAndCounted();
    void filesDroppedOnTheWindowGoToTheSelectedTab();
    void filesDroppedOnTheAboutTabSelectTheTabThatTakesThem();
    void aDropOfTextIsNotTaken();
    void theAddButtonListsWhatTheUserChose();
    void selectedFilesAreRemovedWithTheDeleteKey();
    void removeIsOfferedOnlyForASelection();
    void theContextMenuRemovesOneSpellingOfAnExtension();
    void theColumnIsAsWideAsTheWidestName();
    void rowsHaveRoomForDotsOnCapitals();
    void theTabsOfTheWindowAndOfTheControllerAreOne();
    void theLevelCannotBeSetWithLax();
    void optionsOfTheTabAndOfThePageAreOne_data();
    void optionsOfTheTabAndOfThePageAreOne();
    void flacOptionsAppearWithAFlacFileAndMoveNothing();
    void theButtonSaysWhetherItIsGoingToAsk();
    void theWindowStaysWhenTheUserDoesNotWantToClose();
    void aRefusedQuitChangesNothing();
    void quittingWaitsForToolsThatRun();
    void endingAtOnceAsksNothingAndStopsTheTools();
    void endingAtOnceCancelsWhatIsAsked();
    void aFreshWindowSaysWhenItIsPainted();
};

void WindowTest::filesDroppedOnTheListAreListedAndCounted() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    QVERIFY(dropOn(*list.viewport(), {rig.wav("two.wav"), rig.wav("one.wav")}));
    QTRY_COMPARE(names(rig.workbench.encodeTab().files()),
                 (QStringList{u"one.wav"_s, u"two.wav"_s}));
    QVERIFY(shown<QLabel>(rig.window, "2 files"));
    QCOMPARE(buttonText(rig.window, "Encode"), u"Encode 2 files …"_s);

    QVERIFY(dropOn(*list.viewport(), {rig.wav("one.wav")}));
    select(list, 0, 0);
    list.deleteSelectedRows();
    QVERIFY(shown<QLabel>(rig.window, "1 file"));
    QCOMPARE(buttonText(rig.window, "Encode"), u"Encode 1 file …"_s);
}

void WindowTest::filesDroppedOnTheWindowGoToTheSelectedTab() {
    GuiRig rig;
    rig.workbench.controller().selectTab(tabs::encode);
    QDir(rig.folder.path()).mkdir(u"album"_s);
    rig.wav("album/1.wav");
    QVERIFY(dropOn(rig.window, {rig.path("album")}));
    QTRY_COMPARE(rig.workbench.encodeTab().fileNames(), QStringList{rig.path("album/1.wav")});
    QVERIFY(rig.workbench.decodeTab().fileNames().isEmpty());
}

void WindowTest::filesDroppedOnTheAboutTabSelectTheTabThatTakesThem() {
    GuiRig rig;
    auto* pages = rig.window.findChild<QTabWidget*>();
    pages->setCurrentIndex(2);
    QVERIFY(dropOn(rig.window, {rig.wav("a.wav")}));
    QTRY_COMPARE(pages->tabText(pages->currentIndex()), tabs::encode);
    QCOMPARE(rig.workbench.encodeTab().fileNames(), QStringList{rig.path("a.wav")});
}

void WindowTest::aDropOfTextIsNotTaken() {
    GuiRig rig;
    QMimeData text;
    text.setText(u"no file"_s);
    for (QWidget* target : {static_cast<QWidget*>(&rig.window), encodeList(rig).viewport()}) {
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(target, &enter);
        QVERIFY(!enter.isAccepted());
    }
}

void WindowTest::theAddButtonListsWhatTheUserChose() {
    GuiRig rig;
    encodeList(rig);
    rig.prompts.files = {rig.wav("a.wav")};
    QTest::mouseClick(shown<QPushButton>(rig.window, "Add"), Qt::LeftButton);
    QCOMPARE(rig.workbench.encodeTab().fileNames(), rig.prompts.files);
    QTest::mouseClick(shown<QPushButton>(rig.window, "Clear"), Qt::LeftButton);
    QVERIFY(rig.workbench.encodeTab().fileNames().isEmpty());
}

void WindowTest::selectedFilesAreRemovedWithTheDeleteKey() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    rig.workbench.encodeTab().addFiles(
        {rig.wav("1.wav"), rig.wav("2.wav"), rig.wav("3.wav"), rig.wav("4.wav")});
    select(list, 1, 2);
    QTest::keyClick(&list, Qt::Key_Delete);
    QCOMPARE(names(rig.workbench.encodeTab().files()), (QStringList{u"1.wav"_s, u"4.wav"_s}));
    QVERIFY(!list.hasSelectedRows());
    QCOMPARE(list.currentIndex().row(), 1);
    QVERIFY(QFile::exists(rig.path("2.wav")));
}

void WindowTest::removeIsOfferedOnlyForASelection() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    rig.workbench.encodeTab().addFiles({rig.wav("1.wav"), rig.wav("2.wav")});
    auto* remove = shown<QPushButton>(rig.window, "Remove");
    QVERIFY(!remove->isEnabled());
    select(list, 0, 0);
    QVERIFY(remove->isEnabled());
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(names(rig.workbench.encodeTab().files()), QStringList{u"2.wav"_s});
    QVERIFY(!remove->isEnabled());
}

void WindowTest::theContextMenuRemovesOneSpellingOfAnExtension() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    rig.workbench.encodeTab().addFiles({rig.wav("1.wav"), rig.wav("2.WAV"), rig.wav("3.wav")});
    QCOMPARE(texts(list.contextMenu()),
             (QStringList{u"Delete selected file(s)"_s, u"Delete files with extension:"_s}));
    QCOMPARE(texts(*extensionMenu(list)), (QStringList{u"WAV"_s, u"wav"_s}));
    extensionMenu(list)->actions().at(1)->trigger();
    QCOMPARE(names(rig.workbench.encodeTab().files()), QStringList{u"2.WAV"_s});
    QCOMPARE(texts(*extensionMenu(list)), QStringList{u"WAV"_s});
}

void WindowTest::theColumnIsAsWideAsTheWidestName() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    const auto leastWidth = [&] { return list.header()->minimumSectionSize(); };
    QCOMPARE(leastWidth(), 211);
    QStringList files;
    for (int i = 0; i < 200; ++i) {
        files << rig.path(qPrintable(u"%1.wav"_s.arg(i)));
    }
    const QString longest = QString(150, u'w') + u".wav"_s;
    rig.workbench.encodeTab().addFiles(files << joinPath(rig.folder.path(), longest));
    QTRY_COMPARE(leastWidth(), qCeil(1.1 * list.fontMetrics().horizontalAdvance(longest)));
    QCOMPARE(list.header()->sectionSize(0), leastWidth());
    rig.workbench.encodeTab().clearFiles();
    QTRY_COMPARE(leastWidth(), 211);
    QTRY_COMPARE(list.header()->sectionSize(0), list.viewport()->width());
}

void WindowTest::rowsHaveRoomForDotsOnCapitals() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    rig.workbench.encodeTab().addFiles({rig.wav("Ähre.wav")});
    QVERIFY(list.visualRect(list.model()->index(0, 0)).height() >= list.fontMetrics().height() + 4);
}

void WindowTest::theTabsOfTheWindowAndOfTheControllerAreOne() {
    GuiRig rig;
    auto* pages = rig.window.findChild<QTabWidget*>();
    QCOMPARE(pages->count(), 3);
    rig.workbench.controller().selectTab(tabs::encode);
    QCOMPARE(pages->tabText(pages->currentIndex()), tabs::encode);
    rig.window.bringToFront();
    QVERIFY(QTest::qWaitForWindowActive(&rig.window));
    QTest::keyClick(&rig.window, Qt::Key_1, Qt::AltModifier);
    QCOMPARE(rig.workbench.controller().selectedTabLabel(), tabs::decode);
    pages->setCurrentIndex(2);
    QCOMPARE(rig.workbench.controller().selectedTabLabel(), tabs::about);
}

void WindowTest::theLevelCannotBeSetWithLax() {
    GuiRig rig;
    encodeList(rig);
    auto* level = rig.window.findChild<QSlider*>();
    QVERIFY(level->isEnabled());
    shown<QCheckBox>(rig.window, "Lax")->click();
    QVERIFY(rig.workbench.encodeTab().flacLax());
    QVERIFY(!level->isEnabled());
    rig.workbench.encodeTab().setFlacLax(false);
    QVERIFY(level->isEnabled());
}

void WindowTest::optionsOfTheTabAndOfThePageAreOne_data() {
    QTest::addColumn<Tab>("page");
    QTest::addColumn<Act>("change");
    QTest::addColumn<Claim>("follows");
    const Tab encode = [](GuiRig& rig) -> BaseTab& { return rig.workbench.encodeTab(); };
    const Tab decode = [](GuiRig& rig) -> BaseTab& { return rig.workbench.decodeTab(); };
    row("level at first", encode, Act([](GuiRig&) {}), Claim([](GuiRig& rig) {
            return levelOf(rig).value() == rig.workbench.encodeTab().flacLevel();
        }));
    row("level of the page", encode, Act([](GuiRig& rig) { levelOf(rig).setValue(2); }),
        Claim([](GuiRig& rig) { return rig.workbench.encodeTab().flacLevel() == 2; }));
    row("number beside the level", encode, Act([](GuiRig& rig) { levelOf(rig).setValue(2); }),
        Claim([](GuiRig& rig) { return shown<QLabel>(rig.window, "2") != nullptr; }));
    row("level of the tab", encode,
        Act([](GuiRig& rig) { rig.workbench.encodeTab().setFlacLevel(7); }),
        Claim([](GuiRig& rig) { return levelOf(rig).value() == 7; }));
    row("verify", encode, Act([](GuiRig& rig) { rig.workbench.encodeTab().setFlacVerify(true); }),
        Claim([](GuiRig& rig) { return shown<QCheckBox>(rig.window, "Verify")->isChecked(); }));
    row("foreign metadata", encode,
        Act([](GuiRig& rig) { shown<QCheckBox>(rig.window, "Keep foreign")->click(); }),
        Claim([](GuiRig& rig) { return rig.workbench.encodeTab().flacKeepForeignMetadata(); }));
    row("deleting sources", encode,
        Act([](GuiRig& rig) { shown<QCheckBox>(rig.window, "Delete the source")->click(); }),
        Claim([](GuiRig& rig) { return rig.workbench.encodeTab().deleteOriginals(); }));
    row("target of the page", decode,
        Act([](GuiRig& rig) { shown<QRadioButton>(rig.window, "AIFF")->click(); }),
        Claim([](GuiRig& rig) { return rig.workbench.decodeTab().outputFormat() == u"AIFF"; }));
    row("target of the tab", decode,
        Act([](GuiRig& rig) { rig.workbench.decodeTab().setOutputFormat(u"AIFF"_s); }),
        Claim([](GuiRig& rig) { return shown<QRadioButton>(rig.window, "AIFF")->isChecked(); }));
}

void WindowTest::optionsOfTheTabAndOfThePageAreOne() {
    QFETCH(Tab, page);
    QFETCH(Act, change);
    QFETCH(Claim, follows);
    GuiRig rig;
    rig.workbench.controller().selectTab(page(rig).label());
    change(rig);
    QVERIFY(follows(rig));
}

void WindowTest::flacOptionsAppearWithAFlacFileAndMoveNothing() {
    GuiRig rig;
    const auto place = [&] {
        auto* target = shown<QGroupBox>(rig.window, "Target");
        auto* output = shown<QGroupBox>(rig.window, "Output");
        QApplication::processEvents();
        return std::tuple(target->geometry(), output->geometry(),
                          target->parentWidget()->minimumSizeHint());
    };
    const auto before = place();
    QVERIFY(!shown<QGroupBox>(rig.window, "FLAC"));
    rig.workbench.decodeTab().addFiles({rig.noFlac("a.flac")});
    QVERIFY(shown<QGroupBox>(rig.window, "FLAC"));
    QCOMPARE(place(), before);
    shown<QCheckBox>(rig.window, "Decode through errors")->click();
    QVERIFY(rig.workbench.decodeTab().decodeFlacThroughErrors());
    rig.workbench.decodeTab().clearFiles();
    QVERIFY(!shown<QGroupBox>(rig.window, "FLAC"));
}

void WindowTest::theButtonSaysWhetherItIsGoingToAsk() {
    GuiRig rig;
    encodeList(rig);
    QVERIFY(!shown<QPushButton>(rig.window, "Encode")->isEnabled());
    rig.workbench.encodeTab().addFiles({rig.wav("a.wav")});
    QVERIFY(shown<QLabel>(rig.window, "Output: asks for a folder"));
    shown<QCheckBox>(rig.window, "Beside the source")->click();
    QCOMPARE(buttonText(rig.window, "Encode"), u"Encode 1 file"_s);
    QVERIFY(shown<QLabel>(rig.window, "Output: beside the sources"));
}

void WindowTest::theWindowStaysWhenTheUserDoesNotWantToClose() {
    GuiRig rig;
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.prompts.answers = {false};
    rig.window.close();
    QVERIFY(rig.window.isVisible());
    QCOMPARE(rig.prompts.questions.back().title, u"Are you sure you want to quit?"_s);
    QVERIFY(finished.isEmpty());
    rig.prompts.answers = {true};
    rig.window.close();
    QVERIFY(!rig.window.isVisible());
    QCOMPARE(finished.size(), 1);
}

void WindowTest::aRefusedQuitChangesNothing() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav"), rig.wav("3.wav")});
    rig.prompts.answers = {false};
    rig.window.quit();
    QVERIFY(rig.prompts.questions.back().message.contains(u" 3 tasks "_s));
    QVERIFY(rig.window.isVisible());
    gate.letPass(3);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
    QVERIFY(QFile::exists(rig.path("3.flac")));
    QVERIFY(finished.isEmpty());
}

void WindowTest::quittingWaitsForToolsThatRun() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav")});
    rig.prompts.answers = {true};
    rig.window.quit();
    QVERIFY(!rig.window.isVisible());
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 1);
    QVERIFY(rig.panel.isVisible());
    QVERIFY(finished.isEmpty());
    gate.letPass(1);
    QVERIFY(finished.wait());
    QVERIFY(!QFile::exists(rig.path("2.flac")));
}

void WindowTest::endingAtOnceAsksNothingAndStopsTheTools() {
    GuiRig rig(1);
    const Gate gate(rig.toolsDir.path(), u"flac"_s);
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav")});
    rig.prompts.questions.clear();
    rig.window.endAtOnce();
    QVERIFY(finished.isEmpty());
    QVERIFY(finished.wait());
    QCOMPARE(rig.workbench.queue().taskCount(), 0);
    QCOMPARE(rig.prompts.questions.size(), 0);
    QVERIFY(!QFile::exists(rig.path("1.flac")) && !QFile::exists(rig.path("2.flac")));
}

void WindowTest::endingAtOnceCancelsWhatIsAsked() {
    GuiRig rig;
    QMessageBox question(&rig.window);
    question.addButton(QMessageBox::Yes);
    question.addButton(QMessageBox::No);
    question.setEscapeButton(QMessageBox::No);
    bool open = false;
    QTimer::singleShot(0, &question, [&] {
        open = question.isVisible();
        rig.window.endAtOnce();
        // So that the test ends whatever becomes of the dialog.
        QTimer::singleShot(0, &question, [&] { question.done(QMessageBox::Yes); });
    });
    QVERIFY(question.exec() != QMessageBox::Yes);
    QVERIFY(open);
}

void WindowTest::aFreshWindowSaysWhenItIsPainted() {
    GuiRig rig;
    QSignalSpy painted(&rig.window, &MainWindow::firstPainted);
    QVERIFY(painted.wait());
    rig.window.repaint();
    QCOMPARE(painted.size(), 1);
}

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
