#pragma once

#include "app/Presets.h"

#include <QObject>
#include <QString>

namespace quav {

class Settings;
class TabOptions;
class UserPrompts;

/// The preset that a tab's options stand at, and what the user does with presets. Whatever cannot
/// be done is told by an alert.
class PresetChooser : public QObject {
    Q_OBJECT

public:
    /// What is referred to has to outlive the chooser.
    PresetChooser(TabOptions& options, const QString& tab, const Settings& settings,
                  UserPrompts& prompts);

    const Presets& presets() const { return presets_; }

    /// What was chosen last, at first what the settings say.
    const PresetName& chosen() const { return chosen_; }

    /// Whether the options were changed since.
    bool differs() const;

    /// Gives every option the value of a preset.
    void choose(const QString& name);

    /// Keeps the options as they stand under a name that is asked for.
    void saveAs();

    /// These do nothing with a preset that comes with the program.
    void rename();
    void remove();

    void exportToFile();
    void importFromFile();

Q_SIGNALS:
    void changed();

private:
    void stand(const PresetName& preset, const OptionValues& values);
    void standAtSettings();
    bool tell(const tl::expected<void, QString>& done);

    TabOptions& options_;
    UserPrompts& prompts_;
    Presets presets_;
    PresetName chosen_;
    OptionValues values_; ///< those of the chosen preset
};

} // namespace quav
