#include "platform/Settings.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace quav {

namespace {

constexpr int anyInteger = std::numeric_limits<int>::max();

SettingDefinition integerSetting(const char* key, int value, int least = 0,
                                 int greatest = anyInteger) {
    return {QLatin1StringView(key), SettingType::Integer, value, least, greatest};
}

SettingDefinition booleanSetting(const char* key, bool value) {
    return {QLatin1StringView(key), SettingType::Boolean, value};
}

SettingDefinition textSetting(const char* key, const char* value) {
    return {QLatin1StringView(key), SettingType::Text, QString::fromLatin1(value)};
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
        integerSetting("trashOrDelete", 0, 0, 1),
        integerSetting("lameStereoOption", 1),
        integerSetting("lameQValue", 3),
        textSetting("aacCodecQuality", "Max"),
        textSetting("ffpExtension", "ffp.txt"),
        integerSetting("flacVerifyButton", 0, 0, 1),
        integerSetting("flacKeepForeignMetadataButton", 0, 0, 1),
        integerSetting("flacGenerateFFPButton", 0, 0, 1),
        booleanSetting("warnOnDelete", true),
        booleanSetting("warnOnFilesSkipped", true),
        booleanSetting("checksumFileUsesOutputDirName", false),
        integerSetting("encodeToSourceDirectory", 0, 0, 1),
        integerSetting("decodeToSourceDirectory", 0, 0, 1),
        integerSetting("encodeLossyToSourceDirectory", 0, 0, 1),
        textSetting("incomingSurroundOrder", "L R C LFE LS RS (STANDARD)"),
        booleanSetting("noPaddingFlacTags", false),
        textSetting("cdProviderText", ""),
        booleanSetting("verifyBeforeDelete", true),
        booleanSetting("keepModificationTime", false),
    };
    return definitions;
}

/// The value as the definition's type, or nothing when it is none of that type or out of range.
std::optional<QVariant> asTyped(const SettingDefinition& definition, const QVariant& value) {
    const QString text = value.toString().trimmed();
    switch (definition.type) {
    case SettingType::Integer: {
        bool isNumber = false;
        const int number = text.toInt(&isNumber);
        const bool fits = isNumber && number >= definition.least && number <= definition.greatest;
        return fits ? std::optional<QVariant>(number) : std::nullopt;
    }
    case SettingType::Boolean:
        if (text == u"true" || text == u"1") {
            return true;
        }
        return text == u"false" || text == u"0" ? std::optional<QVariant>(false) : std::nullopt;
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
    const QVariant value =
        inMemory_ && inMemory_->contains(key) ? inMemory_->value(key) : store_.value(key);
    return value.isValid() ? asTyped(*known, value).value_or(known->defaultValue)
                           : known->defaultValue;
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
    const std::lock_guard lock(mutex_);
    if (inMemory_) {
        inMemory_->insert(key, value);
    } else {
        store_.setValue(key, value);
    }
}

void Settings::keepChangesInMemory() {
    const std::lock_guard lock(mutex_);
    inMemory_.emplace();
}

void Settings::reset(QLatin1StringView key) {
    const std::lock_guard lock(mutex_);
    if (inMemory_) {
        inMemory_->insert(key, definition(QString(key))->defaultValue);
    } else {
        store_.remove(key);
    }
}

bool Settings::save() {
    const std::lock_guard lock(mutex_);
    store_.sync();
    return store_.status() != QSettings::AccessError;
}

} // namespace quav
