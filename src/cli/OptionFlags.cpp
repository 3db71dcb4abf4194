#include "cli/OptionFlags.h"

#include "app/ListFacts.h"
#include "platform/Settings.h"

#include <QCoreApplication>

namespace quav {

namespace {

using Control = OptionInfo::Control;

std::string settingAsDefault(const OptionInfo& option) {
    const QString value = Settings::definition(QString(option.setting))->defaultValue.toString();
    return QCoreApplication::translate("OptionFlags", "the setting %1, at first %2")
        .arg(option.setting, value)
        .toStdString();
}

std::string help(const OptionInfo& option) {
    return option.tipText().toStdString();
}

/// Whether an option can mean anything in a command that has to be told the values of the required
/// choices first.
bool mayApply(const OptionInfo& option, const OptionValues& given) {
    if (!option.applies) {
        return true;
    }
    const ListFacts anything = ListFacts::ofAnyList();
    if (option.applies(given, anything)) {
        return true;
    }
    OptionValues tried = given;
    for (const OptionInfo& other : given.table().rows()) {
        for (const OptionChoice& choice : other.choices) {
            if (other.required) {
                tried.setValue(other, choice.value);
                if (option.applies(tried, anything)) {
                    return true;
                }
            }
        }
    }
    return false;
}

} // namespace

OptionFlags::Flags OptionFlags::addTo(CLI::App& command, const OptionValues& given) {
    Flags added;
    for (const OptionInfo& option : given.table().rows()) {
        if (!option.flag || !mayApply(option, given)) {
            continue;
        }
        added[&option] = option.control == Control::Switch ? addSwitch(command, option)
                                                           : addValue(command, option);
    }
    flags_.insert(added.begin(), added.end());
    return added;
}

/// A switch, and its opposite for what a setting says otherwise.
CLI::Option* OptionFlags::addSwitch(CLI::App& command, const OptionInfo& option) {
    const std::string name = option.flag;
    CLI::Option* on = command.add_flag_callback(
        "--" + name, [this, &option] { given_[&option] = QStringLiteral("true"); }, help(option));
    if (option.setting.isEmpty()) {
        return on;
    }
    on->default_str(settingAsDefault(option));
    command
        .add_flag_callback(
            "--no-" + name, [this, &option] { given_[&option] = QStringLiteral("false"); },
            QCoreApplication::translate("OptionFlags",
                                        "The opposite of --%1, whatever the setting says")
                .arg(QString::fromLatin1(option.flag))
                .toStdString())
        ->excludes(on);
    return on;
}

CLI::Option* OptionFlags::addValue(CLI::App& command, const OptionInfo& option) {
    CLI::Option* added = command.add_option_function<std::string>(
        "--" + std::string(option.flag),
        [this, &option](const std::string& text) {
            given_[&option] = QString::fromStdString(text);
        },
        help(option));
    added->type_name(option.valueName)->required(option.required);
    if (!option.setting.isEmpty()) {
        added->default_str(settingAsDefault(option));
    }
    added->check(CLI::Validator(
        [&option](const std::string& text) {
            const QString given = QString::fromStdString(text);
            return option.fromText(given)
                       ? std::string()
                       : QCoreApplication::translate("OptionFlags", "takes %1, not “%2”")
                             .arg(option.whatItTakes(), given)
                             .toStdString();
        },
        ""));
    return added;
}

} // namespace quav
