#include "app/PresetChooser.h"

#include "app/TabOptions.h"
#include "app/UserPrompts.h"

namespace quav {

PresetChooser::PresetChooser(TabOptions& options, const QString& tab, const Settings& settings,
                             UserPrompts& prompts)
    : options_(options), prompts_(prompts), presets_(options.table(), tab, settings),
      values_(options.table()) {
    standAtSettings();
    connect(&options_, &TabOptions::changed, this, &PresetChooser::changed);
    connect(&presets_, &Presets::changed, this, &PresetChooser::changed);
}

void PresetChooser::stand(const PresetName& preset, const OptionValues& values) {
    chosen_ = preset;
    values_ = values;
}

void PresetChooser::standAtSettings() {
    stand(*presets_.find(Presets::asInTheSettings), options_.values());
}

bool PresetChooser::differs() const {
    // What the settings say moves with them.
    const bool moves = chosen_.standard && chosen_.name == Presets::asInTheSettings;
    return options_.values() != (moves ? presets_.read(chosen_.name)->values : values_);
}

bool PresetChooser::tell(const tl::expected<void, QString>& done) {
    if (!done) {
        prompts_.alert(tr("The preset could not be used or changed"), done.error());
    }
    return done.has_value();
}

void PresetChooser::choose(const QString& name) {
    const auto preset = presets_.read(name);
    if (preset) {
        stand(*presets_.find(name), preset->values);
        options_.chooseAll(preset->values);
    }
    Q_EMIT changed();
    if (!preset) {
        tell(tl::make_unexpected(preset.error()));
    } else if (const QString left = preset->notUnderstood(); !left.isEmpty()) {
        prompts_.alert(tr("The preset “%1” was used in part").arg(name), left);
    }
}

void PresetChooser::saveAs() {
    const auto line = prompts_.askForLine(tr("Save Preset"), tr("A name for these options:"),
                                          chosen_.standard ? QString() : chosen_.name);
    if (!line) {
        return;
    }
    const QString name = line->trimmed();
    const auto earlier = presets_.find(name);
    if (earlier && !earlier->standard &&
        !prompts_.confirm({tr("Replace the preset “%1”?").arg(name),
                           tr("What it says now is lost."), tr("Cancel"), tr("Replace"), false})) {
        return;
    }
    if (tell(presets_.save(name, options_.values()))) {
        stand({name, name}, options_.values());
        Q_EMIT changed();
    }
}

void PresetChooser::rename() {
    if (chosen_.standard) {
        return;
    }
    const auto line = prompts_.askForLine(tr("Rename Preset"), tr("Its new name:"), chosen_.name);
    const QString name = line.value_or(QString()).trimmed();
    if (line && tell(presets_.rename(chosen_.name, name))) {
        stand({name, name}, values_);
        Q_EMIT changed();
    }
}

void PresetChooser::remove() {
    if (chosen_.standard || !prompts_.confirm({tr("Delete the preset “%1”?").arg(chosen_.name),
                                               tr("The options stay as they stand."), tr("Cancel"),
                                               tr("Delete"), false})) {
        return;
    }
    if (tell(presets_.remove(chosen_.name))) {
        standAtSettings();
        Q_EMIT changed();
    }
}

void PresetChooser::exportToFile() {
    const QString name = QString(chosen_.title).replace(u'/', u'-') + QStringLiteral(".json");
    if (const auto path = prompts_.chooseSavePath(tr("Export Preset"), {}, name)) {
        tell(presets_.exportTo(*path, chosen_.name));
    }
}

void PresetChooser::importFromFile() {
    for (const QString& file : prompts_.chooseFiles(tr("Import Presets"), tr("Import"))) {
        auto name = presets_.nameIn(file);
        if (!name) {
            tell(tl::make_unexpected(name.error()));
            continue;
        }
        if (name->isEmpty() || presets_.find(*name)) {
            const auto line = prompts_.askForLine(
                tr("Import Preset"),
                tr("There is a preset “%1” already. A name for the new one:").arg(*name), *name);
            if (!line) {
                continue;
            }
            name = line->trimmed();
        }
        if (tell(presets_.import(file, *name))) {
            choose(*name);
        }
    }
}

} // namespace quav
