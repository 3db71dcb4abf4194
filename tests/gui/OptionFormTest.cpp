#include "gui/OptionForm.h"

#include "GuiRig.h"
#include "app/FileKinds.h"
#include "support/Table.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QLabel>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Control = OptionInfo::Control;

/// A choice's controls are its words', the last of which is taken for all.
QString controlName(const OptionInfo& option) {
    const QString key = QString::fromLatin1(option.key);
    return option.control == Control::Choice
               ? key + u'.' + QLatin1StringView(option.choices.back().word)
               : key;
}

/// Brings a list about in which every option applies.
void makeEverythingApply(GuiRig& rig, BaseTab& tab, const OptionInfo& option) {
    rig.decode.addFiles({rig.noFlac("a.flac")});
    const OptionTable& table = tab.options().table();
    for (const QString& key : {u"commandOptions"_s, u"outputFormatMatrix"_s}) {
        const OptionInfo* command = option.applies ? table.row(key) : nullptr;
        for (const OptionChoice& choice :
             command ? command->choices : std::span<const OptionChoice>()) {
            if (tab.options().applies(option)) {
                return;
            }
            tab.options().choose(*command, choice.value);
        }
    }
}

} // namespace

class OptionFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOptionOfTheFormAndOfTheTabAreOne_data() {
        columns<QString, QString>("tab", "key");
        GuiRig rig;
        for (BaseTab* tab : {static_cast<BaseTab*>(&rig.decode), static_cast<BaseTab*>(&rig.encode),
                             static_cast<BaseTab*>(&rig.checksum)}) {
            for (const OptionInfo& option : tab->options().table().rows()) {
                if (option.label) {
                    const QString key = QString::fromLatin1(option.key);
                    row(qPrintable(tab->label() + u' ' + key), tab->label(), key);
                }
            }
        }
    }
    void everyOptionOfTheFormAndOfTheTabAreOne() {
        QFETCH(QString, tab);
        QFETCH(QString, key);
        GuiRig rig;
        BaseTab& shownTab = tab == tabs::decode   ? static_cast<BaseTab&>(rig.decode)
                            : tab == tabs::encode ? static_cast<BaseTab&>(rig.encode)
                                                  : static_cast<BaseTab&>(rig.checksum);
        rig.workbench.controller().selectTab(tab);
        TabOptions& options = shownTab.options();
        const OptionInfo& option = *options.table().row(key);
        makeEverythingApply(rig, shownTab, option);

        QWidget* control = nullptr;
        for (QWidget* one : rig.window.findChildren<QWidget*>(controlName(option))) {
            control = one->isVisible() ? one : control;
        }
        QVERIFY(control);
        QVERIFY(control->isEnabled() && !control->toolTip().isEmpty());
        QVERIFY2(control->focusPolicy() & Qt::TabFocus, "the keyboard does not reach it");
        if (auto* button = qobject_cast<QAbstractButton*>(control)) {
            QVERIFY2(button->text().contains(u'&'), "it has no mnemonic");
            const QVariant before = options.values().value(option);
            button->click();
            const QVariant after = options.values().value(option);
            QCOMPARE(after, option.control == Control::Choice
                                ? QVariant(option.choices.back().value)
                                : QVariant(!before.toBool()));
            if (before != after) {
                options.choose(option, before);
                QCOMPARE(button->isChecked(), before.toBool() && option.control == Control::Switch);
            }
        } else {
            auto* slider = qobject_cast<QAbstractSlider*>(control);
            QVERIFY(slider);
            QCOMPARE(slider->minimum(), option.least());
            QCOMPARE(slider->maximum(), option.greatest());
            slider->setValue(slider->minimum());
            QCOMPARE(options.values().value(option).toInt(), option.least());
            options.choose(option, option.greatest());
            QCOMPARE(slider->value(), option.greatest());
            QVERIFY(shown<QLabel>(rig.window, qPrintable(QString::number(option.greatest()))));
        }
    }

    void whatDoesNotApplyIsGreyOrGone() {
        GuiRig rig;
        rig.workbench.controller().selectTab(tabs::encode);
        auto& level = *rig.window.findChild<QAbstractSlider*>(u"flacSlider"_s);
        QVERIFY(level.isEnabled());
        rig.encode.options().set(encodeOptions().flacLax, true);
        QVERIFY(!level.isEnabled() && level.isVisible());
        rig.encode.options().set(encodeOptions().flacLax, false);
        QVERIFY(level.isEnabled());
        rig.encode.options().set(encodeOptions().outputFormat, EncodeTarget::Wavpack);
        QVERIFY(!level.isEnabled() && level.isVisible());
    }
};

QTEST_MAIN(OptionFormTest)
#include "OptionFormTest.moc"
