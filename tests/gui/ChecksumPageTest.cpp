#include "GuiRig.h"
#include "app/FileKinds.h"
#include "support/Table.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

void choose(GuiRig& rig, const char* text) {
    QTest::mouseClick(shown<QRadioButton>(rig.window, text), Qt::LeftButton);
}

void check(GuiRig& rig, const char* text) {
    auto* box = shown<QCheckBox>(rig.window, text);
    QTest::mouseClick(box, Qt::LeftButton, {}, {4, box->height() / 2});
}

} // namespace

class ChecksumPageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void optionsAreThereOnlyWithTheirCommand_data() {
        columns<QByteArray, bool, bool, QByteArray>("command", "creates", "reads", "button");
        row("test", QByteArray("Test files"), false, false, QByteArray("Test 1 file"));
        row("create", QByteArray("Create checksum"), true, false, QByteArray("Create …"));
        row("verify", QByteArray("Verify checksum"), false, true, QByteArray("Verify 1 file"));
    }
    void optionsAreThereOnlyWithTheirCommand() {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, button);
        GuiRig rig;
        rig.workbench.controller().selectTab(tabs::checksum);
        addFiles(rig.checksum, {rig.wav(u"a.wav"_s)});
        choose(rig, command.constData());
        QTEST(shown<QRadioButton>(rig.window, "ST5") != nullptr, "creates");
        QTEST(shown<QCheckBox>(rig.window, "Save beside") != nullptr, "creates");
        QTEST(shown<QCheckBox>(rig.window, "Accept other spellings") != nullptr, "reads");
        QVERIFY(shown<QPushButton>(rig.window, button.constData()));
    }

    void aListIsMadeAndTheFailuresOfItsReportAreOneClickAway() {
        GuiRig rig;
        rig.workbench.controller().selectTab(tabs::checksum);
        const QString good = rig.wav(u"good.wav"_s);
        const QString bad = rig.wav(u"bad.wav"_s);
        addFiles(rig.checksum, {good, bad});
        choose(rig, "Create checksum");
        choose(rig, "MD5");
        check(rig, "Save beside");
        press(rig.window, "Create");
        QTRY_VERIFY(QFile::exists(rig.path(u"md5sum.md5"_s)));
        QTRY_COMPARE(rig.queue.taskCount(), 0);
        QVERIFY(rig.outputWindows.windows().empty());

        rig.written(bad, "other");
        choose(rig, "Verify checksum");
        addFiles(rig.checksum, {rig.path(u"md5sum.md5"_s)});
        press(rig.window, "Verify");
        QTRY_COMPARE(rig.outputWindows.windows().size(), size_t(1));
        OutputWindow& window = *rig.outputWindows.windows().front();
        const QString report = u"Verify MD5: md5sum.md5\nbad.wav : FAILED\ngood.wav : OK\n\n"_s;
        QCOMPARE(window.text(), report);
        QVERIFY(shown<QLabel>(window, "1 ok, 1 failed, 0 missing, 0 could not be read"));
        press(window, "Only the failures");
        QVERIFY(window.text().startsWith(bad + u": failed; expected "_s));
        QCOMPARE(window.text().count(u'\n'), 1);
        press(window, "Only the failures");
        QCOMPARE(window.text(), report);

        rig.written(bad, "now they are alike");
        rig.written(rig.path(u"md5sum.md5"_s),
                    contents(rig.path(u"md5sum.md5"_s)).split('\n').value(3) + '\n');
        addFiles(rig.checksum, {rig.path(u"md5sum.md5"_s)});
        press(rig.window, "Verify");
        QTRY_COMPARE(rig.outputWindows.windows().size(), size_t(2));
        OutputWindow& clean = *rig.outputWindows.windows().back();
        QVERIFY(shown<QLabel>(clean, "1 ok, 0 failed"));
        QVERIFY(!shown<QPushButton>(clean, "Only the failures"));
    }
};

QTEST_MAIN(ChecksumPageTest)
#include "ChecksumPageTest.moc"
