#include "audio/pcm/Failure.h"
#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"
#include "common/ToolMain.h"
#include "shntool/Modes.h"
#include "shntool/TextFile.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

using namespace quav;
using shntool::Console;
using shntool::Mode;
using shntool::ModeError;

namespace {

std::string helpText() {
    std::string text = "Usage: shntool MODE [OPTIONS] [FILES]\n"
                       "       shntool -f | -h | -v\n\n"
                       "Measures, compares, converts, fixes, joins and splits audio without "
                       "loss.\n\nModes:\n";
    for (const Mode& mode : shntool::modes()) {
        text += std::string("  ") + mode.name + std::string(7 - std::strlen(mode.name), ' ') +
                mode.description + '\n';
    }
    return text + "\n'shntool MODE -h' tells the options of a mode.\n\n"
                  "  -f, --formats  list the formats\n"
                  "  -h, --help     this help\n"
                  "  -v, --version  the version\n";
}

std::string formatsText() {
    std::string text;
    for (const shntool::Format& format : shntool::formats()) {
        std::string name(format.name);
        name.resize(6, ' ');
        text += name + (format.isRead ? "read " : "     ") +
                (format.isWritten ? "written  " : "         ") + std::string(format.description) +
                '\n';
    }
    return text;
}

// For the completions of shells.
std::string describedModes() {
    std::string text = tools::describedCommand("shntool", "Works on the samples of audio files");
    text += tools::describedOption({"-f,--formats", "", "", "List the formats"}, false);
    text += tools::describedOption({"-h,--help", "", "", "Print the help"}, false);
    text += tools::describedOption({"-v,--version", "", "", "Print the version"}, false);
    for (const Mode& mode : shntool::modes()) {
        text += tools::describedCommand(std::string("shntool ") + mode.name, mode.description);
        for (const shntool::OptionText& option : shntool::optionsOf(mode)) {
            text += tools::describedOption({std::string("-") + option.letter, option.value,
                                            option.choices, option.description},
                                           false);
        }
        if (mode.reads) {
            text += tools::describedOption({"FILES", "", "", "The files to read"}, true);
        }
    }
    return text;
}

int runMode(const Mode& mode, const std::vector<char*>& arguments) {
    // Until the options are known, errors are told as usual.
    Console console({.mode = mode.name});
    try {
        const auto options = shntool::parseOptions(mode, arguments);
        if (!options) {
            return 0;
        }
        console.set(options->console);
        return mode.run(*options, console);
    } catch (const ModeError& error) {
        console.error(error);
    } catch (const pcm::Failure& failure) {
        console.error(ModeError(failure.what()));
    }
    return 1;
}

int run(int argc, char** argv) {
    const std::string word = argc > 1 ? argv[1] : "";
    if (word == "-h" || word == "--help") {
        shntool::printText(helpText());
        return 0;
    }
    if (word == "-v" || word == "--version") {
        shntool::printText(shntool::versionText() + '\n');
        return 0;
    }
    if (word == tools::describeArgument && argc == 2) {
        shntool::printText(describedModes());
        return 0;
    }
    if (word == "-f" || word == "--formats") {
        shntool::printText(formatsText());
        return 0;
    }
    const auto modes = shntool::modes();
    const auto mode =
        std::find_if(modes.begin(), modes.end(), [&](const Mode& one) { return word == one.name; });
    if (mode != modes.end()) {
        std::vector<char*> arguments(argv, argv + argc);
        arguments.erase(arguments.begin() + 1);
        return runMode(*mode, arguments);
    }
    const std::string what = word.empty() ? "missing arguments" : "invalid mode: [" + word + "]";
    pcm::tellUser("shntool: error: " + pcm::printable(what, STDERR_FILENO) + "\n");
    pcm::tellUser("shntool: \n");
    pcm::tellUser("shntool: type 'shntool -h' for help\n");
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    return tools::runGuarded("shntool", [&] { return run(argc, argv); });
}
