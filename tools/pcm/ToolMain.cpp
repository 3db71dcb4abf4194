#include "pcm/ToolMain.h"

#include "pcm/Progress.h"

#include <csignal>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace quav::pcm {

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

int report(const Tool& tool, const Failure& failure) {
    const std::string line =
        tool.describe ? tool.describe(failure) : tool.options.get_name() + ": " + failure.what();
    tellUser(line + '\n');
    return 1;
}

} // namespace

int runTool(const Tool& tool, int argc, char** argv) {
    fillStandardDescriptors();
    // A closed pipe shows where it is written to, so that what was begun is put away first.
    ::signal(SIGPIPE, SIG_IGN);
    // The same for a file that grows beyond a limit.
    ::signal(SIGXFSZ, SIG_IGN);
    tool.options.set_version_flag("--version", tool.options.get_name() + " " QUAV_VERSION,
                                  "Print the version and end");
    tool.options.get_formatter()->column_width(28);
    try {
        tool.options.parse(argc, argv);
        return tool.run();
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return tool.options.exit(error); // the help or the version
        }
        return report(tool, {Failure::Kind::Input, std::string(error.what()) + "; see --help"});
    } catch (const ReaderGone&) {
        return 1;
    } catch (const Failure& failure) {
        return report(tool, failure);
    } catch (const std::bad_alloc&) {
        return report(tool, {Failure::Kind::Memory, "there is not enough memory"});
    } catch (const std::exception& error) {
        return report(tool, {Failure::Kind::Memory, error.what()}); // no thread, say
    }
}

} // namespace quav::pcm
