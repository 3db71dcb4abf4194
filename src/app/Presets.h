#pragma once

#include "app/OptionValues.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <optional>
#include <vector>

namespace quav {

class Settings;

/// What a preset says.
struct Preset {
    OptionValues values; ///< what was not understood is as it is at first
    QStringList unknown; ///< keys of options that this version of the program does not have
    QMap<QString, QString> unfit; ///< by the key, sentences about values that do not fit

    /// A sentence on what was not understood; empty when everything was.
    QString notUnderstood() const;
};

/// How a preset is called.
struct PresetName {
    QString name;          ///< what it is found by; the same in every language
    QString title;         ///< what people read
    bool standard = false; ///< comes with the program and cannot be changed

    bool operator==(const PresetName&) const = default;
};

/// The named sets of option values of a tab: those that come with the program, one of which is what
/// the settings say, and the user's own, a JSON file each:
///
///     {"tab": "encode", "name": "For the archive", "options": {"flacSlider": 8, …}}
///
/// What a newer version wrote into such a file, and this one does not understand, stays there.
/// Errors are sentences for the user.
class Presets : public QObject {
    Q_OBJECT

public:
    /// What the settings say has this name in every tab.
    static const QString asInTheSettings;

    /// The user's presets lie in a folder of the tab's name, below one beside the settings; neither
    /// need exist. Table and settings have to outlive the presets.
    Presets(const OptionTable& table, QString tab, const Settings& settings,
            QObject* parent = nullptr);

    /// The standard ones, then the user's in alphabetical order.
    std::vector<PresetName> names() const;

    /// The preset that somebody means: the user's of this very name, else the standard one of this
    /// name or title, in capitals or not.
    std::optional<PresetName> find(const QString& said) const;

    /// The error for a name that nobody has tells those there are.
    tl::expected<Preset, QString> read(const QString& name) const;

    /// Makes a preset, or replaces the user's one of that name.
    tl::expected<void, QString> save(const QString& name, const OptionValues& values);
    tl::expected<void, QString> rename(const QString& name, const QString& newName);
    tl::expected<void, QString> remove(const QString& name);

    /// A preset as the text of a file, for another machine.
    tl::expected<QByteArray, QString> exported(const QString& name) const;
    tl::expected<void, QString> exportTo(const QString& file, const QString& name) const;

    /// The name that such a text or file brings; the error says why it is none of this tab.
    tl::expected<QString, QString> nameIn(const QString& file) const;

    /// Keeps what such a file says under a name that no preset has yet.
    tl::expected<void, QString> import(const QString& file, const QString& name);

    /// The tab that such a file is for; empty when it is no preset.
    static QString tabIn(const QString& file);

Q_SIGNALS:
    void changed();

private:
    QString fileOf(const QString& name) const;
    tl::expected<void, QString> whetherUsable(const QString& name) const;
    tl::expected<QJsonObject, QString> object(const QString& file) const;
    tl::expected<QJsonObject, QString> objectOf(const PresetName& preset) const;
    tl::expected<PresetName, QString> named(const QString& name) const;
    tl::expected<PresetName, QString> ownOne(const QString& name) const;
    tl::expected<void, QString> write(const QString& name, QJsonObject object);
    Preset standardPreset(const QString& name) const;
    Preset understood(const QJsonObject& options) const;

    const OptionTable& table_;
    QString tab_;
    QString folder_;
    const Settings& settings_;
};

} // namespace quav
