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
    const std::string name =
        work.options().has('n') ? chosenName(work.options()) : work.nameFor(file, "");
    Meter meter(work.console(), "Converting " + work.label(file) + " --> [" + name + "]",
                file.wave().dataSize);
    try {
        const auto output = work.create(name, file.header(), {&file, 1});
        const std::string told = "error while transferring " +
                                 std::to_string(file.wave().dataSize) +
                                 "-byte data chunk -- skipping.";
        const bool isDone = work.transfer(output.get(), told, [&] {
            const auto reader = file.reader();
            copyBytes(*reader, *output, file.wave().dataSize, &meter);
            copyRest(*reader, *output, file.behindData());
            reader->finish();
            output->commit();
        });
        if (isDone) {
            meter.done();
        }
    } catch (const OutputUnavailable& reason) {
        work.skip(reason);
    }
}

} // namespace

int runConv(const Options& options, Console& console) {
    if (options.has('n') && options.files.size() != 1) {
        throw ModeError("a name for the output needs exactly one file to convert",
                        ModeError::Kind::Usage);
    }
    Work work(options, console);
    for (const std::string& path : options.files) {
        if (const auto file = work.open(path)) {
            convert(work, *file);
        }
    }
    return work.status();
}

} // namespace quav::shntool
