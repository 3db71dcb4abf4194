#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

namespace {

struct Wanted {
    bool header; ///< made canonical
    bool chunks; ///< taken away
};

// Why there is nothing to strip from a file; empty when there is.
std::string reasonToSkip(const AudioFile& file, Wanted wanted) {
    if (file.missingBytes() > 0) {
        return "file seems to be truncated";
    }
    if (file.wave().isInconsistent()) {
        return "file has an inconsistent header";
    }
    const bool hasHeader = wanted.header && !file.wave().isCanonical();
    const bool hasChunks = wanted.chunks && file.wave().hasExtraChunks();
    if (hasHeader || hasChunks) {
        return "";
    }
    return std::string("file already has ") + (wanted.header ? "a canonical header" : "") +
           (wanted.header && wanted.chunks ? " and " : "") +
           (wanted.chunks ? "no extra RIFF chunks" : "");
}

void strip(Work& work, const AudioFile& file, Wanted wanted) {
    const std::uint64_t data = file.wave().dataSize;
    const std::string name = work.nameFor(file, "-stripped");
    Meter meter(work.console(), "Stripping " + work.label(file) + " --> [" + name + "]", data);
    if (const std::string reason = reasonToSkip(file, wanted); !reason.empty()) {
        return work.skip(reason + " -- skipping.");
    }
    const std::uint64_t extra = wanted.chunks ? 0 : file.extraChunks();
    const WaveHeader header =
        wanted.header ? canonicalHeader(file.wave().format(), data) : file.header();
    work.rewrite(file, name,
                 {.header = resizedHeader(header, data, extra),
                  .end = data,
                  .zerosBehind = data % 2,
                  .kept = extra},
                 std::to_string(data) + " bytes of data", meter);
}

} // namespace

int runStrip(const Options& options, Console& console) {
    const Wanted wanted{.header = !options.has('e'), .chunks = !options.has('c')};
    if (!wanted.header && !wanted.chunks) {
        throw ModeError("nothing to do if not stripping headers or RIFF chunks",
                        ModeError::Kind::Usage);
    }
    Work work(options, console);
    return work.onEach([&](const AudioFile& file) { strip(work, file, wanted); });
}

} // namespace quav::shntool
