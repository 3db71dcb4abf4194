#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

namespace {

// The output's name, when the user has chosen it.
std::string chosenName(const Options& options) {
    const std::string name = options.value('n');
    return name.find('/') == std::string::npos ? joinPath(options.folder, name) : name;
}

void convert(Work& work, const AudioFile& file) {
    const std::uint64_t data = file.wave().dataSize;
    const std::string name =
        work.options().has('n') ? chosenName(work.options()) : work.nameFor(file, "");
    Meter meter(work.console(), "Converting " + work.label(file) + " --> [" + name + "]", data);
    work.rewrite(file, name, {.header = file.header(), .end = data, .kept = file.behindData()},
                 std::to_string(data) + "-byte data chunk", meter);
}

} // namespace

int runConv(const Options& options, Console& console) {
    if (options.has('n') && options.files.size() != 1) {
        throw ModeError("a name for the output needs exactly one file to convert",
                        ModeError::Kind::Usage);
    }
    Work work(options, console);
    return work.onEach([&](const AudioFile& file) { convert(work, file); });
}

} // namespace quav::shntool
