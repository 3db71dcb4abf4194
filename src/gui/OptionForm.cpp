#include "gui/OptionForm.h"

#include "app/TabOptions.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace quav {

namespace {

using Control = OptionInfo::Control;
using Otherwise = OptionInfo::Otherwise;

QString plainText(QString label) {
    return label.remove(u'&');
}

/// What a control says when the pointer rests on it: what it does, and what the tool gets.
QString toolTipOf(const char* tip, const char* passes) {
    const QString text = OptionInfo::translated(tip);
    return passes ? OptionForm::tr("%1 (%2)").arg(text, QString::fromLatin1(passes)) : text;
}

void describe(QWidget& control, const OptionInfo& option) {
    control.setObjectName(QString::fromLatin1(option.key));
    control.setToolTip(toolTipOf(option.tip, option.passes));
    control.setAccessibleName(plainText(option.labelText()));
}

QLabel* addLabel(const OptionInfo& option, QWidget* buddy, QBoxLayout* row) {
    auto* label = new QLabel(option.labelText());
    label->setBuddy(buddy);
    label->setToolTip(buddy->toolTip());
    row->addWidget(label);
    return label;
}

} // namespace

OptionForm::OptionForm(TabOptions& options, QWidget* parent) : QWidget(parent), options_(options) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    for (const char* group : options.table().groups()) {
        addGroup(group, column);
    }
    connect(&options_, &TabOptions::changed, this, &OptionForm::refresh);
    refresh();
}

void OptionForm::addGroup(const char* group, QVBoxLayout* column) {
    auto* box = new QGroupBox(OptionInfo::translated(group), this);
    // A box that comes and goes must not move the others.
    QSizePolicy policy = box->sizePolicy();
    policy.setRetainSizeWhenHidden(group == options_.table().groups().back());
    box->setSizePolicy(policy);
    auto* layout = new QVBoxLayout(box);
    const QString name = QString::fromLatin1(group);
    for (const OptionInfo& option : options_.table().rows()) {
        if (option.label && name == QLatin1StringView(option.group)) {
            addRow(option, layout);
        }
    }
    boxes_.insert(name, box);
    column->addWidget(box);
}

void OptionForm::addRow(const OptionInfo& option, QVBoxLayout* group) {
    auto* widget = new QWidget(group->parentWidget());
    QBoxLayout* row = option.control == Control::Choice
                          ? static_cast<QBoxLayout*>(new QVBoxLayout(widget))
                          : new QHBoxLayout(widget);
    row->setContentsMargins({});
    std::function<void()> show;
    switch (option.control) {
    case Control::Switch:
        show = addSwitch(option, row);
        break;
    case Control::Choice:
        show = addChoice(option, row);
        break;
    case Control::Slider:
        show = addSlider(option, row);
        break;
    case Control::Number:
        show = addNumber(option, row);
        break;
    case Control::Text:
        show = addText(option, row);
        break;
    }
    group->addWidget(widget);
    rows_.push_back({&option, widget, std::move(show)});
}

std::function<void()> OptionForm::addSwitch(const OptionInfo& option, QBoxLayout* row) {
    auto* box = new QCheckBox(option.labelText());
    describe(*box, option);
    row->addWidget(box);
    connect(box, &QCheckBox::clicked, this, [&](bool on) { options_.choose(option, on); });
    return [&, box] { box->setChecked(options_.values().value(option).toBool()); };
}

std::function<void()> OptionForm::addChoice(const OptionInfo& option, QBoxLayout* row) {
    std::vector<QRadioButton*> buttons;
    // By itself, an only button would be switched off by a click.
    auto* only = new QButtonGroup(this);
    for (const OptionChoice& choice : option.choices) {
        auto* button = new QRadioButton(OptionInfo::translated(choice.label));
        button->setObjectName(QStringLiteral("%1.%2").arg(QLatin1StringView(option.key),
                                                          QLatin1StringView(choice.word)));
        button->setToolTip(toolTipOf(choice.tip, choice.passes));
        row->addWidget(button);
        only->addButton(button);
        connect(button, &QRadioButton::clicked, this,
                [&option, value = choice.value, this] { options_.choose(option, value); });
        buttons.push_back(button);
    }
    return [&, buttons] {
        const int value = options_.values().value(option).toInt();
        for (std::size_t i = 0; i < buttons.size(); ++i) {
            buttons[i]->setChecked(option.choices[i].value == value);
        }
    };
}

std::function<void()> OptionForm::addSlider(const OptionInfo& option, QBoxLayout* row) {
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setRange(option.least(), option.greatest());
    slider->setPageStep(1);
    slider->setTickInterval(1);
    slider->setTickPosition(QSlider::TicksBelow);
    describe(*slider, option);
    addLabel(option, slider, row);
    row->addWidget(slider, 1);
    auto* number = new QLabel;
    const int digits = static_cast<int>(QString::number(option.greatest()).size()) + 1;
    number->setMinimumWidth(fontMetrics().horizontalAdvance(u'0') * digits);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(number);
    connect(slider, &QSlider::valueChanged, this,
            [&](int value) { options_.choose(option, value); });
    return [&, slider, number] {
        const QSignalBlocker quiet(slider);
        slider->setValue(options_.values().value(option).toInt());
        number->setNum(slider->value());
    };
}

std::function<void()> OptionForm::addNumber(const OptionInfo& option, QBoxLayout* row) {
    auto* number = new QSpinBox;
    number->setRange(option.least(), option.greatest());
    describe(*number, option);
    addLabel(option, number, row);
    row->addWidget(number);
    connect(number, &QSpinBox::valueChanged, this,
            [&](int value) { options_.choose(option, value); });
    return [&, number] {
        const QSignalBlocker quiet(number);
        number->setValue(options_.values().value(option).toInt());
    };
}

std::function<void()> OptionForm::addText(const OptionInfo& option, QBoxLayout* row) {
    auto* text = new QLineEdit;
    describe(*text, option);
    addLabel(option, text, row);
    row->addWidget(text, 1);
    connect(text, &QLineEdit::textEdited, this,
            [&](const QString& value) { options_.choose(option, value); });
    return [&, text] {
        // A text that is being typed keeps its cursor.
        const QString value = options_.values().value(option).toString();
        if (text->text() != value) {
            text->setText(value);
        }
    };
}

void OptionForm::refresh() {
    QHash<QString, bool> anyShown;
    for (const Row& row : rows_) {
        row.show();
        const bool applies = options_.applies(*row.option);
        const bool shown = applies || row.option->otherwise == Otherwise::Disabled;
        row.widget->setEnabled(applies);
        row.widget->setVisible(shown);
        anyShown[QString::fromLatin1(row.option->group)] |= shown;
    }
    for (auto group = anyShown.begin(); group != anyShown.end(); ++group) {
        boxes_[group.key()]->setVisible(group.value());
    }
}

} // namespace quav
