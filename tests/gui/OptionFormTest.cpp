#include "gui/OptionForm.h"

#include "GuiRig.h"
#include "app/FileKinds.h"
#include "support/OptionCases.h"
#include "support/Table.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

using Control = OptionInfo::Control;
using Otherwise = OptionInfo::Otherwise;

/// A choice's controls are its words', the last of which is taken for all.
QString controlName(const OptionInfo& option) {
    const QString key = QString::fromLatin1(option.key);
    return option.control == Control::Choice
               ? key + u'.' + QLatin1StringView(option.choices.back().word)
               : key;
}

QString accessibleName(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

bool takesTab(const QWidget* widget) {
    return (widget->focusPolicy() & Qt::TabFocus) != 0;
}

/// Clicks a switch or a choice, which the options follow, and changes the option, which it follows.
void clickAndFollow(QAbstractButton& button, const OptionInfo& option, TabOptions& options) {
    QVERIFY2(button.text().contains(u'&'), "it has no mnemonic");
    const QVariant before = options.values().value(option);
    const bool isChoice = option.control == Control::Choice;
    button.click();
    QCOMPARE(options.values().value(option),
             isChoice ? QVariant(option.choices.back().value) : QVariant(!before.toBool()));
    options.choose(option, isChoice ? QVariant(option.choices.front().value) : before);
    QCOMPARE(button.isChecked(), isChoice ? option.choices.size() == 1 : before.toBool());
}

/// The same with what holds a number.
void setAndFollow(QWidget& control, const OptionInfo& option, TabOptions& options) {
    QCOMPARE(control.property("minimum").toInt(), option.least());
    QCOMPARE(control.property("maximum").toInt(), option.greatest());
    control.setProperty("value", option.greatest());
    control.setProperty("value", option.least());
    QCOMPARE(options.values().value(option).toInt(), option.least());
    options.choose(option, option.greatest());
    QCOMPARE(control.property("value").toInt(), option.greatest());
}

} // namespace

class OptionFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOptionOfTheFormAndOfTheTabAreOne_data() {
        columns<const OptionTable*, const OptionInfo*>("table", "option");
        for (const auto& [tab, table] : optionTables()) {
            for (const OptionInfo& option : table->rows()) {
                if (option.label) {
                    row(qPrintable(tab + u' ' + QLatin1StringView(option.key)), table, &option);
                }
            }
        }
    }
    void everyOptionOfTheFormAndOfTheTabAreOne() {
        QFETCH(const OptionTable*, table);
        QFETCH(const OptionInfo*, option);
        OptionPlace place;
        TabOptions options(*table, place.settings);
        OptionForm form(options);
        form.show();
        auto* control = form.findChild<QWidget*>(controlName(*option));
        QVERIFY(control);
        QVERIFY(makeApply(options, *option, true));
        QVERIFY(control->isVisible() && control->isEnabled());
        QVERIFY(!control->toolTip().isEmpty() && !accessibleName(control).isEmpty());
        QVERIFY2(takesTab(control), "the keyboard does not reach it");
        if (auto* button = qobject_cast<QAbstractButton*>(control)) {
            clickAndFollow(*button, *option, options);
        } else {
            setAndFollow(*control, *option, options);
        }
        if (makeApply(options, *option, false)) {
            QVERIFY(!control->isEnabled() || !control->isVisible());
            QCOMPARE(control->isVisible(), option->otherwise == Otherwise::Disabled);
        }
    }

    void theHeadOfTheFormShowsWhereTheOptionsStand() {
        GuiRig rig;
        rig.workbench.controller().selectTab(tabs::encode);
        QComboBox* box = nullptr;
        for (auto* one : rig.window.findChildren<QComboBox*>(u"presetBox"_s)) {
            box = one->isVisible() ? one : box;
        }
        QVERIFY(box && box->parentWidget());
        auto& state = *box->parentWidget()->findChild<QLabel*>(u"presetState"_s);
        auto& more = *box->parentWidget()->findChild<QToolButton*>(u"presetMenuButton"_s);
        QVERIFY(takesTab(box) && takesTab(&more));
        QVERIFY(!accessibleName(box).isEmpty() && !accessibleName(&more).isEmpty());
        QVERIFY(becomesActive(rig.window));
        box->setFocus();
        QTest::keyClicks(box, u"Archive"_s);
        QCOMPARE(rig.encode.options()[encodeOptions().flacLevel], 8);
        QVERIFY(state.text().isEmpty());
        rig.encode.options().set(encodeOptions().flacLevel, 4);
        QVERIFY(!state.text().isEmpty() && !box->accessibleDescription().isEmpty());

        const QList<QAction*> actions = more.menu()->actions();
        const auto isEnabled = [&](const QString& text) {
            return std::any_of(actions.begin(), actions.end(), [&](const QAction* action) {
                return action->text().remove(u'&').startsWith(text) && action->isEnabled();
            });
        };
        QVERIFY(!isEnabled(u"Rename"_s) && !isEnabled(u"Delete"_s) && isEnabled(u"Export"_s));
        rig.prompts.line = u"mine"_s;
        rig.encode.presets().saveAs();
        QCOMPARE(box->currentText(), u"mine"_s);
        QVERIFY(state.text().isEmpty());
        QVERIFY(isEnabled(u"Rename"_s) && isEnabled(u"Delete"_s));
    }
};

QTEST_MAIN(OptionFormTest)
#include "OptionFormTest.moc"
