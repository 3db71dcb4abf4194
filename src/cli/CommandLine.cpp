#include "cli/CommandLine.h"

#include "app/FileKinds.h"
#include "cli/CommandLineParts.h"
#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"
#include "platform/Settings.h"
#include "platform/Version.h"
#include "workbench/TabTable.h"

#include <QHash>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace quav {

namespace {

constexpr char shield = '\x01';

/// The parser takes some operands for something else: what stands in brackets for a list, "++" for
/// the end of a command. Behind a shield they are plain operands, and so is all that follows "--".
std::vector<std::string> shielded(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    bool operandsOnly = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument(argv[i]);
        if (argument == "--" && !operandsOnly) {
            operandsOnly = true;
            continue;
        }
        const bool special = !argument.empty() && std::string_view("[{+\x01").find(argument[0]) !=
                                                      std::string_view::npos;
        arguments.push_back(operandsOnly || special ? shield + argument : argument);
    }
    return arguments;
}

std::string unshielded(const std::string& argument) {
    return !argument.empty() && argument[0] == shield ? argument.substr(1) : argument;
}

QByteArray rawArgument(const std::string& argument) {
    return QByteArray::fromStdString(unshielded(argument));
}

/// Help as the parser lays it out, but with the defaults behind the descriptions.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* option) const override {
        const std::string value = option->get_type_size() == 0 ? "" : option->get_type_name();
        return value.empty() || option->get_positional() ? "" : ' ' + value;
    }

    std::string make_option_desc(const CLI::Option* option) const override {
        if (option->get_required() && !option->get_positional()) {
            return option->get_description() + " (" +
                   plain(CommandLine::tr("required without --preset")) + ')';
        }
        const std::string standard = option->get_default_str();
        return standard.empty() ? option->get_description()
                                : option->get_description() + " (" +
                                      plain(CommandLine::tr("default:")) + ' ' + standard + ')';
    }
};

std::string settingAsDefault(QLatin1StringView key) {
    const QString value = Settings::definition(QString(key))->defaultValue.toString();
    return plain(CommandLine::tr("the setting %1, at first %2").arg(key, value));
}

std::string examplesAndExitStatus() {
    QString text =
        CommandLine::tr("Examples:\n"
                        "  quav-cli encode --to flac --output archive concert\n"
                        "  quav-cli decode --to wav --beside concert/*.flac\n"
                        "  quav-cli encode --to flac --dry-run --output archive concert\n"
                        "  quav-cli checksum verify concert\n"
                        "\n"
                        "Exit status:");
    for (const exitstatus::Meaning& meaning : exitstatus::meanings) {
        text += QStringLiteral("\n  %1  %2")
                    .arg(meaning.status)
                    .arg(QCoreApplication::translate("ExitStatus", meaning.text));
    }
    return plain(text);
}

CLI::Validator range(QLatin1StringView key) {
    const SettingDefinition* definition = Settings::definition(QString(key));
    return CLI::Range(definition->least, definition->greatest).description("");
}

std::vector<std::string> settingKeys() {
    std::vector<std::string> keys;
    for (const SettingDefinition& definition : Settings::definitions()) {
        keys.push_back(plain(QString(definition.key)));
    }
    return keys;
}

} // namespace

QString textArgument(const std::string& argument) {
    return QString::fromStdString(unshielded(argument));
}

CLI::App* CommandLineParts::addCommand(const char* name, const QString& what,
                                       Options::Command command) {
    CLI::App* added = app.add_subcommand(name, plain(what));
    added->callback([this, command] { options.command = command; });
    return added;
}

CLI::App* CommandLineParts::addTabCommand(const TabRow& row, const QString& what) {
    CLI::App* added = app.add_subcommand(row.command, plain(what));
    added->callback([this, label = row.label] {
        options.command = Options::Command::Tab;
        options.tab = label;
    });
    return added;
}

void CommandLineParts::addTabs() {
    static const QHash<QString, void (CommandLineParts::*)(const TabRow&)> adders{
        {tabs::decode, &CommandLineParts::addDecode},
        {tabs::encode, &CommandLineParts::addEncode},
        {tabs::checksum, &CommandLineParts::addChecksum},
    };
    for (const TabRow& row : tabTable()) {
        if (row.command) {
            const auto add = adders.value(row.label);
            Q_ASSERT(add);
            (this->*add)(row);
        }
    }
}

/// What prints something that a package brings; the help does not tell of it.
void CommandLineParts::addForPackagers() {
    app.add_flag("--man", manual, plain(tr("Print the manual page and exit")))->group("");
    CLI::Option* completion =
        app.add_option("--completion", shell,
                       plain(tr("Print the completions for a shell and exit")))
            ->group("");
    restrict(completion, {"bash", "zsh", "fish"});
    app.add_option("--completion-of", toolOptions,
                   plain(tr("Print those of the tool whose options stand in this file")))
        ->needs(completion)
        ->group("");
}

/// Only these words, in capitals or not.
void CommandLineParts::restrict(CLI::Option* option, const std::vector<std::string>& words) {
    option->check(CLI::IsMember(words, CLI::ignore_case).description(""));
    choices[option] = words;
}

OptionFlags::Flags CommandLineParts::addFlags(CLI::App& command, const OptionTable& table,
                                              const OptionValues* given) {
    OptionFlags::Flags added = flags.addTo(command, table, given);
    for (const auto& [option, flag] : added) {
        for (const OptionChoice& choice : option->choices) {
            choices[flag].emplace_back(choice.word);
        }
    }
    if (!added.empty()) {
        addPreset(command, table, added);
    }
    return added;
}

void CommandLineParts::addEncode(const TabRow& row) {
    CLI::App* encode = addTabCommand(row, tr("Turn files into FLAC or WavPack"));
    addConversion(*encode, encodeOptions());
    encode->footer(
        plain(tr("Example: quav-cli encode --to flac --level 8 --output archive concert")));
}

void CommandLineParts::addDecode(const TabRow& row) {
    CLI::App* decode = addTabCommand(row, tr("Turn FLAC and WavPack files back into WAV or AIFF"));
    addConversion(*decode, decodeOptions());
    decode->footer(plain(tr("Example: quav-cli decode --to wav --beside concert/*.flac")));
}

void CommandLineParts::addConversion(CLI::App& command, const ConversionOptions& rows) {
    addFlags(command, rows);
    command
        .add_option("--output", outputFolder,
                    plain(tr("Write everything into this folder, which is made if it is missing")))
        ->type_name("DIR")
        ->excludes(flags.flag(rows.beside.info()));
    addDryRun(command);
    addRunOptions(command);
}

void CommandLineParts::addDryRun(CLI::App& command) {
    command.add_flag("--dry-run", options.run.dryRun,
                     plain(tr("Only print what would be done, as commands for a shell")));
}

void CommandLineParts::addRunOptions(CLI::App& command) {
    RunOptions& to = options.run;
    command.add_option("--jobs", to.jobs, plain(tr("How many files at a time")))
        ->type_name("N")
        ->default_str(settingAsDefault(keys::maxThreads))
        ->check(range(keys::maxThreads));
    constexpr int aYear = 365 * 24 * 60 * 60;
    command
        .add_option("--stall-timeout", to.stallTimeout,
                    plain(tr("End a tool that has neither read, written nor printed anything for "
                             "so long; 0: never")))
        ->type_name("SECONDS")
        ->default_str(std::to_string(RunOptions::usualStallTimeout))
        ->check(CLI::Range(0, aYear).description(""));
    addAnswers(command);
    command.add_flag("--json", to.json, plain(tr("One JSON object a line on the standard output")));
    command.add_flag("--quiet", to.quiet, plain(tr("Only errors, warnings and reports")));
    command
        .add_option("FILES", files,
                    plain(tr("Files and folders; a folder is searched with everything below it")))
        ->expected(1, -1)
        ->required();
}

CLI::App* CommandLineParts::addChecksumAction(CLI::App& checksum, const char* name,
                                              const QString& what, ChecksumCommand action) {
    CLI::App* command = checksum.add_subcommand(name, plain(what));
    command->callback([this, action] { options.checksum.command = action; });
    OptionValues given(checksumOptions());
    given.set(checksumOptions().command, action);
    addFlags(*command, checksumOptions(), &given);
    return command;
}

void CommandLineParts::addChecksum(const TabRow& row) {
    CLI::App* checksum = addTabCommand(row, tr("Write and verify checksum files, test files"));
    checksum->require_subcommand(1);
    CLI::App* create = addChecksumAction(
        *checksum, "create", tr("Write one checksum file over all files"), ChecksumCommand::Create);
    create->add_option("--save", savePath, plain(tr("Write the checksum file to this path")))
        ->type_name("PATH")
        ->excludes(flags.flag(checksumOptions().sourceSave.info()));
    addDryRun(*create);
    addRunOptions(*create);
    create->footer(
        plain(tr("Example: quav-cli checksum create --kind ffp --beside concert/*.flac")));
    CLI::App* verify = addChecksumAction(*checksum, "verify",
                                         tr("Check the files that MD5, ST5 and FFP files name"),
                                         ChecksumCommand::Verify);
    addRunOptions(*verify);
    verify->footer(plain(tr("Example: quav-cli checksum verify concert")));
    addRunOptions(*addChecksumAction(*checksum, "test",
                                     tr("Test FLAC, APE, WV and TTA files with their own decoders"),
                                     ChecksumCommand::Test));
}

void CommandLineParts::addAnswers(CLI::App& command) {
    CLI::Option* affirm =
        command.add_flag("--yes", yes, plain(tr("Answer every question with yes")));
    command.add_flag("--no", no, plain(tr("Answer every question with no")))->excludes(affirm);
}

CLI::App* CommandLineParts::addSettingsAction(const char* name, const QString& what,
                                              SettingsOptions::Action action) {
    CLI::App* command = settings->add_subcommand(name, plain(what));
    command->callback([this, action] { options.settings.action = action; });
    return command;
}

/// An unknown key is left to the command, which has words for it.
void CommandLineParts::addKey(CLI::App& command) {
    CLI::Option* option =
        command.add_option("KEY", key, plain(tr("The setting's name")))->required();
    choices[option] = settingKeys();
}

void CommandLineParts::addTools() {
    addCommand("tools", tr("List the tools that do the work"), Options::Command::Tools)
        ->add_flag("--json", options.toolsAsJson, plain(tr("Print JSON, one object a line")));
}

void CommandLineParts::addSettings() {
    using Action = SettingsOptions::Action;
    const std::string json = plain(tr("Print JSON, one object a line"));
    settings =
        addCommand("settings", tr("Show and change the settings"), Options::Command::Settings);
    settings->require_subcommand(1);
    CLI::App* list =
        addSettingsAction("list", tr("List all settings and mark the changed ones"), Action::List);
    list->add_flag("--json", options.settings.json, json);
    CLI::App* get = addSettingsAction("get", tr("Print the value of a setting"), Action::Get);
    addKey(*get);
    get->add_flag("--json", options.settings.json, json);
    CLI::App* set = addSettingsAction("set", tr("Change a setting"), Action::Set);
    addKey(*set);
    set->add_option("VALUE", value, plain(tr("Its new value")))->required();
    addKey(*addSettingsAction("reset", tr("Give a setting its default again"), Action::Reset));
    settings->footer(plain(tr("Example: quav-cli settings set maxThreads 4")));
}

Options CommandLineParts::read() const {
    Options read = options;
    if (manual) {
        read.command = Options::Command::Manual;
    } else if (!shell.empty()) {
        read.command = Options::Command::Completion;
        read.completion = {rawArgument(shell).toLower(), rawArgument(toolOptions)};
    }
    read.run.options = flags.given();
    for (const std::string& file : files) {
        read.run.files << rawArgument(file);
    }
    if (savePath) {
        read.checksum.save = rawArgument(*savePath);
    }
    if (outputFolder) {
        read.conversion.outputFolder = rawArgument(*outputFolder);
    }
    if (yes || no) {
        read.run.answer = yes;
    }
    read.settings.key = textArgument(key);
    read.settings.value = textArgument(value);
    read.presets = readPresets();
    return read;
}

CommandLine::CommandLine() : parts_(std::make_unique<CommandLineParts>()) {
    CLI::App& app = parts_->app;
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_help_flag("-h,--help", plain(tr("Print this help and exit")));
    app.set_version_flag("--version", "quav-cli " + shortVersion().toStdString(),
                         plain(tr("Print the version and exit")));
    parts_->addForPackagers();
    app.require_subcommand(0, 1);
    app.footer(examplesAndExitStatus());
    parts_->addTabs();
    parts_->addTools();
    parts_->addSettings();
    parts_->addPresets();
}

CommandLine::~CommandLine() = default;

tl::expected<Options, CommandLine::Ended> CommandLine::parse(int argc, const char* const* argv) {
    try {
        std::vector<std::string> arguments = shielded(argc, argv);
        std::reverse(arguments.begin(), arguments.end()); // as the parser wants them
        parts_->app.parse(std::move(arguments));
        if (parts_->app.get_subcommands().empty() && !parts_->manual && parts_->shell.empty()) {
            throw CLI::RequiredError(plain(tr("A command")));
        }
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream problem;
        const bool fine = parts_->app.exit(error, out, problem) == 0;
        return tl::make_unexpected(
            Ended{fine ? exitstatus::succeeded : exitstatus::refused,
                  QString::fromStdString(fine ? out.str() : problem.str()).trimmed()});
    }
    return parts_->read();
}

namespace {

QStringList wordsOf(const CLI::Option& option, const FlagChoices& choices) {
    QStringList words;
    if (const auto found = choices.find(&option); found != choices.end()) {
        for (const std::string& word : found->second) {
            words << QString::fromStdString(word);
        }
    }
    return words;
}

OptionHelp describe(const CLI::Option& option, const FlagChoices& choices) {
    const bool operand = option.get_positional();
    return {QString::fromStdString(option.get_name(operand, true)),
            option.get_type_size() == 0 || operand ? QString()
                                                   : QString::fromStdString(option.get_type_name()),
            QString::fromStdString(option.get_description()),
            QString::fromStdString(option.get_default_str()),
            operand,
            operand && option.get_items_expected_max() > 1,
            option.get_required(),
            wordsOf(option, choices)};
}

CommandHelp describe(const CLI::App& command, const QString& parent, const FlagChoices& choices) {
    const QString name = QString::fromStdString(command.get_name());
    CommandHelp help{parent.isEmpty() ? name : parent + u' ' + name,
                     QString::fromStdString(command.get_description()),
                     {},
                     {}};
    for (const CLI::Option* option : command.get_options()) {
        if (!option->get_group().empty()) {
            help.options.push_back(describe(*option, choices));
        }
    }
    for (const CLI::App* inner : command.get_subcommands({})) {
        help.commands.push_back(describe(*inner, help.name, choices));
    }
    return help;
}

} // namespace

CommandHelp CommandLine::help() const {
    return describe(parts_->app, {}, parts_->choices);
}

} // namespace quav
