#include "app/TabOptions.h"

#include "platform/Settings.h"

#include <optional>

namespace quav {

namespace {

using Control = OptionInfo::Control;

SettingType typeOf(const OptionInfo& option) {
    return Settings::definition(QString(option.setting))->type;
}

/// What the settings have for an option; none for a choice that it does not have.
std::optional<QVariant> stored(const OptionInfo& option, const Settings& settings) {
    switch (typeOf(option)) {
    case SettingType::Boolean:
        return settings.boolean(option.setting);
    case SettingType::Text:
        return settings.text(option.setting);
    case SettingType::Switch:
        return settings.integer(option.setting) != 0;
    case SettingType::Integer:
        break;
    }
    const int number = settings.integer(option.setting);
    return option.control != Control::Choice || option.choice(number)
               ? std::optional<QVariant>(number)
               : std::nullopt;
}

void load(const OptionInfo& option, const Settings& settings, OptionValues& values) {
    if (!option.setting.isEmpty()) {
        values.setValue(option, stored(option, settings).value_or(option.initialValue()));
    }
}

} // namespace

OptionValues storedValues(const OptionTable& table, const Settings& settings) {
    OptionValues values(table);
    for (const OptionInfo& option : table.rows()) {
        load(option, settings, values);
    }
    return values;
}

TabOptions::TabOptions(const OptionTable& table, Settings& settings, QObject* parent)
    : QObject(parent), settings_(settings), values_(storedValues(table, settings)) {
    connect(&settings_, &Settings::changed, this, [this](const QString& key) {
        for (const OptionInfo& option : this->table().rows()) {
            if (key == option.setting && !onlyForThisRun_.contains(option.index)) {
                load(option, settings_, values_);
                Q_EMIT changed();
            }
        }
    });
}

void TabOptions::store(const OptionInfo& option) {
    if (option.setting.isEmpty()) {
        return;
    }
    const QVariant& value = values_.value(option);
    const SettingType type = typeOf(option);
    const bool isNumber = type == SettingType::Integer || type == SettingType::Switch;
    settings_.set(option.setting, isNumber ? QVariant(value.toInt()) : value);
}

void TabOptions::choose(const OptionInfo& option, const QVariant& value) {
    onlyForThisRun_.erase(option.index);
    if (values_.value(option) != value) {
        values_.setValue(option, value);
        store(option);
        Q_EMIT changed();
    }
}

void TabOptions::chooseAll(const OptionValues& values) {
    const OptionValues stored = storedValues(table(), settings_);
    bool anyChanged = false;
    for (const OptionInfo& option : table().rows()) {
        const QVariant& value = values.value(option);
        anyChanged = anyChanged || values_.value(option) != value;
        values_.setValue(option, value);
        if (value == stored.value(option)) {
            onlyForThisRun_.erase(option.index);
        } else {
            onlyForThisRun_.insert(option.index);
        }
    }
    if (anyChanged) {
        Q_EMIT changed();
    }
}

tl::expected<void, QString> TabOptions::setForThisRun(const OptionInfo& option,
                                                      const QString& text) {
    if (auto set = values_.setFromText(option, text); !set) {
        return set;
    }
    onlyForThisRun_.insert(option.index);
    Q_EMIT changed();
    return {};
}

bool TabOptions::applies(const OptionInfo& option) const {
    return !option.applies || option.applies(values_, facts_);
}

void TabOptions::setFacts(const ListFacts& facts) {
    if (facts != facts_) {
        facts_ = facts;
        Q_EMIT changed();
    }
}

} // namespace quav
