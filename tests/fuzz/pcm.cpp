#include "Fuzz.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/SoundBehind.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <vector>

using namespace quav;

namespace {

// Whatever stands behind samples, wherever these end.
void walk(std::span<const std::uint8_t> bytes) {
    const pcm::ReadAt readAt = [&](std::uint64_t offset, std::span<std::uint8_t> to) {
        const auto from = bytes.subspan(std::min<std::uint64_t>(offset, bytes.size()));
        const std::size_t count = std::min(to.size(), from.size());
        std::copy_n(from.begin(), count, to.begin());
        return count;
    };
    const std::size_t end = bytes.empty() ? 0 : bytes[0] % (bytes.size() + 1);
    const pcm::Behind behind = pcm::lookBehind(readAt, {.samplesEnd = end / 2,
                                                        .chunkEnd = end,
                                                        .fileEnd = bytes.size(),
                                                        .isOdd = end % 2 == 1,
                                                        .isAiff = bytes.size() % 2 == 1});
    const std::uint64_t tags = pcm::beginOfTags(readAt, end, bytes.size());
    if ((behind.isTidy && behind.sound) || tags < end || tags > bytes.size()) {
        std::abort();
    }
}

} // namespace

// What stands before, in and after the samples is the input again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    walk({data, size});
    try {
        pcm::InputFile input = fuzz::inputOf(data, size);
        pcm::PcmReader reader(input);
        std::vector<std::uint8_t> all = reader.header();
        std::vector<std::uint8_t> blocks(reader.format().blockAlign() * 13);
        while (const std::size_t count = reader.readSamples(blocks)) {
            all.insert(all.end(), blocks.begin(), blocks.begin() + std::ptrdiff_t(count));
        }
        std::array<std::uint8_t, 100> piece{};
        while (const std::size_t count = reader.readTrailer(piece)) {
            all.insert(all.end(), piece.begin(), piece.begin() + std::ptrdiff_t(count));
        }
        if (!std::equal(all.begin(), all.end(), data, data + size)) {
            std::abort();
        }
    } catch (const pcm::Failure&) {
        // A clear message is a good end.
    }
    return 0;
}
