#include "pcm/ToolMain.h"

#include "pcm/Progress.h"

#include <csignal>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace quav::pcm {

namespace {

// A caller may have closed them; a file opened here must not become one of them.
void fillStandardDescriptors() {
    int fd = 0;
    do {
        fd = ::open("/dev/null", O_RDWR);
    } while (fd >= 0 && fd <= STDERR_FILENO);
    ::close(fd);
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
    tool.options.set_version_flag("--version", tool.options.get_name() + " " QUAV_VERSION,
                                  "Print the version and end");
    tool.options.get_formatter()->column_width(28);
    try {
        tool.options.parse(argc, argv);
        return tool.run();
    } catch (const CLI::ParseError& error) {
        return tool.options.exit(error) == 0 ? 0 : 1;
    } catch (const ReaderGone&) {
        return 1;
    } catch (const Failure& failure) {
        return report(tool, failure);
    } catch (const std::bad_alloc&) {
        return report(tool, {Failure::Kind::Memory, "there is not enough memory"});
    }
}

} // namespace quav::pcm
