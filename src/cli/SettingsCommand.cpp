#include "cli/SettingsCommand.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "platform/Settings.h"

#include <QCoreApplication>

namespace quav {

namespace {

QString defaultText(const SettingDefinition& definition) {
    return definition.defaultValue.toString();
}

QJsonValue typedValue(const SettingDefinition& definition, const Settings& settings) {
    switch (definition.type) {
    case SettingType::Integer:
    case SettingType::Switch:
        return settings.integer(definition.key);
    case SettingType::Boolean:
        return settings.boolean(definition.key);
    case SettingType::Text:
        return settings.text(definition.key);
    }
    return {};
}

QString asJson(const SettingDefinition& definition, const Settings& settings) {
    return jsonLine(
        {{QStringLiteral("key"), definition.key},
         {QStringLiteral("value"), typedValue(definition, settings)},
         {QStringLiteral("default"), QJsonValue::fromVariant(definition.defaultValue)},
         {QStringLiteral("changed"), settings.text(definition.key) != defaultText(definition)}});
}

QString asLine(const SettingDefinition& definition, const Settings& settings) {
    const QString value = settings.text(definition.key);
    const QString line =
        QStringLiteral("%1 = %2").arg(QString(definition.key), text::printable(value));
    if (value == defaultText(definition)) {
        return QStringLiteral("  ") + line;
    }
    return QStringLiteral("* ") + line +
           QCoreApplication::translate("SettingsCommand", "  (default: %1)")
               .arg(defaultText(definition));
}

void list(bool json, const Settings& settings, Terminal& terminal) {
    for (const SettingDefinition& definition : Settings::definitions()) {
        terminal.print(json ? asJson(definition, settings) : asLine(definition, settings));
    }
}

int save(Settings& settings, Terminal& terminal) {
    if (settings.save()) {
        return exitstatus::succeeded;
    }
    terminal.say(QCoreApplication::translate("SettingsCommand",
                                             "The settings file “%1” could not be written.")
                     .arg(Settings::userFile()));
    return exitstatus::failed;
}

int set(const SettingsOptions& options, Settings& settings, Terminal& terminal) {
    const auto done = settings.setFromText(options.key, options.value);
    if (!done) {
        terminal.say(done.error());
        return exitstatus::refused;
    }
    return save(settings, terminal);
}

} // namespace

int runSettings(const SettingsOptions& options, Settings& settings, Terminal& terminal) {
    using Action = SettingsOptions::Action;
    if (options.action == Action::List) {
        list(options.json, settings, terminal);
        return exitstatus::succeeded;
    }
    const SettingDefinition* definition = Settings::definition(options.key);
    if (!definition) {
        terminal.say(QCoreApplication::translate("SettingsCommand", "There is no setting “%1”.")
                         .arg(options.key));
        return exitstatus::refused;
    }
    if (options.action == Action::Get) {
        terminal.print(options.json ? asJson(*definition, settings)
                                    : settings.text(definition->key));
        return exitstatus::succeeded;
    }
    if (options.action == Action::Set) {
        return set(options, settings, terminal);
    }
    settings.reset(definition->key);
    return save(settings, terminal);
}

} // namespace quav
