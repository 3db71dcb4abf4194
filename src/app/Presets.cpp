#include "app/Presets.h"

#include "app/TabOptions.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace quav {

namespace {

const QString fileSuffix = QStringLiteral(".json");

/// The longest name that fits into a file name when each of its letters takes its full room there.
constexpr qsizetype longestName = 60;

QString translatedName(const char* name) {
    return QCoreApplication::translate("Presets", name);
}

tl::unexpected<QString> noSuchPreset(const QString& name) {
    return tl::make_unexpected(Presets::tr("There is no preset “%1”.").arg(name));
}

QString nameOf(const QString& file) {
    return QUrl::fromPercentEncoding(file.chopped(fileSuffix.size()).toUtf8());
}

} // namespace

Presets::Presets(const OptionTable& table, QString tab, const QString& folder,
                 const Settings& settings, std::vector<StandardPreset> standard, QObject* parent)
    : QObject(parent), table_(table), tab_(std::move(tab)), folder_(joinPath(folder, tab_)),
      settings_(settings), standard_(std::move(standard)) {}

QString Presets::userFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/quav/presets");
}

QString Presets::fileOf(const QString& name) const {
    // No name leads out of the folder, hides its file or differs in capitals only by accident.
    QByteArray file = QUrl::toPercentEncoding(name, " ", ".~");
    return joinPath(folder_, QString::fromLatin1(file) + fileSuffix);
}

QStringList Presets::names() const {
    QStringList own;
    for (const QString& file : QDir(folder_).entryList({u'*' + fileSuffix}, QDir::Files)) {
        own << nameOf(file);
    }
    std::sort(own.begin(), own.end(), [](const QString& left, const QString& right) {
        return QString::localeAwareCompare(left, right) < 0;
    });
    QStringList all;
    for (const StandardPreset& preset : standard_) {
        all << translatedName(preset.name);
    }
    return all + own;
}

bool Presets::isStandard(const QString& name) const {
    return std::any_of(standard_.begin(), standard_.end(), [&](const StandardPreset& preset) {
        return translatedName(preset.name) == name;
    });
}

bool Presets::exists(const QString& name) const {
    return isStandard(name) || QFile::exists(fileOf(name));
}

tl::expected<void, QString> Presets::whetherNamed(const QString& name) const {
    if (name.trimmed().isEmpty()) {
        return tl::make_unexpected(tr("A preset needs a name."));
    }
    if (name.size() > longestName) {
        return tl::make_unexpected(
            tr("The name of a preset has at most %n characters.", nullptr, longestName));
    }
    if (isStandard(name)) {
        return tl::make_unexpected(
            tr("The preset “%1” comes with the program and stays as it is. Choose another name.")
                .arg(name));
    }
    return {};
}

tl::expected<OptionValues, QString> Presets::values(const QString& name) const {
    for (const StandardPreset& preset : standard_) {
        if (translatedName(preset.name) == name) {
            OptionValues values =
                preset.options.isEmpty() ? storedValues(table_, settings_) : OptionValues(table_);
            return values.setFromJson(preset.options).map([&] { return values; });
        }
    }
    QFile file(fileOf(name));
    if (!file.open(QIODevice::ReadOnly)) {
        return noSuchPreset(name);
    }
    return read(file.readAll()).map([](const auto& named) { return named.second; });
}

QByteArray Presets::json(const QString& name, const OptionValues& values) const {
    const QJsonObject object{{QStringLiteral("tab"), tab_},
                             {QStringLiteral("name"), name},
                             {QStringLiteral("options"), values.json()}};
    return QJsonDocument(object).toJson();
}

tl::expected<std::pair<QString, OptionValues>, QString>
Presets::read(const QByteArray& json) const {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QString name = object.value(u"name").toString();
    if (name.isEmpty() || !object.value(u"options").isObject()) {
        return tl::make_unexpected(tr("This is no preset."));
    }
    if (object.value(u"tab").toString() != tab_) {
        return tl::make_unexpected(tr("The preset “%1” is for another tab: “%2”.")
                                       .arg(name, object.value(u"tab").toString()));
    }
    OptionValues values(table_);
    if (const auto set = values.setFromJson(object.value(u"options").toObject()); !set) {
        return tl::make_unexpected(tr("The preset “%1” does not fit: %2").arg(name, set.error()));
    }
    return std::pair(name, values);
}

tl::expected<void, QString> Presets::save(const QString& name, const OptionValues& values) {
    if (auto named = whetherNamed(name); !named) {
        return named;
    }
    QDir().mkpath(folder_);
    QSaveFile file(fileOf(name));
    const QByteArray text = json(name, values);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        return tl::make_unexpected(tr("The preset could not be saved to “%1”: %2")
                                       .arg(file.fileName(), file.errorString()));
    }
    Q_EMIT changed();
    return {};
}

tl::expected<void, QString> Presets::rename(const QString& name, const QString& newName) {
    if (name == newName) {
        return {};
    }
    if (exists(newName) && !isStandard(newName)) {
        return tl::make_unexpected(tr("There is a preset “%1” already.").arg(newName));
    }
    return values(name)
        .and_then([&](const OptionValues& values) { return save(newName, values); })
        .and_then([&] { return remove(name); });
}

tl::expected<void, QString> Presets::remove(const QString& name) {
    if (isStandard(name)) {
        return tl::make_unexpected(
            tr("The preset “%1” comes with the program and stays.").arg(name));
    }
    QFile file(fileOf(name));
    if (!file.exists()) {
        return noSuchPreset(name);
    }
    if (!file.remove()) {
        return tl::make_unexpected(tr("The preset could not be deleted from “%1”: %2")
                                       .arg(file.fileName(), file.errorString()));
    }
    Q_EMIT changed();
    return {};
}

tl::expected<QByteArray, QString> Presets::exported(const QString& name) const {
    return values(name).map([&](const OptionValues& values) { return json(name, values); });
}

tl::expected<QString, QString> Presets::import(const QByteArray& json) {
    return read(json).and_then([&](const auto& named) {
        return save(named.first, named.second).map([&] { return named.first; });
    });
}

} // namespace quav
