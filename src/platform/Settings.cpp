#include "platform/Settings.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace quav {

namespace {

constexpr int anyInteger = std::numeric_limits<int>::max();

SettingDefinition integerSetting(const char* key, int value, int least = 0,
                                 int greatest = anyInteger) {
    return {QLatin1StringView(key), SettingType::Integer, value, value, least, greatest};
}

SettingDefinition switchSetting(const char* key, int value, int inDoubt = 0) {
    return {QLatin1StringView(key), SettingType::Switch, value, inDoubt};
}

SettingDefinition booleanSetting(const char* key, bool value) {
    return {QLatin1StringView(key), SettingType::Boolean, value, value};
}

SettingDefinition textSetting(const char* key, const char* value) {
    const QString text = QString::fromLatin1(value);
    return {QLatin1StringView(key), SettingType::Text, text, text};
}

const auto& table() {
    static const std::array definitions{
        textSetting("shntoolNamesFormat", "%number. %name %time"),
        integerSetting("maxThreads", 2, 1, 1024),
        integerSetting("encodeOutputFormat", 2),
        integerSetting("encodeFlacLevel", 5, 0, 8),
        integerSetting("fixOutputFormat", 1),
        integerSetting("fixFlacLevel", 4, 0, 8),
        integerSetting("shntoolCommandOption", 0),
        integerSetting("shntoolLenOption", 0),
        integerSetting("shntoolOutputFormat", 1),
        integerSetting("lossySliderLevel", 3),
        integerSetting("lossyStepperLevel", 88),
        integerSetting("lossyComboLevel", 160),
        integerSetting("opusFrameSizeIndex", 3),
        integerSetting("SUScheduledCheckInterval", 604800),
        // Whoever wrote something unreadable here wanted something else than the default, and what
        // lies in the trash can be had back.
        switchSetting("trashOrDelete", 0, 1),
        integerSetting("lameStereoOption", 1),
        integerSetting("lameQValue", 3),
        textSetting("aacCodecQuality", "Max"),
        textSetting("ffpExtension", "ffp.txt"),
        switchSetting("flacVerifyButton", 0),
        switchSetting("flacKeepForeignMetadataButton", 0),
        switchSetting("flacGenerateFFPButton", 0),
        booleanSetting("warnOnDelete", true),
        booleanSetting("warnOnFilesSkipped", true),
        booleanSetting("checksumFileUsesOutputDirName", false),
        switchSetting("encodeToSourceDirectory", 0),
        switchSetting("decodeToSourceDirectory", 0),
        switchSetting("encodeLossyToSourceDirectory", 0),
        textSetting("incomingSurroundOrder", "L R C LFE LS RS (STANDARD)"),
        booleanSetting("noPaddingFlacTags", false),
        textSetting("cdProviderText", ""),
        booleanSetting("verifyBeforeDelete", true),
        booleanSetting("keepModificationTime", false),
    };
    return definitions;
}

/// Whether something is on: any number but 0 is, and so are the words for it.
std::optional<bool> asSwitch(const QString& text) {
    static const QStringList on{QStringLiteral("true"), QStringLiteral("yes"),
                                QStringLiteral("on")};
    static const QStringList off{QStringLiteral("false"), QStringLiteral("no"),
                                 QStringLiteral("off")};
    if (on.contains(text, Qt::CaseInsensitive)) {
        return true;
    }
    if (off.contains(text, Qt::CaseInsensitive)) {
        return false;
    }
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional(number != 0) : std::nullopt;
}

/// A whole number, which may be written with decimals that are all 0.
std::optional<int> asInteger(const QString& text, int least, int greatest) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    const bool fits =
        isNumber && number == std::trunc(number) && number >= least && number <= greatest;
    return fits ? std::optional(static_cast<int>(number)) : std::nullopt;
}

/// The value as the definition's type, or nothing when it is none of that type or out of range.
std::optional<QVariant> asTyped(const SettingDefinition& definition, const QVariant& value) {
    if (!value.isValid()) {
        return std::nullopt;
    }
    const QString text = value.toString().trimmed();
    switch (definition.type) {
    case SettingType::Integer:
        return asInteger(text, definition.least, definition.greatest);
    case SettingType::Switch: {
        const std::optional<bool> on = asSwitch(text);
        return on ? std::optional<QVariant>(*on ? 1 : 0) : std::nullopt;
    }
    case SettingType::Boolean:
        return asSwitch(text);
    case SettingType::Text:
        // A comma that was written by hand and not quoted makes a list of the text.
        return value.toStringList().join(QStringLiteral(", "));
    }
    return std::nullopt;
}

QString whatItTakes(const SettingDefinition& definition) {
    if (definition.type == SettingType::Boolean) {
        return QCoreApplication::translate("Settings", "true or false");
    }
    if (definition.type == SettingType::Switch) {
        return QCoreApplication::translate("Settings", "0 or 1");
    }
    if (definition.greatest == anyInteger) {
        return QCoreApplication::translate("Settings", "a whole number from %1 on")
            .arg(definition.least);
    }
    return QCoreApplication::translate("Settings", "a whole number from %1 to %2")
        .arg(definition.least)
        .arg(definition.greatest);
}

/// Looks at the file before the store opens it and may write to it.
QString keepDamagedCopy(const QString& file) {
    const QSettings probe(file, QSettings::IniFormat);
    probe.allKeys(); // a section is only read, and found damaged, when somebody asks for it
    if (probe.status() != QSettings::FormatError) {
        return {};
    }
    const QString copy = file + QStringLiteral(".damaged");
    QFile::remove(copy);
    if (!QFile::copy(file, copy)) {
        return QCoreApplication::translate(
                   "Settings", "The settings file “%1” is damaged. What could not be read has its "
                               "default again.")
            .arg(file);
    }
    return QCoreApplication::translate(
               "Settings", "The settings file “%1” is damaged. What could not be read has its "
                           "default again; the damaged file was kept as “%2”.")
        .arg(file, copy);
}

} // namespace

Settings::Settings(const QString& file)
    : damage_(keepDamagedCopy(file)), store_(file, QSettings::IniFormat) {}

QString Settings::userFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/quav/quav.ini");
}

std::span<const SettingDefinition> Settings::definitions() {
    return table();
}

const SettingDefinition* Settings::definition(QStringView key) {
    const auto found = std::find_if(table().begin(), table().end(),
                                    [&](const SettingDefinition& one) { return one.key == key; });
    return found == table().end() ? nullptr : &*found;
}

QVariant Settings::stored(QLatin1StringView key) const {
    const SettingDefinition* known = definition(QString(key));
    Q_ASSERT_X(known, "Settings", key.data());
    const std::lock_guard lock(mutex_);
    if (!store_.contains(key)) {
        return known->defaultValue;
    }
    return asTyped(*known, store_.value(key)).value_or(known->inDoubt);
}

int Settings::integer(QLatin1StringView key) const {
    return stored(key).toInt();
}

bool Settings::boolean(QLatin1StringView key) const {
    return stored(key).toBool();
}

QString Settings::text(QLatin1StringView key) const {
    return stored(key).toString();
}

tl::expected<void, QString> Settings::setFromText(const QString& key, const QString& value) {
    const SettingDefinition* known = definition(key);
    if (!known) {
        return tl::make_unexpected(
            QCoreApplication::translate("Settings", "There is no setting “%1”.").arg(key));
    }
    const std::optional<QVariant> typed = asTyped(*known, value);
    if (!typed) {
        return tl::make_unexpected(
            QCoreApplication::translate("Settings", "“%1” takes %2, not “%3”.")
                .arg(key, whatItTakes(*known), value));
    }
    set(known->key, *typed);
    return {};
}

void Settings::set(QLatin1StringView key, const QVariant& value) {
    {
        const std::lock_guard lock(mutex_);
        store_.setValue(key, value);
    }
    Q_EMIT changed(key);
}

void Settings::reset(QLatin1StringView key) {
    {
        const std::lock_guard lock(mutex_);
        store_.remove(key);
    }
    Q_EMIT changed(key);
}

bool Settings::save() {
    const std::lock_guard lock(mutex_);
    store_.sync();
    return store_.status() != QSettings::AccessError;
}

} // namespace quav
