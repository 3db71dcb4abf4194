#include "cli/CommandLineParts.h"
#include "cli/PresetsCommand.h"

namespace quav {

using Action = PresetsOptions::Action;

void CommandLineParts::addPreset(CLI::App& command, const OptionTable& table,
                                 const OptionFlags::Flags& added) {
    CLI::Option* preset =
        command
            .add_option_function<std::string>(
                "--preset",
                [this, added](const std::string& name) {
                    options.run.preset = textArgument(name);
                    // It has a value for everything that would have to be told otherwise.
                    for (const auto& [option, flag] : added) {
                        flag->required(false);
                    }
                },
                plain(tr("Take what is not given here from this preset; “quav-cli presets list” "
                         "lists them")))
            ->type_name("NAME");
    choices[preset].emplace_back(plain(Presets::asInTheSettings));
    for (const StandardPreset& one : table.presets()) {
        choices[preset].emplace_back(one.word);
    }
}

CLI::App* CommandLineParts::addPresetsAction(CLI::App& presets, const char* name,
                                             const QString& what, Action action) {
    CLI::App* command = presets.add_subcommand(name, plain(what));
    command->callback([this, action] { options.presets.action = action; });
    return command;
}

void CommandLineParts::addPresetTab(CLI::App& command, bool required) {
    std::vector<std::string> words;
    for (const TabWithOptions& tab : tabsWithOptions()) {
        words.push_back(plain(tab.name));
    }
    restrict(command.add_option("TAB", presetTab, plain(tr("The command that it is for")))
                 ->required(required),
             words);
}

void CommandLineParts::addPresetName(CLI::App& command) {
    command.add_option("NAME", presetName, plain(tr("The preset's name")))->required();
}

/// A command for each tab, with its flags.
void CommandLineParts::addPresetsSave(CLI::App& presets) {
    CLI::App* save = addPresetsAction(
        presets, "save", tr("Make or replace a preset of what the settings say and what is given"),
        Action::Save);
    save->require_subcommand(1);
    for (const TabWithOptions& tab : tabsWithOptions()) {
        CLI::App* command =
            save->add_subcommand(plain(tab.name), plain(tr("Save a preset for %1").arg(tab.name)));
        command->callback([this, name = plain(tab.name)] { presetTab = name; });
        addPresetName(*command);
        for (const auto& [option, flag] : addFlags(*command, tab.options)) {
            flag->required(false);
        }
        addAnswers(*command);
    }
}

void CommandLineParts::addPresets() {
    CLI::App* presets =
        addCommand("presets", tr("Keep sets of options under names"), Options::Command::Presets);
    presets->require_subcommand(1);
    const std::string json = plain(tr("Print JSON, one object a line"));
    CLI::App* list = addPresetsAction(*presets, "list", tr("List all presets"), Action::List);
    addPresetTab(*list, false);
    list->add_flag("--json", options.presets.json, json);
    const auto addNamed = [&](const char* name, const QString& what, Action action) {
        CLI::App* command = addPresetsAction(*presets, name, what, action);
        addPresetTab(*command);
        addPresetName(*command);
        return command;
    };
    addNamed("show", tr("Print the options of a preset"), Action::Show)
        ->add_flag("--json", options.presets.json, json);
    addPresetsSave(*presets);
    addNamed("delete", tr("Delete a preset"), Action::Delete);
    addNamed("rename", tr("Give a preset another name"), Action::Rename)
        ->add_option("NEW", newPresetName, plain(tr("Its new name")))
        ->required();
    CLI::App* exported =
        addNamed("export", tr("Write a preset to a file, for another machine"), Action::Export);
    exported->add_option("FILE", presetFile,
                         plain(tr("Where to; the standard output if it is left out")));
    addAnswers(*exported);
    CLI::App* import =
        addPresetsAction(*presets, "import", tr("Keep the preset in such a file"), Action::Import);
    import->add_option("FILE", presetFile, plain(tr("What was exported")))->required();
    import
        ->add_option("--name", newPresetName,
                     plain(tr("Keep it under this name instead of its own")))
        ->type_name("NAME");
    presets->footer(
        plain(tr("Example: quav-cli presets save encode \"For the attic\" --level 8 --verify")));
}

PresetsOptions CommandLineParts::readPresets() const {
    PresetsOptions read = options.presets;
    read.tab = textArgument(presetTab).toLower();
    read.name = textArgument(presetName);
    read.newName = textArgument(newPresetName);
    read.file = textArgument(presetFile);
    return read;
}

} // namespace quav
