#include "cli/OptionFlags.h"

#include "app/ListFacts.h"
#include "platform/Settings.h"

#include <QCoreApplication>

#include <span>

namespace quav {

namespace {

using Control = OptionInfo::Control;

std::string settingAsDefault(const OptionInfo& option) {
    const QString value = Settings::definition(QString(option.setting))->defaultValue.toString();
    return QCoreApplication::translate("OptionFlags", "the setting %1, at first %2")
        .arg(option.setting, value)
        .toStdString();
}

/// "wav or aiff"
QString wordsOf(std::span<const OptionChoice> choices) {
    QString words = QString::fromLatin1(choices.front().word);
    for (const OptionChoice& choice : choices.subspan(1)) {
        const bool isLast = &choice == &choices.back();
        words = (isLast ? QCoreApplication::translate("OptionFlags", "%1 or %2")
                        : QCoreApplication::translate("OptionFlags", "%1, %2"))
                    .arg(words, QLatin1StringView(choice.word));
    }
    return words;
}

/// What the option does; a choice whose text does not name its words gets them behind.
std::string help(const OptionInfo& option) {
    const QString text = option.tipText();
    const bool wordsMissing =
        !option.choices.empty() && !text.contains(QLatin1StringView(option.choices.front().word));
    return (wordsMissing ? QCoreApplication::translate("OptionFlags", "%1: %2")
                               .arg(text, wordsOf(option.choices))
                         : text)
        .toStdString();
}

std::string opposite(const OptionInfo& option) {
    const QString text =
        option.setting.isEmpty()
            ? QCoreApplication::translate("OptionFlags",
                                          "The opposite of --%1, whatever the preset says")
            : QCoreApplication::translate("OptionFlags",
                                          "The opposite of --%1, whatever the setting says");
    return text.arg(QString::fromLatin1(option.flag)).toStdString();
}

} // namespace

OptionFlags::Flags OptionFlags::addTo(CLI::App& command, const OptionTable& table,
                                      const OptionValues* given) {
    const ListFacts anything = ListFacts::ofAnyList();
    Flags added;
    for (const OptionInfo& option : table.rows()) {
        if (!option.flag || (given && option.applies && !option.applies(*given, anything))) {
            continue;
        }
        added[&option] = option.control == Control::Switch ? addSwitch(command, option)
                                                           : addValue(command, option);
    }
    flags_.insert(added.begin(), added.end());
    return added;
}

/// A switch, and its opposite for what a setting or a preset says otherwise.
CLI::Option* OptionFlags::addSwitch(CLI::App& command, const OptionInfo& option) {
    const std::string name = option.flag;
    CLI::Option* on = command.add_flag_callback(
        "--" + name, [this, &option] { given_[&option] = QStringLiteral("true"); }, help(option));
    if (!option.setting.isEmpty()) {
        on->default_str(settingAsDefault(option));
    }
    command
        .add_flag_callback(
            "--no-" + name, [this, &option] { given_[&option] = QStringLiteral("false"); },
            opposite(option))
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
