#pragma once

#include "cli/OptionFlags.h"
#include "cli/Options.h"

#include <QCoreApplication>

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

namespace quav {

class ConversionOptions;
struct TabRow;

inline std::string plain(const QString& text) {
    return text.toStdString();
}

/// What the user gave for an argument, which the parser may have got in a guise of its own.
QString textArgument(const std::string& argument);

/// What the parser fills, and what adds each command to it.
struct CommandLineParts {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CLI::App app{
        plain(QCoreApplication::translate(
            "CommandLine",
            "Turns WAV and AIFF into FLAC or WavPack and back, many files at a time, with their "
            "tags; writes and verifies checksum files; tests compressed files. Does without a "
            "display what the window does.")),
        "quav-cli"};
    CLI::App* settings = nullptr;
    bool manual = false;
    std::string shell;
    std::string toolOptions;
    FlagChoices choices;
    OptionFlags flags;
    std::optional<std::string> outputFolder;
    std::optional<std::string> savePath;
    std::vector<std::string> files;
    bool yes = false;
    bool no = false;
    std::string key;
    std::string value;
    Options options;
    std::string presetTab;
    std::string presetName;
    std::string newPresetName;
    std::string presetFile;

    CLI::App* addCommand(const char* name, const QString& what, Options::Command command);
    CLI::App* addTabCommand(const TabRow& row, const QString& what);
    void addTabs();
    void addEncode(const TabRow& row);
    void addDecode(const TabRow& row);
    /// The flags of a tab's options, and --preset where there are any; `given` as OptionFlags has
    /// it.
    OptionFlags::Flags addFlags(CLI::App& command, const OptionTable& table,
                                const OptionValues* given = nullptr);
    void addPreset(CLI::App& command, const OptionTable& table, const OptionFlags::Flags& added);
    void addForPackagers();
    void addKey(CLI::App& command);
    void restrict(CLI::Option* option, const std::vector<std::string>& words);
    void addChecksum(const TabRow& row);
    CLI::App* addChecksumAction(CLI::App& checksum, const char* name, const QString& what,
                                ChecksumCommand action);
    void addConversion(CLI::App& command, const ConversionOptions& rows);
    void addDryRun(CLI::App& command);
    void addRunOptions(CLI::App& command);
    void addAnswers(CLI::App& command);
    void addTools();
    void addSettings();
    void addPresets();
    CLI::App* addPresetsAction(CLI::App& presets, const char* name, const QString& what,
                               PresetsOptions::Action action);
    void addPresetTab(CLI::App& command, bool required = true);
    void addPresetName(CLI::App& command);
    void addPresetsSave(CLI::App& presets);
    PresetsOptions readPresets() const;
    CLI::App* addSettingsAction(const char* name, const QString& what,
                                SettingsOptions::Action action);
    Options read() const;
};

} // namespace quav
