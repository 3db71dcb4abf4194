#include "Fuzz.h"
#include "audio/file/SampleStreams.h"
#include "audio/pcm/Bytes.h"
#include "audio/tta/Decode.h"
#include "audio/tta/Stream.h"

#include <string>
#include <vector>

using namespace quav;

namespace {

void decode(std::span<const std::uint8_t> file, bool throughDamage) {
    const pcm::InputFile input = fuzz::inputOf(file.data(), file.size());
    audio::CountingSink samples;
    try {
        const tta::Stream stream(input);
        bool isDamaged = false;
        pcm::Progress progress;
        tta::decode(stream, 1, samples, progress, [&](const std::string& damage) {
            isDamaged = true;
            if (!throughDamage) {
                throw pcm::Failure(pcm::Failure::Kind::Input, damage);
            }
        });
        const tta::Header& header = stream.header();
        if (!isDamaged && samples.count() != header.blocks * header.wavFormat().blockAlign()) {
            __builtin_trap();
        }
    } catch (const pcm::Failure&) {
        return; // as it should be with most inputs
    }
}

std::uint32_t number(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint32_t>(pcm::littleEndian(bytes.subspan(at, 4)));
}

// Random changes would hardly ever get past the checksums.
std::vector<std::uint8_t> withRightChecksums(std::vector<std::uint8_t> file) {
    if (file.size() < tta::headerSize) {
        return file;
    }
    const std::span<std::uint8_t> bytes(file);
    tta::putChecksum(bytes.first(tta::headerSize));
    const tta::Header header{.sampleRate = number(bytes, 10), .blocks = number(bytes, 14)};
    if (header.frameLength() == 0) {
        return file;
    }
    const std::size_t frames = header.frames();
    const std::span<std::uint8_t> table = bytes.subspan(tta::headerSize);
    if (table.size() < frames * 4 + tta::checksumSize) {
        return file;
    }
    std::size_t at = frames * 4 + tta::checksumSize;
    tta::putChecksum(table.first(at));
    for (std::size_t i = 0; i < frames; ++i) {
        const std::size_t size = number(table, i * 4);
        if (size < tta::checksumSize || size > table.size() - at) {
            break;
        }
        tta::putChecksum(table.subspan(at, size));
        at += size;
    }
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> repaired = withRightChecksums({data, data + size});
    decode({data, size}, false);
    decode(repaired, false);
    decode(repaired, true);
    return 0;
}
