#include "Fuzz.h"
#include "audio/file/AudioFile.h"
#include "audio/pcm/Bytes.h"
#include "shntool/Console.h"
#include "shntool/Length.h"
#include "shntool/SplitPoints.h"

#include <string>
#include <vector>

using namespace quav;

namespace {

// All that reads a user's text: a cue sheet or split points, and the lengths in them.
void readText(const std::string& text) {
    const shntool::SplitPoints points = shntool::SplitPoints::parse(text);
    for (unsigned rate : {8000U, 44100U}) {
        const wav::Wave wave =
            wav::canonicalHeader({.channels = 2, .bytesPerSample = 2, .sampleRate = rate}, 0).wave;
        for (const std::string& place : points.places) {
            try {
                shntool::parseLength(place, wave);
            } catch (const pcm::Failure&) {
                continue;
            }
        }
    }
}

// Whether FFmpeg would read the file, which others feed with damaged ones.
bool isForFfmpeg(std::span<const std::uint8_t> file) {
    return pcm::startsWith(file, "wvpk") ||
           (file.size() > 4 && pcm::startsWith(file.subspan(4), "ftyp"));
}

void readFile(const std::uint8_t* data, std::size_t size) {
    const pcm::UniqueFd fd(::memfd_create("fuzz", MFD_CLOEXEC));
    pcm::writeAll(fd.get(), {data, size}, "memory");
    const std::string path = "/proc/self/fd/" + std::to_string(fd.get());
    const audio::AudioFile file = audio::AudioFile::open(path, {});
    shntool::lengthText(file.wave(), file.wave().dataSize, shntool::TimeStyle::Hours);
    shntool::resizedHeader(file.header(), 100, file.extraChunks());
    const auto reader = file.reader();
    std::vector<std::uint8_t> piece(1 << 16);
    for (int turn = 0; turn < 16 && reader->read(piece) == piece.size(); ++turn) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        if (size > 0 && data[0] >= ' ' && data[0] < 'A') {
            readText({data, data + size});
        } else if (!isForFfmpeg({data, size})) {
            readFile(data, size);
        }
    } catch (const pcm::Failure&) {
        // A clear message is a good end.
    }
    return 0;
}
