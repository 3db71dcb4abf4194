#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

namespace {

void pad(Work& work, const AudioFile& file, bool isBefore) {
    const std::uint64_t data = file.wave().dataSize;
    const std::uint64_t zeros = paddingTo(sectorSize, data);
    const std::string name = work.nameFor(file, "-padded");
    Meter meter(work.console(),
                (isBefore ? "Pre-padding " : "Post-padding ") + work.label(file) + " --> [" + name +
                    "]",
                data);
    try {
        const std::uint64_t extra = file.extraChunks();
        const auto output =
            work.create(name, resizedHeader(file.header(), data + zeros, extra), {&file, 1});
        const std::string told =
            "error while transferring " + std::to_string(data) + "-byte data chunk -- skipping.";
        const bool isDone = work.transfer(output.get(), told, [&] {
            const auto reader = file.reader();
            if (isBefore) {
                writeZeros(*output, zeros);
            }
            copyBytes(*reader, *output, data, &meter);
            if (!isBefore) {
                writeZeros(*output, zeros);
            }
            skipBytes(*reader, file.behindData() - extra);
            copyRest(*reader, *output, extra);
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

int runPad(const Options& options, Console& console) {
    Work work(options, console);
    for (const std::string& path : options.files) {
        const auto file = work.open(path);
        if (!file) {
            continue;
        }
        if (!file->wave().isCdQuality()) {
            work.skip("file is not CD-quality: [" + path + "]");
        } else if (file->wave().misalignment() == 0) {
            work.skip("file is already sector-aligned: [" + path + "]");
        } else {
            pad(work, *file, options.lastOf("eb") == 'b');
        }
    }
    return work.status();
}

} // namespace quav::shntool
