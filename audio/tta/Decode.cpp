#include "audio/tta/Decode.h"

#include "audio/pcm/OrderedWork.h"
#include "audio/pcm/TimeText.h"
#include "audio/tta/FrameCoder.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quav::tta {

namespace {

std::string describe(const Header& header, std::size_t frame, const std::string& error) {
    const std::uint64_t first = std::uint64_t{frame} * header.frameLength();
    return "frame " + std::to_string(frame + 1) + " of " + std::to_string(header.frames()) +
           ", from " + pcm::timeText(first, header.sampleRate) + " to " +
           pcm::timeText(first + header.blocksOfFrame(frame), header.sampleRate) + ", " + error;
}

} // namespace

void decode(const Stream& stream, std::size_t jobs, pcm::ByteSink& samples, pcm::Progress& progress,
            const DamageHandler& damaged) {
    struct Piece {
        std::size_t frame = 0;
        std::vector<std::uint8_t> coded;
        std::vector<std::uint8_t> samples;
        std::string error;
    };
    const Header& header = stream.header();
    std::size_t fetched = 0;
    const auto fetch = [&](Piece& piece) {
        piece.frame = fetched;
        return fetched++ < header.frames();
    };
    const auto work = [&](Piece& piece) {
        piece.error = stream.readFrame(piece.frame, piece.coded);
        if (!piece.error.empty()) {
            return;
        }
        if (!FrameCoder(header.wavFormat())
                 .decode(piece.coded, header.blocksOfFrame(piece.frame), piece.samples)) {
            piece.error = "cannot be decoded";
        }
    };
    const auto deliver = [&](const Piece& piece) {
        if (piece.error.empty()) {
            samples.write(piece.samples);
        } else {
            damaged(describe(header, piece.frame, piece.error));
        }
        progress.advanceTo(std::uint64_t{piece.frame + 1} * header.frameLength());
    };
    pcm::inOrder<Piece>(std::min(jobs, header.frames()), fetch, work, deliver);
}

} // namespace quav::tta
