#include "app/FileKinds.h"
#include "cli/ChecksumRun.h"
#include "cli/CommandLine.h"
#include "cli/Completion.h"
#include "cli/ConversionRun.h"
#include "cli/ManPage.h"
#include "cli/PresetsCommand.h"
#include "cli/SettingsCommand.h"
#include "cli/Terminal.h"
#include "cli/ToolsCommand.h"
#include "platform/Settings.h"
#include "platform/Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>

#include <csignal>

using namespace quav;

namespace {

using Run = int (*)(const Options&, Settings&, Terminal&);

template <class TabRun>
int runOf(const Options& options, Settings& settings, Terminal& terminal) {
    return TabRun(options, settings, terminal).run();
}

int runTab(const Options& options, Settings& settings, Terminal& terminal) {
    static const QHash<QString, Run> runs{
        {tabs::decode, runOf<ConversionRun>},
        {tabs::encode, runOf<ConversionRun>},
        {tabs::checksum, runOf<ChecksumRun>},
    };
    const Run run = runs.value(options.tab);
    Q_ASSERT(run);
    return run(options, settings, terminal);
}

int printCompletion(const CompletionOptions& options, const CommandLine& commandLine,
                    Terminal& terminal) {
    if (options.tool.isEmpty()) {
        terminal.print(completionOfProgram(options.shell, commandLine.help()));
        return exitstatus::succeeded;
    }
    const auto tool = readToolOptions(QFile::decodeName(options.tool));
    if (!tool) {
        terminal.say(tool.error());
        return exitstatus::refused;
    }
    terminal.print(completionOfTool(options.shell, *tool));
    return exitstatus::succeeded;
}

int run(const Options& options, const CommandLine& commandLine, Terminal& terminal) {
    switch (options.command) {
    case Options::Command::Manual:
        terminal.print(manPage(commandLine.help()));
        return exitstatus::succeeded;
    case Options::Command::Completion:
        return printCompletion(options.completion, commandLine, terminal);
    case Options::Command::Tools:
        return listTools(options.toolsAsJson, terminal);
    case Options::Command::Tab:
    case Options::Command::Settings:
    case Options::Command::Presets:
        break;
    }
    Settings settings(Settings::userFile());
    if (!settings.damage().isEmpty()) {
        terminal.say(QCoreApplication::translate("main", "warning: %1").arg(settings.damage()));
    }
    if (options.command == Options::Command::Presets) {
        return PresetsCommand(options, settings, terminal).run();
    }
    return options.command == Options::Command::Settings
               ? runSettings(options.settings, settings, terminal)
               : runTab(options, settings, terminal);
}

void sayNothing(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                const QString& /*message*/) {}

} // namespace

int main(int argc, char** argv) {
    // What is logged on the way is also told in words meant for the user.
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) {
        qInstallMessageHandler(sayNothing);
    }
    // A reader that goes away early must not leave tools and half a file behind.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quav"));
    const Translations translations;

    Terminal terminal;
    CommandLine commandLine;
    const auto options = commandLine.parse(argc, argv);
    if (options) {
        return run(*options, commandLine, terminal);
    }
    if (options.error().exitStatus == exitstatus::succeeded) {
        terminal.print(options.error().text);
    } else {
        terminal.say(options.error().text);
    }
    return options.error().exitStatus;
}
