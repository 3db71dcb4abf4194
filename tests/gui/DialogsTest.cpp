#include "GuiRig.h"
#include "gui/GuiPrompts.h"
#include "gui/QUAVStringGetterPanel.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

/// Does something with the modal dialog that is about to open.
template <typename Dialog>
void whenOpen(const std::function<void(Dialog&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            act(*dialog);
        }
    });
}

void press(QDialog& dialog, const char* text) {
    QTest::mouseClick(shown<QPushButton>(dialog, text), Qt::LeftButton);
}

} // namespace

class DialogsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLineDialogGivesWhatWasTyped();
    void theLineDialogGivesNothingWhenCancelled();
    void aQuestionIsAnsweredByItsButtons_data();
    void aQuestionIsAnsweredByItsButtons();
    void escapeAnswersNo();
    void anAlertComesAfterItsDelay();
    void filesAreChosenInADialog();
};

void DialogsTest::theLineDialogGivesWhatWasTyped() {
    QUAVStringGetterPanel panel;
    whenOpen<QUAVStringGetterPanel>([](QUAVStringGetterPanel& dialog) {
        QVERIFY(shown<QLabel>(dialog, "New name"));
        QTest::keyClicks(dialog.findChild<QLineEdit*>(), u"Abbey"_s);
        press(dialog, "OK");
    });
    const auto text = panel.runPanelWithTitle(u"Rename"_s, u"New name"_s, u"Old"_s);
    QCOMPARE(text, std::optional(u"Abbey"_s));
    QCOMPARE(panel.windowTitle(), u"Rename"_s);
    QVERIFY(!panel.isVisible());

    whenOpen<QUAVStringGetterPanel>([](QUAVStringGetterPanel& dialog) { press(dialog, "OK"); });
    QCOMPARE(panel.runPanelWithTitle({}, {}, {}), std::optional(u"Abbey"_s));
}

void DialogsTest::theLineDialogGivesNothingWhenCancelled() {
    GuiPrompts prompts;
    whenOpen<QUAVStringGetterPanel>([](QUAVStringGetterPanel& dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit*>(), u"typed"_s);
        press(dialog, "Cancel");
    });
    QCOMPARE(prompts.askForLine(u"T"_s, u"M"_s, {}), std::nullopt);
}

void DialogsTest::aQuestionIsAnsweredByItsButtons_data() {
    QTest::addColumn<bool>("defaultAffirms");
    QTest::addColumn<QByteArray>("pressed");
    QTest::addColumn<bool>("answer");
    QTest::addRow("default yes") << true << QByteArray("Default") << true;
    QTest::addRow("alternate no") << true << QByteArray("Other") << false;
    QTest::addRow("default no") << false << QByteArray("Default") << false;
    QTest::addRow("alternate yes") << false << QByteArray("Other") << true;
}

void DialogsTest::aQuestionIsAnsweredByItsButtons() {
    QFETCH(bool, defaultAffirms);
    QFETCH(QByteArray, pressed);
    GuiPrompts prompts;
    whenOpen<QMessageBox>([pressed](QMessageBox& box) {
        QCOMPARE(box.text(), u"Sure?"_s);
        QCOMPARE(box.informativeText(), u"<b>file</b>"_s);
        QCOMPARE(box.textFormat(), Qt::PlainText);
        QCOMPARE(box.defaultButton()->text(), u"Default"_s);
        press(box, pressed.constData());
    });
    const bool answer =
        prompts.confirm({u"Sure?"_s, u"<b>file</b>"_s, u"Default"_s, u"Other"_s, defaultAffirms});
    QTEST(answer, "answer");
}

void DialogsTest::escapeAnswersNo() {
    GuiPrompts prompts;
    for (const bool defaultAffirms : {true, false}) {
        whenOpen<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QVERIFY(!prompts.confirm({u"Sure?"_s, {}, u"A"_s, u"B"_s, defaultAffirms}));
    }
}

void DialogsTest::anAlertComesAfterItsDelay() {
    GuiPrompts prompts;
    bool returned = false;
    bool closed = false;
    prompts.alertAfter(std::chrono::milliseconds(50), u"Skipped"_s);
    QTimer::singleShot(0, qApp, [&] { returned = !QApplication::activeModalWidget(); });
    const auto close = [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box && box->text() == u"Skipped") {
            closed = true;
            press(*box, "OK");
        }
        return closed;
    };
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, close);
    watch.start(10);
    QTRY_VERIFY(closed);
    QVERIFY(returned);
    QTRY_VERIFY(!QApplication::activeModalWidget());
}

void DialogsTest::filesAreChosenInADialog() {
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QTemporaryDir folder;
    const QString file = folder.filePath(u"a.wav"_s);
    QVERIFY(writeWav(file));
    GuiPrompts prompts;
    whenOpen<QFileDialog>([&](QFileDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), u"Choose"_s);
        QCOMPARE(dialog.labelText(QFileDialog::Accept), u"Add Files"_s);
        dialog.setDirectory(folder.path());
        dialog.selectFile(file);
        static_cast<QDialog&>(dialog).accept();
    });
    QCOMPARE(prompts.chooseFiles(u"Choose"_s, u"Add Files"_s), QStringList{file});

    whenOpen<QFileDialog>([&](QFileDialog& dialog) {
        // It opens where the user chose last.
        QCOMPARE(dialog.directory().absolutePath(), folder.path());
        dialog.reject();
    });
    QCOMPARE(prompts.chooseFolder(u"Folder"_s), std::nullopt);
}

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
