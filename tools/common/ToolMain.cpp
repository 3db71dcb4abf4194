#include "common/ToolMain.h"

#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <unistd.h>

namespace quav::tools {

using pcm::Failure;
using pcm::tellUser;

namespace {

// A caller may have closed them. A file opened here must not become one of them, and what is read
// from or written to one of them must fail: so each is opened for what it is not used for.
void fillStandardDescriptors() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(fd, F_GETFD) < 0) {
            ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

// What any tool can do about a failure.
int guarded(const std::function<int()>& run, const std::function<int(const Failure&)>& report) {
    fillStandardDescriptors();
    // A closed pipe shows where it is written to, so that what was begun is put away first.
    ::signal(SIGPIPE, SIG_IGN);
    // The same for a file that grows beyond a limit.
    ::signal(SIGXFSZ, SIG_IGN);
    // A caller may have ignored it: then nobody could tell how a child has ended.
    ::signal(SIGCHLD, SIG_DFL);
    try {
        return run();
    } catch (const pcm::ReaderGone&) {
        return 1;
    } catch (const Failure& failure) {
        return report(failure);
    } catch (const std::bad_alloc&) {
        return report({Failure::Kind::Memory, "there is not enough memory"});
    } catch (const std::exception& error) {
        return report({Failure::Kind::Memory, error.what()}); // no thread, say
    }
}

// The words of "{1,2,3}" in what an option takes, with blanks between them.
std::string choicesIn(const std::string& typeName) {
    const std::size_t begin = typeName.find('{');
    const std::size_t end = typeName.find('}');
    if (begin == std::string::npos || end == std::string::npos) {
        return "";
    }
    std::string words = typeName.substr(begin + 1, end - begin - 1);
    std::replace(words.begin(), words.end(), ',', ' ');
    return words;
}

std::string describedOptions(const CLI::App& app) {
    std::string text = describedCommand(app.get_name(), app.get_description());
    for (const CLI::Option* option : app.get_options()) {
        const std::string type = option->get_type_size() == 0 ? "" : option->get_type_name();
        const bool operand = option->get_positional();
        text += describedOption({option->get_name(operand, true),
                                 operand ? "" : type.substr(0, type.find(':')), choicesIn(type),
                                 option->get_description()},
                                operand);
    }
    return text;
}

} // namespace

std::string describedCommand(const std::string& name, const std::string& description) {
    return "command\t" + name + '\t' + description + '\n';
}

std::string describedOption(const DescribedOption& option, bool isOperand) {
    return std::string(isOperand ? "operand" : "option") + '\t' + option.names + '\t' +
           option.value + '\t' + option.choices + '\t' + option.description + '\n';
}

std::string toldText(const Failure& failure) {
    return pcm::printable(failure.what(), STDERR_FILENO);
}

int runGuarded(const std::string& name, const std::function<int()>& run) {
    return guarded(run, [&](const Failure& failure) {
        tellUser(name + ": " + toldText(failure) + '\n');
        return 1;
    });
}

int runTool(const Tool& tool, int argc, char** argv) {
    const auto report = [&](const Failure& failure) {
        const std::string line = tool.describe ? tool.describe(failure)
                                               : tool.options.get_name() + ": " + toldText(failure);
        tellUser(line + '\n');
        return 1;
    };
    tool.options.set_version_flag("--version", tool.options.get_name() + " " QUAV_VERSION,
                                  "Print the version and end");
    tool.options.get_formatter()->column_width(28);
    const auto run = [&] {
        if (argc == 2 && std::string(argv[1]) == describeArgument) {
            std::cout << describedOptions(tool.options);
            return 0;
        }
        try {
            tool.options.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            if (error.get_exit_code() == 0) {
                return tool.options.exit(error); // the help or the version
            }
            return report({Failure::Kind::Input, std::string(error.what()) + "; see --help"});
        }
        return tool.run();
    };
    return guarded(run, report);
}

} // namespace quav::tools
