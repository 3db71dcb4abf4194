#pragma once

#include "app/OptionValues.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <vector>

namespace quav {

class Settings;

/// A preset that comes with the program: what differs from the options as they are at first.
struct StandardPreset {
    const char* name; ///< to be translated in the context "Presets"
    QJsonObject options;
};

/// The named sets of option values of a tab: those that come with the program, one that is what the
/// settings say, and the user's own, a JSON file each:
///
///     {"tab": "encode", "name": "For the archive", "options": {"flacSlider": 8, …}}
///
/// Errors are sentences for the user.
class Presets : public QObject {
    Q_OBJECT

public:
    /// The user's presets lie in a folder of the tab's name below `folder`, which need not exist.
    Presets(const OptionTable& table, QString tab, const QString& folder, const Settings& settings,
            std::vector<StandardPreset> standard, QObject* parent = nullptr);

    /// The folder of the user who runs the program, beside the settings.
    static QString userFolder();

    /// All names: the standard ones, then the user's in alphabetical order.
    QStringList names() const;

    /// Whether a preset comes with the program and cannot be changed.
    bool isStandard(const QString& name) const;

    tl::expected<OptionValues, QString> values(const QString& name) const;

    /// Makes a preset, or replaces the user's one of that name.
    tl::expected<void, QString> save(const QString& name, const OptionValues& values);
    tl::expected<void, QString> rename(const QString& name, const QString& newName);
    tl::expected<void, QString> remove(const QString& name);

    /// A preset as the text of a file, for another machine.
    tl::expected<QByteArray, QString> exported(const QString& name) const;

    /// Keeps such a preset under the name that it brings; that name.
    tl::expected<QString, QString> import(const QByteArray& json);

Q_SIGNALS:
    void changed();

private:
    QString fileOf(const QString& name) const;
    bool exists(const QString& name) const;
    tl::expected<void, QString> whetherNamed(const QString& name) const;
    QByteArray json(const QString& name, const OptionValues& values) const;
    tl::expected<std::pair<QString, OptionValues>, QString> read(const QByteArray& json) const;

    const OptionTable& table_;
    QString tab_;
    QString folder_;
    const Settings& settings_;
    std::vector<StandardPreset> standard_;
};

} // namespace quav
