#include "Fuzz.h"
#include "audio/pcm/PcmReader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

using namespace quav;

// What stands before, in and after the samples is the input again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
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
