#include "GuiRig.h"
#include "engine/TaskRowsModel.h"
#include "gui/SummaryLine.h"
#include "gui/TaskRowDelegate.h"

#include <QListView>

#include <array>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QListView& listOf(GuiRig& rig) {
    return *rig.panel.findChild<QListView*>();
}

QString text(GuiRig& rig, int row, int role = Qt::DisplayRole) {
    return rig.queue.rows().index(row).data(role).toString();
}

QRect rowRect(GuiRig& rig, int row) {
    return listOf(rig).visualRect(listOf(rig).model()->index(row, 0));
}

QRect stopButton(GuiRig& rig, int row) {
    QStyleOptionViewItem option;
    option.initFrom(&listOf(rig));
    option.font = listOf(rig).font();
    option.rect = rowRect(rig, row);
    return TaskRowDelegate::stopButtonRect(option);
}

void click(GuiRig& rig, QPoint where) {
    QTest::mouseClick(listOf(rig).viewport(), Qt::LeftButton, {}, where);
}

void pressKey(GuiRig& rig, int row, Qt::Key key) {
    QVERIFY(becomesActive(rig.panel));
    listOf(rig).setCurrentIndex(listOf(rig).model()->index(row, 0));
    QTest::keyClick(&listOf(rig), key);
}

/// How many pixels of a row have a colour that is no grey.
qsizetype coloured(GuiRig& rig, int row) {
    const QImage image = listOf(rig).viewport()->grab(rowRect(rig, row)).toImage();
    qsizetype count = 0;
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const QColor colour = image.pixelColor(at % image.width(), at / image.width());
        count += colour.hsvSaturation() > 60 ? 1 : 0;
    }
    return count;
}

/// How many pixels of a row are red, green and dark.
std::array<int, 3> painted(GuiRig& rig, int row) {
    const QImage image = listOf(rig).viewport()->grab(rowRect(rig, row)).toImage();
    std::array<int, 3> counts{};
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const QColor colour = image.pixelColor(at % image.width(), at / image.width());
        const auto [red, green, blue] = std::array{colour.red(), colour.green(), colour.blue()};
        counts[0] += red > green + 80 && red > blue + 80 ? 1 : 0;
        counts[1] += green > red + 60 && green > blue + 60 ? 1 : 0;
        counts[2] += colour.lightness() < 100 ? 1 : 0;
    }
    return counts;
}

} // namespace

class StatusPanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsComeCompleteAndGo();
    void failedRowsStayAndTellWhatTheToolSaidUntilCleared();
    void waitingAndRunningTasksAreCancelled();
    void aCancelledRowNamesItsFileAndShowsThatItsToolFinishes();
    void cancelAllEndsTheQueue();
    void aStalledToolIsEndedFromItsRow();
    void rowsArePaintedInTheirColours();
    void theTextOfAnOutputWindowIsSaved();
    void aVeryLongTextIsShownInPartAndSavedWhole();
};

void StatusPanelTest::rowsComeCompleteAndGo() {
    EncodingRig rig(2);
    QTRY_VERIFY(rig.panel.isVisible());
    QCOMPARE(listOf(rig).model()->rowCount(), 2);
    QTRY_COMPARE(rig.panel.windowTitle(), u"Status: 1 running, 1 waiting"_s);
    QVERIFY(rig.encode.fileNames().isEmpty());

    rig.letPass(1);
    QTRY_COMPARE(text(rig, 0, TaskRowsModel::StatusLineRole), u"Complete"_s);
    QCOMPARE(text(rig, 0), u"1.wav"_s);
    QCOMPARE(text(rig, 1, TaskRowsModel::StatusLineRole), u"Waiting..."_s);
    rig.letPass(1);
    QTRY_VERIFY(!rig.panel.isVisible());
    QCOMPARE(listOf(rig).model()->rowCount(), 0);
    QCOMPARE(audioMd5(rig.path(u"2.flac"_s)), audioMd5(rig.path(u"2.wav"_s)));
}

void StatusPanelTest::failedRowsStayAndTellWhatTheToolSaidUntilCleared() {
    GuiRig rig;
    rig.start(rig.decode, {rig.noFlac(u"1.flac"_s), rig.noFlac(u"2.flac"_s)});
    QTRY_COMPARE(rig.queue.taskCount(), 0);
    QTRY_COMPARE(rig.panel.windowTitle(), u"Status: 2 failed"_s);
    QVERIFY(rig.panel.isVisible());
    QCOMPARE(listOf(rig).model()->rowCount(), 2);
    QCOMPARE(text(rig, 0, TaskRowsModel::StatusLineRole), u"Error"_s);
    QCOMPARE(rig.desktop.attentionRequests, 1);
    const auto* summary = shown<SummaryLine>(rig.window, "2 tasks failed: 1.flac, 2.flac");
    QVERIFY(summary && summary->toolTip().contains(u"1.flac"));

    const auto& windows = rig.outputWindows.windows();
    const size_t reports = windows.size();
    pressKey(rig, 1, Qt::Key_Return);
    QCOMPARE(windows.size(), reports + 1);
    QCOMPARE(windows.back()->windowTitle(), text(rig, 1));
    QVERIFY(windows.back()->text().contains(text(rig, 1) + u": "_s));
    QVERIFY(windows.back()->text().contains(u"ERROR"_s));
    click(rig, rowRect(rig, 0).center());
    QTest::mouseDClick(listOf(rig).viewport(), Qt::LeftButton, {}, rowRect(rig, 0).center());
    QCOMPARE(windows.size(), reports + 2);
    QCOMPARE(windows.back()->windowTitle(), text(rig, 0));

    auto* clear = shown<QPushButton>(rig.panel, "Clear errors");
    QTest::mouseClick(clear, Qt::LeftButton);
    QCOMPARE(listOf(rig).model()->rowCount(), 0);
    QVERIFY(!rig.panel.isVisible());
    QTRY_VERIFY(!clear->isEnabled());

    rig.start(rig.decode, {rig.noFlac(u"3.flac"_s)});
    QVERIFY(summary->toolTip().isEmpty());
    QTRY_COMPARE(rig.queue.taskCount(), 0);
}

void StatusPanelTest::waitingAndRunningTasksAreCancelled() {
    EncodingRig rig(3);
    QTRY_VERIFY(rig.panel.isVisible());
    const auto running = rig.queue.rows().taskAt(0);
    pressKey(rig, 0, Qt::Key_Return);
    QVERIFY(rig.outputWindows.windows().empty());
    // A click beside the button does nothing, and a waiting row has none.
    click(rig, stopButton(rig, 0).bottomLeft() + QPoint(-4, 4));
    click(rig, stopButton(rig, 2).center());
    QVERIFY(!running->cancelled() && !rig.queue.rows().taskAt(2)->cancelled());
    pressKey(rig, 1, Qt::Key_Delete);
    QTRY_COMPARE(text(rig, 1), u"Canceled"_s);
    QVERIFY(!running->cancelled());
    click(rig, stopButton(rig, 0).center());
    QVERIFY(running->cancelled());
    rig.letPass(2);
    QTRY_COMPARE(rig.queue.taskCount(), 0);
    QVERIFY(!QFile::exists(rig.path(u"2.flac"_s)) && QFile::exists(rig.path(u"3.flac"_s)));
}

void StatusPanelTest::aCancelledRowNamesItsFileAndShowsThatItsToolFinishes() {
    EncodingRig rig(3);
    QTRY_VERIFY(rig.panel.isVisible());
    const auto running = rig.queue.rows().taskAt(0);
    const auto status = [&](int row) { return text(rig, row, TaskRowsModel::StatusLineRole); };
    const auto hasButton = [&] { return running->row().cancelButtonVisible; };
    // The fullest bar that there is, in a row that is not selected.
    running->setProgressIndicatorValue(100);
    running->push(QUAVTask::Bar);
    listOf(rig).setCurrentIndex({});
    QTRY_VERIFY(coloured(rig, 0) > 1000);
    click(rig, stopButton(rig, 0).center());
    QCOMPARE(text(rig, 0), u"1.wav"_s);
    QVERIFY(status(0).startsWith(u"Canceling · "_s));
    QVERIFY(hasButton());
    listOf(rig).setCurrentIndex({});
    QTRY_VERIFY(coloured(rig, 0) < 100);
    QTest::mouseMove(listOf(rig).viewport(), rowRect(rig, 2).bottomLeft());

    rig.letPass(1);
    QTRY_COMPARE(text(rig, 0), u"Canceled"_s);
    QVERIFY(status(0).startsWith(u"1.wav · "_s));
    QVERIFY(!hasButton());
    rig.queue.rows().taskAt(2)->cancelTask();
    QTRY_COMPARE(text(rig, 2), u"Canceled"_s);
    QCOMPARE(status(2), u"3.wav"_s);
    rig.letPass(1);
    QTRY_COMPARE(rig.desktop.bodies, QStringList(u"1 task is done. 2 tasks were canceled."_s));
}

void StatusPanelTest::cancelAllEndsTheQueue() {
    EncodingRig rig(3);
    QTRY_VERIFY(rig.panel.isVisible());
    auto* cancelAll = shown<QPushButton>(rig.panel, "Cancel all");
    QTRY_VERIFY(cancelAll->isEnabled());
    QTest::mouseClick(cancelAll, Qt::LeftButton);
    QTRY_COMPARE(rig.queue.taskCount(), 1);
    rig.letPass(1);
    QTRY_VERIFY(!rig.panel.isVisible());
    QVERIFY(!QFile::exists(rig.path(u"3.flac"_s)));
    QTRY_VERIFY(!cancelAll->isEnabled());
}

void StatusPanelTest::aStalledToolIsEndedFromItsRow() {
    EncodingRig rig(2);
    rig.queue.stallWatch().setPatience({.look = 20ms, .stalled = 100ms});
    QTRY_VERIFY(text(rig, 0, TaskRowsModel::StatusLineRole).startsWith(u"Stalled for "_s));
    click(rig, stopButton(rig, 0).center());
    QTRY_COMPARE(text(rig, 0, TaskRowsModel::StatusLineRole), u"Error"_s);
    QTRY_VERIFY(text(rig, 1, TaskRowsModel::StatusLineRole).startsWith(u"Stalled for "_s));
    rig.letPass(1);
    QTRY_COMPARE(rig.queue.taskCount(), 0);

    QCOMPARE(listOf(rig).model()->rowCount(), 1);
    pressKey(rig, 0, Qt::Key_Return);
    QVERIFY(rig.outputWindows.windows().back()->text().startsWith(u"flac neither read, wrote"_s));
}

void StatusPanelTest::rowsArePaintedInTheirColours() {
    EncodingRig rig(1);
    rig.start(rig.decode, {rig.noFlac(u"2.flac"_s), rig.noFlac(u"3.flac"_s)});
    rig.letPass(2);
    QTRY_COMPARE(text(rig, 1, TaskRowsModel::StatusLineRole), u"Error"_s);
    QTRY_VERIFY(rig.panel.isVisible());
    listOf(rig).setCurrentIndex({});
    const auto [completeRed, completeGreen, completeDark] = painted(rig, 0);
    QVERIFY(completeGreen > 20 && completeRed == 0);
    QVERIFY(painted(rig, 1).front() > 20);
    const auto [red, green, dark] = painted(rig, 2);
    QVERIFY(dark > 20 && red + green == 0);
    rig.letPass(1);
    QTRY_COMPARE(rig.queue.taskCount(), 0);
}

void StatusPanelTest::theTextOfAnOutputWindowIsSaved() {
    const QTemporaryDir folder;
    ScriptedPrompts prompts;
    OutputWindows windows(prompts);
    windows.show(u"Größe\n"_s, u"Report"_s);
    OutputWindow& window = *windows.windows().front();
    QVERIFY(becomesActive(window));
    prompts.savePath = folder.filePath(u"report.txt"_s);
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(contents(*prompts.savePath), QByteArray("Größe\n"));
    prompts.savePath = folder.filePath(u"no such folder/report.txt"_s);
    press(window, "Save");
    QCOMPARE(prompts.alerts.size(), 1);
    QVERIFY(prompts.alertMessages.first().startsWith(*prompts.savePath + u": "_s));
    press(window, "Close");
    QVERIFY(windows.windows().empty());
}

void StatusPanelTest::aVeryLongTextIsShownInPartAndSavedWhole() {
    const QTemporaryDir folder;
    ScriptedPrompts prompts;
    OutputWindows windows(prompts);
    const QString text = u"first\n"_s + u"Größe\n"_s.repeated(1500000) + u"last\n"_s;
    windows.show(text, u"Report"_s);
    OutputWindow& window = *windows.windows().front();
    QVERIFY(window.text().startsWith(u"first\nGröße\n") &&
            window.text().endsWith(u"Größe\nlast\n"));
    QVERIFY(window.text().contains(u"[About 8 MB are left out here."));
    QVERIFY(window.text().toUtf8().size() < 4001000);
    QVERIFY(becomesActive(window));
    prompts.savePath = folder.filePath(u"report.txt"_s);
    press(window, "Save");
    QCOMPARE(contents(*prompts.savePath), text.toUtf8());
}

QTEST_MAIN(StatusPanelTest)
#include "StatusPanelTest.moc"
