#include "common/ToolMain.h"

#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"

#include <csignal>
#include <fcntl.h>
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

} // namespace

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
