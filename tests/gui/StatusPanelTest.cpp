#include "GuiRig.h"
#include "engine/TaskRowsModel.h"
#include "gui/TaskRowDelegate.h"
#include "platform/ClockText.h"

#include <QAction>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

QListView& listOf(StatusPanel& panel) {
    return *panel.findChild<QListView*>();
}

/// Shortcuts work in the active window only.
bool becomesActive(QWidget& window) {
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

QString status(GuiRig& rig, int row) {
    TaskRowsModel& rows = rig.workbench.queue().rows();
    return rows.index(row).data(TaskRowsModel::StatusLineRole).toString();
}

QString mainLine(GuiRig& rig, int row) {
    return rig.workbench.queue().rows().index(row).data().toString();
}

QRect stopButton(QListView& list, int row) {
    QStyleOptionViewItem option;
    option.initFrom(&list);
    option.font = list.font();
    option.rect = list.visualRect(list.model()->index(row, 0));
    return TaskRowDelegate::stopButtonRect(option);
}

/// What a row looks like.
QImage picture(QListView& list, int row) {
    return list.viewport()->grab(list.visualRect(list.model()->index(row, 0))).toImage();
}

template <typename Condition>
int countPixels(const QImage& image, Condition condition) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += condition(image.pixelColor(x, y)) ? 1 : 0;
        }
    }
    return count;
}

bool isRed(const QColor& colour) {
    return colour.red() > colour.green() + 80 && colour.red() > colour.blue() + 80;
}

bool isGreen(const QColor& colour) {
    return colour.green() > colour.red() + 60 && colour.green() > colour.blue() + 60;
}

/// Fails two files, and waits until they have.
void failTwo(GuiRig& rig) {
    rig.start(rig.workbench.decodeTab(), {rig.noFlac("1.flac"), rig.noFlac("2.flac")});
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
    QTRY_VERIFY(shown<QPushButton>(rig.panel, "Clear errors")->isEnabled());
}

} // namespace

class StatusPanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsComeCompleteAndGo();
    void theTitleCountsWhatRunsAndWaits();
    void failedRowsStayAndTellWhatTheToolSaid();
    void rowsThatDidNotFailTellNothing();
    void theDeleteKeyCancelsAWaitingTask();
    void theStopButtonCancelsARunningTask();
    void cancelAllEndsTheQueue();
    void clearErrorsEmptiesAndClosesThePanel();
    void thousandsOfAddedTasksShowThePanelOnce();
    void warningsAreCountedAndShown();
    void rowsArePaintedInTheirColours();
    void outputWindowsStepAside();
    void anOutputWindowThatIsClosedIsForgotten();
    void theTextOfAnOutputWindowIsSaved();
    void aTextThatCannotBeSavedIsReported();
    void timeIsToldAsOnAClock();
};

void StatusPanelTest::rowsComeCompleteAndGo() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.workbench.controller().selectTab(u"encode"_s);
    rig.workbench.encodeTab().addFiles({rig.wav("1.wav"), rig.wav("2.wav")});
    rig.prompts.folders = {rig.folder.path()};
    QTest::mouseClick(shown<QPushButton>(rig.window, "Encode"), Qt::LeftButton);
    QTRY_VERIFY(rig.panel.isVisible());
    QCOMPARE(listOf(rig.panel).model()->rowCount(), 2);
    QVERIFY(rig.workbench.encodeTab().fileNames().isEmpty());

    gate.letPass(1);
    QTRY_COMPARE(status(rig, 0), u"Complete"_s);
    QCOMPARE(mainLine(rig, 0), u"1.wav"_s);
    QCOMPARE(status(rig, 1), u"Waiting..."_s);
    gate.letPass(1);
    QTRY_VERIFY(!rig.panel.isVisible());
    QCOMPARE(listOf(rig.panel).model()->rowCount(), 0);
    QCOMPARE(audioMd5(rig.path("2.flac")), audioMd5(rig.path("2.wav")));
}

void StatusPanelTest::theTitleCountsWhatRunsAndWaits() {
    GuiRig rig(1);
    QCOMPARE(rig.panel.windowTitle(), u"Status"_s);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav"), rig.wav("3.wav")});
    QTRY_COMPARE(rig.panel.windowTitle(), u"Status: 1 running, 2 waiting"_s);
    gate.letPass(1);
    QTRY_VERIFY(rig.panel.windowTitle().startsWith(u"Status: 1 running, 1 waiting"_s));
    gate.letPass(2);
    QTRY_COMPARE(rig.panel.windowTitle(), u"Status"_s);
}

void StatusPanelTest::failedRowsStayAndTellWhatTheToolSaid() {
    GuiRig rig;
    failTwo(rig);
    QVERIFY(rig.panel.isVisible());
    QTRY_COMPARE(rig.panel.windowTitle(), u"Status: 2 failed"_s);
    QListView& list = listOf(rig.panel);
    QCOMPARE(list.model()->rowCount(), 2);
    QCOMPARE(status(rig, 0), u"Error"_s);

    const size_t reports = rig.outputWindows.windows().size();
    list.setCurrentIndex(list.model()->index(1, 0));
    QVERIFY(becomesActive(rig.panel));
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(rig.outputWindows.windows().size(), reports + 1);
    const OutputWindow& window = *rig.outputWindows.windows().back();
    QCOMPARE(window.windowTitle(), mainLine(rig, 1));
    QVERIFY(window.text().contains(mainLine(rig, 1) + u": "_s));
    QVERIFY(window.text().contains(u"ERROR"_s));

    const QPoint firstRow = list.visualRect(list.model()->index(0, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, firstRow);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, firstRow);
    QCOMPARE(rig.outputWindows.windows().size(), reports + 2);
    QCOMPARE(rig.outputWindows.windows().back()->windowTitle(), mainLine(rig, 0));
}

void StatusPanelTest::rowsThatDidNotFailTellNothing() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav")});
    QListView& list = listOf(rig.panel);
    QTRY_VERIFY(rig.panel.isVisible());
    QVERIFY(becomesActive(rig.panel));
    list.setCurrentIndex(list.model()->index(0, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    QVERIFY(rig.outputWindows.windows().empty());
    gate.letPass(1);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
}

void StatusPanelTest::theDeleteKeyCancelsAWaitingTask() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav")});
    QListView& list = listOf(rig.panel);
    QTRY_VERIFY(rig.panel.isVisible());
    QVERIFY(becomesActive(rig.panel));
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Delete);
    QTRY_COMPARE(mainLine(rig, 1), u"Canceled"_s);
    QCOMPARE(mainLine(rig, 0), u"1.wav"_s);
    gate.letPass(1);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
    QVERIFY(QFile::exists(rig.path("1.flac")));
    QVERIFY(!QFile::exists(rig.path("2.flac")));
}

void StatusPanelTest::theStopButtonCancelsARunningTask() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav")});
    QListView& list = listOf(rig.panel);
    QTRY_VERIFY(rig.panel.isVisible());
    const auto running = rig.workbench.queue().rows().taskAt(0);
    const auto waiting = rig.workbench.queue().rows().taskAt(1);
    // A click beside the button, and one where a waiting row would have it, do nothing.
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      stopButton(list, 0).bottomLeft() + QPoint(-4, 4));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, stopButton(list, 1).center());
    QVERIFY(!running->cancelled() && !waiting->cancelled());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, stopButton(list, 0).center());
    QVERIFY(running->cancelled());
    gate.letPass(2);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
    QVERIFY(QFile::exists(rig.path("2.flac")));
}

void StatusPanelTest::cancelAllEndsTheQueue() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.start(rig.workbench.encodeTab(), {rig.wav("1.wav"), rig.wav("2.wav"), rig.wav("3.wav")});
    QPushButton* cancelAll = nullptr;
    QTRY_VERIFY((cancelAll = shown<QPushButton>(rig.panel, "Cancel all")));
    QTRY_VERIFY(cancelAll->isEnabled());
    QTest::mouseClick(cancelAll, Qt::LeftButton);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 1);
    gate.letPass(1);
    QTRY_VERIFY(!rig.panel.isVisible());
    QVERIFY(!QFile::exists(rig.path("3.flac")));
    QTRY_VERIFY(!cancelAll->isEnabled());
}

void StatusPanelTest::clearErrorsEmptiesAndClosesThePanel() {
    GuiRig rig;
    failTwo(rig);
    auto* clear = shown<QPushButton>(rig.panel, "Clear errors");
    QTest::mouseClick(clear, Qt::LeftButton);
    QCOMPARE(listOf(rig.panel).model()->rowCount(), 0);
    QVERIFY(!rig.panel.isVisible());
    QTRY_VERIFY(!clear->isEnabled());
}

void StatusPanelTest::thousandsOfAddedTasksShowThePanelOnce() {
    GuiRig rig;
    class Shows : public QObject {
    public:
        int count = 0;
        bool eventFilter(QObject* watched, QEvent* event) override {
            const bool fronts =
                event->type() == QEvent::Show || event->type() == QEvent::WindowActivate;
            count += fronts ? 1 : 0;
            return QObject::eventFilter(watched, event);
        }
    } shows;
    rig.panel.installEventFilter(&shows);
    for (int i = 0; i < 5000; ++i) {
        Q_EMIT rig.workbench.queue().panelShown();
        Q_EMIT rig.workbench.queue().countsChanged();
    }
    QCOMPARE(shows.count, 0);
    QTRY_VERIFY(rig.panel.isVisible());
    QVERIFY(shows.count <= 2);
}

void StatusPanelTest::warningsAreCountedAndShown() {
    GuiRig rig;
    QVERIFY(!shown<QLabel>(rig.window, "1 warning"));
    QFile cut(rig.wav("cut.wav"));
    QVERIFY(cut.resize(cut.size() / 2));
    rig.start(rig.workbench.encodeTab(), {cut.fileName()});
    QTRY_VERIFY(shown<QLabel>(rig.window, "1 warning"));
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
    const size_t before = rig.outputWindows.windows().size();
    QTest::mouseClick(shown<QPushButton>(rig.window, "Show"), Qt::LeftButton);
    QCOMPARE(rig.outputWindows.windows().size(), before + 1);
    QVERIFY(rig.outputWindows.windows().back()->text().contains(u"unexpected EOF"_s));
}

void StatusPanelTest::rowsArePaintedInTheirColours() {
    GuiRig rig(1);
    Gate gate(rig.toolsDir.path(), u"flac"_s);
    rig.workbench.encodeTab().addFiles({rig.wav("1.wav")});
    rig.prompts.folders = {rig.folder.path(), rig.folder.path()};
    rig.workbench.encodeTab().executeCommand();
    rig.start(rig.workbench.decodeTab(), {rig.noFlac("2.flac"), rig.noFlac("3.flac")});
    gate.letPass(2);
    QTRY_COMPARE(status(rig, 1), u"Error"_s);
    QTRY_VERIFY(rig.panel.isVisible());
    QListView& list = listOf(rig.panel);
    list.setCurrentIndex({});
    QVERIFY(countPixels(picture(list, 0), isGreen) > 20);
    QVERIFY(countPixels(picture(list, 0), isRed) == 0);
    QVERIFY(countPixels(picture(list, 1), isRed) > 20);
    const QImage waiting = picture(list, 2);
    QCOMPARE(countPixels(waiting, isRed) + countPixels(waiting, isGreen), 0);
    const auto isDark = [](const QColor& colour) { return colour.lightness() < 100; };
    QVERIFY(countPixels(waiting, isDark) > 20);
    gate.letPass(1);
    QTRY_COMPARE(rig.workbench.queue().taskCount(), 0);
}

void StatusPanelTest::outputWindowsStepAside() {
    ScriptedPrompts prompts;
    OutputWindows windows(prompts);
    windows.show(u"one\n"_s, u"First"_s);
    windows.show(u"two\n"_s, u"Second\nline"_s);
    const OutputWindow& first = *windows.windows().front();
    const OutputWindow& second = *windows.windows().back();
    QVERIFY(second.pos().x() > first.pos().x() && second.pos().y() > first.pos().y());
    QCOMPARE(second.text(), u"two\n"_s);
    QCOMPARE(second.windowTitle(), u"Second line"_s);
    const auto* view = first.findChild<QPlainTextEdit*>();
    QVERIFY(view->isReadOnly());
    QCOMPARE(view->font().family(), u"Courier"_s);
    QCOMPARE(view->font().pointSize(), 10);
    windows.showNoMore();
    windows.show(u"three"_s, {});
    QCOMPARE(windows.windows().size(), size_t(2));
}

void StatusPanelTest::anOutputWindowThatIsClosedIsForgotten() {
    ScriptedPrompts prompts;
    OutputWindows windows(prompts);
    windows.show(u"one"_s, u"First"_s);
    windows.show(u"two"_s, u"Second"_s);
    OutputWindow* first = windows.windows().front().get();
    QSignalSpy gone(first, &QObject::destroyed);
    QTest::mouseClick(shown<QPushButton>(*first, "Close"), Qt::LeftButton);
    QCOMPARE(windows.windows().size(), size_t(1));
    QCOMPARE(windows.windows().front()->text(), u"two"_s);
    QTRY_COMPARE(gone.size(), 1);
}

void StatusPanelTest::theTextOfAnOutputWindowIsSaved() {
    QTemporaryDir folder;
    ScriptedPrompts prompts;
    OutputWindow window(prompts);
    window.setTextValue(u"Größe\n"_s, u"Report"_s);
    window.show();
    QVERIFY(becomesActive(window));
    prompts.savePath = folder.filePath(u"report.txt"_s);
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(contents(*prompts.savePath), QByteArray("Größe\n"));
    QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!window.isVisible());
}

void StatusPanelTest::aTextThatCannotBeSavedIsReported() {
    QTemporaryDir folder;
    ScriptedPrompts prompts;
    OutputWindow window(prompts);
    window.show();
    prompts.savePath = folder.filePath(u"no such folder/report.txt"_s);
    QTest::mouseClick(shown<QPushButton>(window, "Save"), Qt::LeftButton);
    QCOMPARE(prompts.alerts.size(), 1);
    QVERIFY(prompts.alertMessages.first().startsWith(*prompts.savePath + u": "_s));
}

void StatusPanelTest::timeIsToldAsOnAClock() {
    using namespace std::chrono_literals;
    QCOMPARE(clockText(7s), u"0:07"_s);
    QCOMPARE(clockText(190s), u"3:10"_s);
    QCOMPARE(clockText(3723s), u"1:02:03"_s);
    QCOMPARE(clockText(100h), u"100:00:00"_s);
}

QTEST_MAIN(StatusPanelTest)
#include "StatusPanelTest.moc"
