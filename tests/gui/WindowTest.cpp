#include "GuiRig.h"
#include "app/FileKinds.h"
#include "checksums/ChecksumOptions.h"
#include "gui/FileListView.h"
#include "gui/GuiPrompts.h"
#include "gui/TabPage.h"
#include "support/Table.h"
#include "workbench/TabTable.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

#include <functional>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

QTabWidget& pagesOf(GuiRig& rig) {
    return *rig.window.findChild<QTabWidget*>();
}

/// The list of the encode tab, which it brings to the front.
FileListView& encodeList(GuiRig& rig, const QStringList& files = {}) {
    rig.workbench.controller().selectTab(tabs::encode);
    addFiles(rig.encode, files);
    return *pagesOf(rig).currentWidget()->findChild<FileListView*>();
}

QString names(const FileListView& list) {
    QStringList names;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        names << list.model()->index(row, 0).data().toString();
    }
    return names.join(u' ');
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyTabOfTheTableHasItsPage();
    void filesDroppedOnTheListAreListedAndCounted();
    void aCommandInTheBackgroundIsShownAndCanBeCancelled();
    void filesDroppedOnTheWindowGoToTheTabThatTakesThem();
    void filesAreAddedAndRemoved();
    void theContextMenuRemovesOneSpellingOfAnExtension();
    void flacOptionsAppearWithAFlacFile();
    void theWindowStaysWhenTheUserDoesNotWantToClose();
    void quittingWaitsForToolsThatRunUnlessRefused();
    void endingAtOnceAsksNothingAndStopsTheTools_data();
    void endingAtOnceAsksNothingAndStopsTheTools();
    void theLineDialogGivesWhatWasTypedUnlessCancelled();
    void aQuestionIsAnsweredByItsButtons_data();
    void aQuestionIsAnsweredByItsButtons();
};

void WindowTest::everyTabOfTheTableHasItsPage() {
    GuiRig rig;
    QUAVController& controller = rig.workbench.controller();
    QStringList labels;
    for (const TabRow& row : tabTable()) {
        labels << row.label;
        controller.selectTab(row.label);
        const QTabWidget& pages = pagesOf(rig);
        QCOMPARE(pages.tabText(pages.currentIndex()), row.title());
        QCOMPARE(qobject_cast<TabPage*>(pages.currentWidget()) != nullptr, row.make != nullptr);
        QCOMPARE(controller.tab(row.label) != nullptr, row.make != nullptr);
        QCOMPARE(row.command != nullptr, row.make != nullptr);
    }
    QCOMPARE(controller.tabLabels(), labels);
}

void WindowTest::filesDroppedOnTheListAreListedAndCounted() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    QVERIFY(dropOn(*list.viewport(), {rig.wav(u"two.wav"_s), rig.wav(u"one.wav"_s)}));
    QTRY_COMPARE(names(list), u"one.wav two.wav"_s);
    QVERIFY(shown<QLabel>(rig.window, "2 files"));
    QVERIFY(shown<QPushButton>(rig.window, "Encode 2 files …"));
    const auto format = [&list](int row) {
        return list.model()->index(row, FileList::Format).data().toString();
    };
    QTRY_COMPARE(format(1), u"16/44.1"_s);
    QVERIFY(shown<QLabel>(rig.window, "2 files · 0:05 · 800 kB"));
    QVERIFY(list.isColumnHidden(FileList::Folder));
    const QStringList paths = rig.encode.fileNames();
    const auto clickName = [&list] {
        QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, {}, {20, 5});
    };
    clickName();
    clickName();
    QCOMPARE(names(list), u"two.wav one.wav"_s);
    QCOMPARE(rig.encode.fileNames(), paths);
    clickName();
    QCOMPARE(names(list), u"one.wav two.wav"_s);
}

void WindowTest::aCommandInTheBackgroundIsShownAndCanBeCancelled() {
    GuiRig rig;
    const Gate gate(rig, u"metaflac"_s);
    rig.workbench.controller().selectTab(tabs::checksum);
    TabOptions& options = rig.checksum.options();
    options.set(checksumOptions().command, ChecksumCommand::Create);
    options.set(checksumOptions().kind, ChecksumKind::Ffp);
    options.set(checksumOptions().sourceSave, true);
    addFiles(rig.checksum, {rig.noFlac(u"a.flac"_s)});
    press(rig.window, "Create");
    QTRY_VERIFY(shown<QLabel>(rig.window, "Creating the fingerprint file"));
    addFiles(rig.checksum, {rig.noFlac(u"b.flac"_s)});
    press(rig.window, "Create");
    QVERIFY(rig.prompts.alerts.value(0).startsWith(u"This tab is still at work."));
    QTest::mouseClick(shown<QToolButton>(rig.window, "Cancel"), Qt::LeftButton);
    gate.open();
    QTRY_COMPARE(rig.checksum.fileNames(),
                 (QStringList{rig.path(u"a.flac"_s), rig.path(u"b.flac"_s)}));
    QVERIFY(!shown<QLabel>(rig.window, "Creating the fingerprint file"));
    QVERIFY(!QFile::exists(rig.path(u"fingerprint.ffp.txt"_s)));
}

void WindowTest::filesDroppedOnTheWindowGoToTheTabThatTakesThem() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    QDir(rig.folder.path()).mkdir(u"album"_s);
    rig.wav(u"album/1.wav"_s);
    QVERIFY(dropOn(rig.window, {rig.path(u"album"_s)}));
    QTRY_COMPARE(names(list), u"1.wav"_s);
    pagesOf(rig).setCurrentIndex(pagesOf(rig).count() - 1);
    QVERIFY(dropOn(rig.window, {rig.wav(u"later.wav"_s)}));
    QTRY_COMPARE(names(list), u"1.wav later.wav"_s);
    QCOMPARE(pagesOf(rig).tabText(pagesOf(rig).currentIndex()), tabs::encode);
    QVERIFY(rig.decode.fileNames().isEmpty());
}

void WindowTest::filesAreAddedAndRemoved() {
    GuiRig rig;
    FileListView& list = encodeList(rig);
    rig.prompts.files = {rig.wav(u"1.wav"_s), rig.wav(u"2.wav"_s), rig.wav(u"3.wav"_s),
                         rig.wav(u"4.wav"_s)};
    press(rig.window, "Add");
    QTRY_COMPARE(names(list), u"1.wav 2.wav 3.wav 4.wav"_s);
    list.selectionModel()->select({list.model()->index(1, 0), list.model()->index(2, 0)},
                                  QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(&list, Qt::Key_Delete);
    QCOMPARE(names(list), u"1.wav 4.wav"_s);
    QVERIFY(QFile::exists(rig.path(u"2.wav"_s)));
    QVERIFY(!shown<QPushButton>(rig.window, "Remove")->isEnabled());
    list.setCurrentIndex(list.model()->index(0, 0));
    press(rig.window, "Remove");
    QCOMPARE(names(list), u"4.wav"_s);
    press(rig.window, "Clear");
    QCOMPARE(names(list), QString());
}

void WindowTest::theContextMenuRemovesOneSpellingOfAnExtension() {
    GuiRig rig;
    FileListView& list =
        encodeList(rig, {rig.wav(u"1.wav"_s), rig.wav(u"2.WAV"_s), rig.wav(u"3.wav"_s)});
    const auto extensions = [&] {
        Q_EMIT list.contextMenu().aboutToShow();
        return list.contextMenu().actions().at(1)->menu()->actions();
    };
    QCOMPARE(extensions().size(), 2);
    QCOMPARE(extensions().at(1)->text(), u"wav"_s);
    extensions().at(1)->trigger();
    QCOMPARE(names(list), u"2.WAV"_s);
    QCOMPARE(extensions().size(), 1);
    QCOMPARE(extensions().at(0)->text(), u"WAV"_s);
}

void WindowTest::flacOptionsAppearWithAFlacFile() {
    GuiRig rig;
    QVERIFY(!shown<QGroupBox>(rig.window, "FLAC"));
    addFiles(rig.decode, {rig.noFlac(u"a.flac"_s)});
    QVERIFY(shown<QGroupBox>(rig.window, "FLAC"));
    shown<QCheckBox>(rig.window, "Decode through errors")->click();
    QVERIFY(rig.decode.options()[decodeOptions().flacThroughErrors]);
    rig.decode.clearFiles();
    QVERIFY(!shown<QGroupBox>(rig.window, "FLAC"));
}

void WindowTest::theWindowStaysWhenTheUserDoesNotWantToClose() {
    GuiRig rig;
    const QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.prompts.answers = {false, true};
    rig.window.close();
    QVERIFY(rig.window.isVisible());
    QCOMPARE(rig.prompts.questions.back().title, u"Are you sure you want to quit?"_s);
    QVERIFY(finished.isEmpty());
    rig.window.close();
    QVERIFY(!rig.window.isVisible());
    QCOMPARE(finished.size(), 1);
}

void WindowTest::quittingWaitsForToolsThatRunUnlessRefused() {
    EncodingRig rig(2);
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    rig.prompts.answers = {false, true};
    rig.window.quit();
    QVERIFY(rig.prompts.questions.back().message.contains(u" 2 tasks "_s));
    QVERIFY(rig.window.isVisible());
    const auto& rows = rig.queue.rows();
    QVERIFY(!rows.taskAt(0)->cancelled() && !rows.taskAt(1)->cancelled());
    rig.window.quit();
    QVERIFY(!rig.window.isVisible());
    QTRY_COMPARE(rig.queue.taskCount(), 1);
    QVERIFY(rig.panel.isVisible());
    QVERIFY(finished.isEmpty());
    rig.letPass(1);
    QVERIFY(finished.wait(quav::test::patience));
    QVERIFY(QFile::exists(rig.path(u"1.flac"_s)) && !QFile::exists(rig.path(u"2.flac"_s)));
}

void WindowTest::endingAtOnceAsksNothingAndStopsTheTools_data() {
    columns<QString, int>("first", "times");
    row("a tool that obeys", "", 1);
    row("one that does not", "trap '' TERM", 1);
    row("one that does not, said twice", "trap '' TERM", 2);
}
void WindowTest::endingAtOnceAsksNothingAndStopsTheTools() {
    QFETCH(QString, first);
    QFETCH(int, times);
    EncodingRig rig(2, first);
    QSignalSpy finished(&rig.window, &MainWindow::finished);
    for (int i = 0; i < times; ++i) {
        rig.window.endAtOnce();
    }
    QVERIFY(finished.isEmpty());
    QVERIFY(finished.wait(quav::test::patience));
    QCOMPARE(rig.queue.taskCount(), 0);
    QCOMPARE(rig.prompts.questions.size(), 0);
    QVERIFY(!QFile::exists(rig.path(u"1.flac"_s)) && !QFile::exists(rig.path(u"2.flac"_s)));
}

void WindowTest::theLineDialogGivesWhatWasTypedUnlessCancelled() {
    GuiPrompts prompts;
    const auto typeAndPress = [&](const char* button) {
        QTimer::singleShot(0, qApp, [button] {
            QWidget& dialog = *QApplication::activeModalWidget();
            QVERIFY(shown<QLabel>(dialog, "New name"));
            QTest::keyClicks(dialog.findChild<QLineEdit*>(), u"Abbey"_s);
            press(dialog, button);
        });
        return prompts.askForLine(u"Rename"_s, u"New name"_s, u"Old"_s);
    };
    QCOMPARE(typeAndPress("OK"), std::optional(u"Abbey"_s));
    QCOMPARE(typeAndPress("Cancel"), std::nullopt);
}

void WindowTest::aQuestionIsAnsweredByItsButtons_data() {
    QTest::addColumn<bool>("defaultAffirms");
    QTest::addColumn<QByteArray>("pressed");
    QTest::addColumn<bool>("answer");
    row("default yes", true, QByteArray("Default"), true);
    row("alternate no", true, QByteArray("Other"), false);
    row("Escape, default yes", true, QByteArray(), false);
    row("default no", false, QByteArray("Default"), false);
    row("alternate yes", false, QByteArray("Other"), true);
    row("Escape, default no", false, QByteArray(), false);
}

void WindowTest::aQuestionIsAnsweredByItsButtons() {
    QFETCH(bool, defaultAffirms);
    QFETCH(QByteArray, pressed);
    GuiPrompts prompts;
    QTimer::singleShot(0, qApp, [pressed] {
        auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
        QCOMPARE(box.text(), u"Sure?"_s);
        QCOMPARE(box.informativeText(), u"<b>file</b>"_s);
        QCOMPARE(box.textFormat(), Qt::PlainText);
        QCOMPARE(box.defaultButton()->text(), u"Default"_s);
        if (pressed.isEmpty()) {
            QTest::keyClick(&box, Qt::Key_Escape);
        } else {
            press(box, pressed.constData());
        }
    });
    const bool answer =
        prompts.confirm({u"Sure?"_s, u"<b>file</b>"_s, u"Default"_s, u"Other"_s, defaultAffirms});
    QTEST(answer, "answer");
}

QTEST_MAIN(WindowTest)
#include "WindowTest.moc"
