#include "app/Presets.h"

#include "app/TabOptions.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace quav {

namespace {

const QString fileSuffix = QStringLiteral(".json");
const QString optionsKey = QStringLiteral("options");
const QString nameKey = QStringLiteral("name");
const QString tabKey = QStringLiteral("tab");

/// How long a file name may be, with room for what a file is called while it is being written.
constexpr qsizetype longestFileName = 240;

/// No preset comes near it; whatever is larger is another kind of file.
constexpr qint64 largestFile = 1 << 20;

PresetName standardName(const char* word, const char* title) {
    return {QString::fromLatin1(word), QCoreApplication::translate("Presets", title), true};
}

QString nameOf(const QString& file) {
    return QUrl::fromPercentEncoding(file.chopped(fileSuffix.size()).toUtf8());
}

bool isSame(const QString& left, const QString& right) {
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

QString quoted(const QStringList& words) {
    QStringList all;
    for (const QString& word : words) {
        all << Presets::tr("“%1”").arg(word);
    }
    return all.join(QStringLiteral(", "));
}

tl::expected<void, QString> writeFile(const QString& path, const QByteArray& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        return tl::make_unexpected(
            Presets::tr("The preset could not be written to “%1” (%2). See that its folder can be "
                        "written to and has room.")
                .arg(path, file.errorString()));
    }
    return {};
}

tl::expected<QByteArray, QString> readFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return tl::make_unexpected(
            Presets::tr("The preset “%1” could not be read: %2").arg(path, file.errorString()));
    }
    return file.read(largestFile);
}

} // namespace

const QString Presets::asInTheSettings = QStringLiteral("settings");

QString Preset::notUnderstood() const {
    QStringList sentences = unfit.values();
    if (!unknown.isEmpty()) {
        sentences.prepend(Presets::tr("The preset has what this version does not know: %1.")
                              .arg(quoted(unknown)));
    }
    return sentences.join(u' ');
}

Presets::Presets(const OptionTable& table, QString tab, const Settings& settings, QObject* parent)
    : QObject(parent), table_(table), tab_(std::move(tab)),
      folder_(joinPath(joinPath(folderOf(settings.file()), QStringLiteral("presets")), tab_)),
      settings_(settings) {}

QString Presets::fileOf(const QString& name) const {
    // No name leads out of the folder or hides its file.
    const QByteArray file = QUrl::toPercentEncoding(name, " ", ".~");
    return joinPath(folder_, QString::fromLatin1(file) + fileSuffix);
}

std::vector<PresetName> Presets::names() const {
    std::vector<PresetName> all{
        standardName("settings", QT_TRANSLATE_NOOP("Presets", "As in the settings"))};
    for (const StandardPreset& preset : table_.presets()) {
        all.push_back(standardName(preset.word, preset.title));
    }
    const auto firstOwn = static_cast<std::ptrdiff_t>(all.size());
    for (const QString& file : QDir(folder_).entryList({u'*' + fileSuffix}, QDir::Files)) {
        all.push_back({nameOf(file), nameOf(file)});
    }
    std::sort(all.begin() + firstOwn, all.end(), [](const auto& left, const auto& right) {
        return QString::localeAwareCompare(left.name, right.name) < 0;
    });
    return all;
}

std::optional<PresetName> Presets::find(const QString& said) const {
    const std::vector<PresetName> all = names();
    const auto first = [&](const auto& isMeant) -> std::optional<PresetName> {
        const auto found = std::find_if(all.begin(), all.end(), isMeant);
        return found == all.end() ? std::nullopt : std::optional(*found);
    };
    const auto own = first([&](const auto& one) { return !one.standard && one.name == said; });
    return own ? own : first([&](const auto& one) {
        return one.standard && (isSame(one.name, said) || isSame(one.title, said));
    });
}

tl::expected<PresetName, QString> Presets::named(const QString& name) const {
    if (const auto found = find(name)) {
        return *found;
    }
    QStringList known;
    for (const PresetName& one : names()) {
        known << one.name;
    }
    return tl::make_unexpected(
        tr("There is no preset “%1” for %2. There are: %3.").arg(name, tab_, quoted(known)));
}

tl::expected<PresetName, QString> Presets::ownOne(const QString& name) const {
    auto found = named(name);
    if (found && found->standard) {
        return tl::make_unexpected(
            tr("The preset “%1” comes with the program and stays as it is.").arg(found->title));
    }
    return found;
}

tl::expected<void, QString> Presets::whetherUsable(const QString& name) const {
    if (name.trimmed().isEmpty()) {
        return tl::make_unexpected(tr("A preset needs a name."));
    }
    if (lastPathComponent(fileOf(name)).size() > longestFileName) {
        return tl::make_unexpected(tr("This name is too long for a preset. Choose a shorter one."));
    }
    if (const auto found = find(name); found && found->standard) {
        return tl::make_unexpected(
            tr("The preset “%1” comes with the program and stays as it is. Choose another name.")
                .arg(found->title));
    }
    return {};
}

Preset Presets::standardPreset(const QString& name) const {
    if (name == asInTheSettings) {
        return {storedValues(table_, settings_), {}, {}};
    }
    Preset preset{OptionValues(table_), {}, {}};
    for (const StandardPreset& one : table_.presets()) {
        if (name == QLatin1StringView(one.word)) {
            for (const auto& [option, value] : one.options) {
                preset.values.setValue(*option, value);
            }
        }
    }
    return preset;
}

Preset Presets::understood(const QJsonObject& options) const {
    Preset preset{OptionValues(table_), {}, {}};
    for (auto entry = options.begin(); entry != options.end(); ++entry) {
        if (!table_.row(entry.key())) {
            preset.unknown << entry.key();
        } else if (const auto set = preset.values.setFromJson({{entry.key(), entry.value()}});
                   !set) {
            preset.unfit.insert(entry.key(), set.error());
        }
    }
    return preset;
}

tl::expected<QJsonObject, QString> Presets::object(const QString& file) const {
    return readFile(file).and_then([&](const QByteArray& text) {
        QJsonParseError problem;
        const QJsonObject object = QJsonDocument::fromJson(text, &problem).object();
        const QString tab = object.value(tabKey).toString();
        using Result = tl::expected<QJsonObject, QString>;
        if (!object.value(optionsKey).isObject() || tab.isEmpty()) {
            const bool isJson = problem.error == QJsonParseError::NoError;
            return Result(tl::make_unexpected(
                isJson ? tr("“%1” is no preset: it has no options of a tab.").arg(file)
                       : tr("“%1” is no preset: %2 (at byte %3). Repair it or delete it.")
                             .arg(file, problem.errorString())
                             .arg(problem.offset)));
        }
        if (tab != tab_) {
            return Result(tl::make_unexpected(
                tr("The preset “%1” is for another tab: “%2”.").arg(file, tab)));
        }
        return Result(object);
    });
}

tl::expected<QJsonObject, QString> Presets::objectOf(const PresetName& preset) const {
    return preset.standard ? QJsonObject{{tabKey, tab_},
                                         {nameKey, preset.name},
                                         {optionsKey, standardPreset(preset.name).values.json()}}
                           : object(fileOf(preset.name));
}

tl::expected<Preset, QString> Presets::read(const QString& name) const {
    return named(name).and_then([&](const PresetName& found) -> tl::expected<Preset, QString> {
        if (found.standard) {
            return standardPreset(found.name);
        }
        return object(fileOf(found.name)).map([this](const QJsonObject& object) {
            return understood(object.value(optionsKey).toObject());
        });
    });
}

tl::expected<void, QString> Presets::write(const QString& name, QJsonObject object) {
    if (auto usable = whetherUsable(name); !usable) {
        return usable;
    }
    if (!QDir().mkpath(folder_)) {
        return tl::make_unexpected(
            tr("The folder “%1” for presets could not be made. See that the folder above it can be "
               "written to.")
                .arg(folder_));
    }
    object.insert(nameKey, name);
    object.insert(tabKey, tab_);
    return writeFile(fileOf(name), QJsonDocument(object).toJson()).map([this] {
        Q_EMIT changed();
    });
}

tl::expected<void, QString> Presets::save(const QString& name, const OptionValues& values) {
    const QString file = fileOf(name);
    QJsonObject whole = QFile::exists(file) ? object(file).value_or(QJsonObject()) : QJsonObject();
    QJsonObject options = whole.value(optionsKey).toObject();
    const QJsonObject ours = values.json();
    for (auto entry = ours.begin(); entry != ours.end(); ++entry) {
        options.insert(entry.key(), entry.value());
    }
    whole.insert(optionsKey, options);
    return write(name, whole);
}

tl::expected<void, QString> Presets::rename(const QString& name, const QString& newName) {
    if (name == newName) {
        return {};
    }
    if (const auto taken = find(newName); taken && !taken->standard) {
        return tl::make_unexpected(tr("There is a preset “%1” already.").arg(newName));
    }
    return ownOne(name)
        .and_then([this](const PresetName& own) { return objectOf(own); })
        .and_then([&](const QJsonObject& object) { return write(newName, object); })
        .and_then([&] { return remove(name); });
}

tl::expected<void, QString> Presets::remove(const QString& name) {
    return ownOne(name).and_then([&](const PresetName& own) -> tl::expected<void, QString> {
        QFile file(fileOf(own.name));
        if (!file.remove()) {
            return tl::make_unexpected(tr("The preset “%1” could not be deleted (%2). See that its "
                                          "folder can be written to.")
                                           .arg(file.fileName(), file.errorString()));
        }
        Q_EMIT changed();
        return {};
    });
}

tl::expected<QByteArray, QString> Presets::exported(const QString& name) const {
    return named(name)
        .and_then([this](const PresetName& found) { return objectOf(found); })
        .map([](const QJsonObject& object) { return QJsonDocument(object).toJson(); });
}

tl::expected<void, QString> Presets::exportTo(const QString& file, const QString& name) const {
    return exported(name).and_then([&](const QByteArray& text) { return writeFile(file, text); });
}

tl::expected<QString, QString> Presets::nameIn(const QString& file) const {
    return object(file).map(
        [](const QJsonObject& object) { return object.value(nameKey).toString(); });
}

tl::expected<void, QString> Presets::import(const QString& file, const QString& name) {
    if (const auto taken = find(name); taken && !taken->standard) {
        return tl::make_unexpected(
            tr("There is a preset “%1” already. Choose another name.").arg(name));
    }
    return object(file).and_then([&](const QJsonObject& object) { return write(name, object); });
}

QString Presets::tabIn(const QString& file) {
    const QByteArray text = readFile(file).value_or(QByteArray());
    return QJsonDocument::fromJson(text).object().value(tabKey).toString();
}

} // namespace quav
