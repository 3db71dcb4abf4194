#include "app/Option.h"

#include "platform/Settings.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace quav {

namespace {

template <typename Matches>
const OptionChoice* firstChoice(std::span<const OptionChoice> choices, Matches matches) {
    const auto found = std::find_if(choices.begin(), choices.end(), matches);
    return found == choices.end() ? nullptr : &*found;
}

const SettingDefinition* definitionOf(const OptionInfo& info) {
    return info.setting.isEmpty() ? nullptr : Settings::definition(QString(info.setting));
}

std::optional<bool> asBoolean(const QString& text) {
    if (text == u"true" || text == u"1") {
        return true;
    }
    return text == u"false" || text == u"0" ? std::optional(false) : std::nullopt;
}

} // namespace

const OptionChoice* OptionInfo::choice(int value) const {
    return firstChoice(choices, [&](const OptionChoice& one) { return one.value == value; });
}

const OptionChoice* OptionInfo::choice(QStringView word) const {
    return firstChoice(choices, [&](const OptionChoice& one) {
        return word.compare(QLatin1StringView(one.word), Qt::CaseInsensitive) == 0;
    });
}

int OptionInfo::least() const {
    const SettingDefinition* definition = definitionOf(*this);
    return definition ? definition->least : 0;
}

int OptionInfo::greatest() const {
    const SettingDefinition* definition = definitionOf(*this);
    return definition ? definition->greatest : 0;
}

QVariant OptionInfo::initialValue() const {
    const SettingDefinition* definition = definitionOf(*this);
    const QVariant value = definition ? definition->defaultValue : standard;
    switch (control) {
    case Control::Switch:
        return definition ? value.toInt() != 0 || value == QVariant(true) : value.toBool();
    case Control::Choice:
        return value.isValid() ? value.toInt() : choices.front().value;
    case Control::Slider:
    case Control::Number:
        return value.toInt();
    case Control::Text:
        return value.toString();
    }
    return {};
}

std::optional<QVariant> OptionInfo::fromText(const QString& text) const {
    switch (control) {
    case Control::Switch: {
        const auto on = asBoolean(text);
        return on ? std::optional<QVariant>(*on) : std::nullopt;
    }
    case Control::Choice: {
        const OptionChoice* chosen = choice(QStringView(text));
        return chosen ? std::optional<QVariant>(chosen->value) : std::nullopt;
    }
    case Control::Slider:
    case Control::Number: {
        bool isNumber = false;
        const int number = text.toInt(&isNumber);
        const bool fits = isNumber && number >= least() && number <= greatest();
        return fits ? std::optional<QVariant>(number) : std::nullopt;
    }
    case Control::Text:
        return text;
    }
    return std::nullopt;
}

QString OptionInfo::whatItTakes() const {
    QStringList words;
    switch (control) {
    case Control::Switch:
        return QCoreApplication::translate("Options", "true or false");
    case Control::Choice:
        for (const OptionChoice& one : choices) {
            words << QString::fromLatin1(one.word);
        }
        return QCoreApplication::translate("Options", "one of %1")
            .arg(words.join(QStringLiteral(", ")));
    case Control::Slider:
    case Control::Number:
        return QCoreApplication::translate("Options", "a whole number from %1 to %2")
            .arg(least())
            .arg(greatest());
    case Control::Text:
        break;
    }
    return QCoreApplication::translate("Options", "a text");
}

QString OptionInfo::translated(const char* text) {
    return text ? QCoreApplication::translate("Options", text) : QString();
}

QString OptionInfo::groupText() const {
    return translated(group);
}

QString OptionInfo::labelText() const {
    return translated(label);
}

QString OptionInfo::tipText() const {
    return translated(tip);
}

OptionTable::OptionTable(std::initializer_list<const char*> groups) : groups_(groups) {}

const OptionInfo* OptionTable::row(QStringView key) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const OptionInfo& info) {
        return key == QLatin1StringView(info.key);
    });
    return found == rows_.end() ? nullptr : &*found;
}

const OptionInfo& OptionTable::add(OptionInfo info) {
    Q_ASSERT_X(!row(QString::fromLatin1(info.key)), "OptionTable", info.key);
    info.index = rows_.size();
    const auto isThis = [&](const char* group) { return std::strcmp(group, info.group) == 0; };
    if (info.group && std::none_of(groups_.begin(), groups_.end(), isThis)) {
        groups_.push_back(info.group);
    }
    return rows_.emplace_back(std::move(info));
}

} // namespace quav
