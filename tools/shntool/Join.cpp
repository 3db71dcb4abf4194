#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

namespace {

enum class Padding { Begin, End, None };

Padding paddingOf(const Options& options) {
    switch (options.lastOf("ebn")) {
    case 'b':
        return Padding::Begin;
    case 'n':
        return Padding::None;
    default:
        return Padding::End;
    }
}

void join(Work& work, const std::vector<AudioFile>& files, Padding padding, std::uint64_t zeros) {
    std::uint64_t size = padding == Padding::None ? 0 : zeros;
    for (const AudioFile& file : files) {
        size += file.wave().dataSize;
    }
    const WaveHeader header = canonicalHeader(files.front().wave().format(), size);
    const std::string name = work.nameOf("joined");
    const std::string target = " --> [" + name + "] (" + work.length(header.wave, size) + ")";
    const auto title = [&](const AudioFile& file) {
        return "Joining " + work.label(file) + target;
    };
    std::unique_ptr<Writer> output;
    for (const AudioFile& file : files) {
        const std::uint64_t data = file.wave().dataSize;
        Meter meter(work.console(), title(file), data);
        const bool isFirst = &file == &files.front();
        const bool isLast = &file == &files.back();
        if (isFirst) {
            output = work.create(name, header);
        }
        const bool isDone = work.transfer(
            output.get(), "error while transferring " + std::to_string(data) + " bytes of data",
            [&] {
                if (isFirst && padding == Padding::Begin) {
                    writeZeros(*output, zeros);
                }
                const auto reader = file.reader();
                copyBytes(*reader, *output, data, &meter);
                reader->finish();
                if (isLast) {
                    writeZeros(*output, (padding == Padding::End ? zeros : 0) + size % 2);
                    output->commit();
                }
            });
        if (!isDone) {
            throw ModeError("failed to join files");
        }
        meter.done();
    }
}

void tellPadding(Console& console, Padding padding, std::uint64_t zeros) {
    const std::string bytes = std::to_string(zeros);
    if (padding == Padding::None) {
        console.note(zeros == 0 ? "Output file was not padded, nor was it needed."
                                : "Output file was not padded, though it needs " + bytes +
                                      " bytes of padding.");
    } else if (zeros == 0) {
        console.note("No padding needed.");
    } else {
        console.note((padding == Padding::Begin ? "Pre" : "Post") +
                     std::string("-padded output file with ") + bytes + " zero-bytes.");
    }
}

} // namespace

int runJoin(const Options& options, Console& console) {
    if (options.files.size() < 2) {
        throw ModeError("need two or more files to process", ModeError::Kind::Usage);
    }
    Work work(options, console);
    const std::vector<AudioFile> files = work.mustOpenAll();
    checkSameFormat(files);
    std::uint64_t size = 0;
    for (const AudioFile& file : files) {
        if (const std::string problem = soundnessProblem(file); !problem.empty()) {
            throw ModeError(problem);
        }
        warnOfPartialBlock(console, file, &file == &files.back());
        size += file.wave().dataSize;
    }
    const bool isCd = files.front().wave().isCdQuality();
    const std::uint64_t zeros = isCd ? paddingTo(sectorSize, size) : 0;
    const Padding padding = paddingOf(options);
    try {
        join(work, files, padding, zeros);
    } catch (const OutputUnavailable& reason) {
        throw ModeError(reason.what());
    }
    if (isCd) {
        tellPadding(console, padding, zeros);
    }
    return work.status();
}

} // namespace quav::shntool
