#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

namespace {

void pad(Work& work, const AudioFile& file, bool isBefore) {
    const std::uint64_t data = file.wave().dataSize;
    const std::uint64_t zeros = paddingTo(sectorSize, data);
    const std::uint64_t extra = file.extraChunks();
    const std::string name = work.nameFor(file, "-padded");
    const std::string title = isBefore ? "Pre-padding " : "Post-padding ";
    Meter meter(work.console(), title + work.label(file) + " --> [" + name + "]", data);
    work.rewrite(file, name,
                 {.header = resizedHeader(file.header(), data + zeros, extra),
                  .zerosBefore = isBefore ? zeros : 0,
                  .end = data,
                  .zerosBehind = isBefore ? 0 : zeros,
                  .kept = extra},
                 std::to_string(data) + "-byte data chunk", meter);
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
