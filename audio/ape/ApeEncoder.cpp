#include "audio/ape/ApeEncoder.h"

#include "audio/ape/ApeFile.h"
#include "audio/ape/ApeWriter.h"
#include "audio/ape/FrameEncoder.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/OrderedWork.h"
#include "audio/pcm/PcmReader.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quav::ape {

using pcm::Failure;

namespace {

[[noreturn]] void refuse(const pcm::InputFile& input, const std::string& why) {
    throw Failure(Failure::Kind::Unsupported, input.name() + ": " + why);
}

void checkFormat(const pcm::InputFile& input, const pcm::PcmReader& reader) {
    const pcm::PcmFormat& format = reader.format();
    if (reader.isAiff()) {
        refuse(input, "is an AIFF file; make it a WAV file first");
    }
    if (format.channels > 2) {
        refuse(input, "has " + std::to_string(format.channels) +
                          " channels; Monkey's Audio holds one or two");
    }
    if (format.bytesPerSample > 3) {
        refuse(input, "has samples of " + std::to_string(format.bitsPerSample) +
                          " bits; Monkey's Audio holds 8, 16 or 24");
    }
}

struct Piece {
    std::vector<std::uint8_t> pcm;
    std::size_t size = 0;
    std::vector<std::uint8_t> frame;
    bool fits = true;
};

// False when the level cannot hold the samples; then there is no output.
bool encodeAt(const Level& level, pcm::InputFile& input, const std::string& outputPath,
              const EncodeOptions& options) {
    pcm::PcmReader reader(input);
    checkFormat(input, reader);
    reader.refuseToLeaveOut();
    const std::uint64_t blocks = reader.countBlocks(outputPath);
    if (blocks == 0) {
        refuse(input, "holds no samples");
    }
    const FrameFormat format{&level, reader.format()};
    ApeWriter writer(outputPath, format, blocks, reader.header());
    const FrameEncoder encoder(format, options.begin ? options.begin(blocks) : Advance());
    const auto frameBytes = static_cast<std::size_t>(
        std::min<std::uint64_t>(blocks, level.frameBlocks) * reader.format().blockAlign());
    bool fits = true;
    pcm::inOrder<Piece>(
        options.jobs,
        [&](Piece& piece) {
            piece.pcm.resize(frameBytes);
            piece.size = fits ? reader.readSamples(piece.pcm) : 0;
            return piece.size > 0;
        },
        [&](Piece& piece) {
            piece.fits = encoder.encode(std::span(piece.pcm).first(piece.size), piece.frame);
        },
        [&](Piece& piece) {
            fits = fits && piece.fits;
            if (fits) {
                writer.addFrame(piece.frame);
            }
        });
    if (!fits) {
        return false;
    }
    writer.endFrames();
    std::array<std::uint8_t, 4096> trailer{};
    while (const std::size_t count = reader.readTrailer(trailer)) {
        writer.addTrailer(std::span(trailer).first(count));
    }
    reader.refuseToLeaveOut();
    writer.commit();
    return true;
}

} // namespace

void encodeApe(pcm::InputFile input, const std::string& outputPath, const EncodeOptions& options) {
    const Level* level = options.level;
    // Another start needs the samples again.
    if (!level->filters.empty()) {
        input = std::move(input).spooled(outputPath);
    }
    const std::uint64_t start = input.position();
    while (!encodeAt(*level, input, outputPath, options)) {
        level = findLevel(level->number - 1000);
        input.seek(start);
    }
}

} // namespace quav::ape
