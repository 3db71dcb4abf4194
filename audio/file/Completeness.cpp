#include "audio/file/Completeness.h"

#include "audio/flac/LastFrame.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/PcmReader.h"

namespace quav::audio {

namespace {

// Beyond the tags in front.
std::uint64_t beginOf(pcm::InputFile& input) {
    std::uint64_t begin = 0;
    while (const std::uint64_t tag = pcm::id3v2Length(input.peek(pcm::id3v2Header))) {
        begin += tag;
        input.seek(begin);
    }
    return begin;
}

} // namespace

std::optional<std::string> soundLeftOut(const std::string& path, ReadBy reader) {
    pcm::InputFile input = pcm::InputFile::open(path);
    input.seek(beginOf(input));
    const std::span<const std::uint8_t> start = input.peek(12);
    if (pcm::startsWith(start, "fLaC")) {
        return flac::soundLeftOut(input);
    }
    const auto kind = start.size() < 12 ? start.first(0) : start.subspan(8);
    if (pcm::startsWith(kind, "WAVE") || pcm::startsWith(kind, "AIFF") ||
        pcm::startsWith(kind, "AIFC")) {
        const pcm::PcmReader samples(input);
        return reader == ReadBy::Others ? samples.soundLeftOutAsTold() : samples.soundLeftOut();
    }
    return {};
}

} // namespace quav::audio
