#include "audio/ape/ApeDecoder.h"

#include "audio/ape/FrameDecoder.h"
#include "audio/ape/OldVersions.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/OrderedWork.h"
#include "audio/pcm/TimeText.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quav::ape {

using pcm::Failure;

namespace {

struct Piece {
    std::uint32_t frame = 0;
    bool sound = false;
    std::vector<std::uint8_t> coded;
    DecodedFrame samples;
};

void decodeFrames(const ApeFile& file, std::size_t jobs, const Advance& advance,
                  const FrameHandler& handle) {
    const Level* const level = findLevel(file.levelNumber());
    if (file.version() != newestVersion || level == nullptr) {
        decodeOldFrames(file, advance, handle);
        return;
    }
    const FrameDecoder decoder({level, file.format()}, advance);
    std::uint32_t next = 0;
    pcm::inOrder<Piece>(
        jobs,
        [&](Piece& piece) {
            piece.frame = next++;
            if (piece.frame >= file.frameCount()) {
                return false;
            }
            piece.sound = file.readFrame(piece.frame, FrameDecoder::padding, piece.coded);
            return true;
        },
        [&](Piece& piece) {
            if (piece.sound) {
                const std::size_t size = piece.coded.size() - FrameDecoder::padding;
                piece.sound = decoder.decode(std::span(piece.coded).first(size),
                                             file.frameBlocks(piece.frame), piece.samples);
            }
        },
        [&](const Piece& piece) { handle(piece.frame, piece.sound ? &piece.samples : nullptr); });
}

// Frames first to last, and when they are heard.
std::string framesText(const ApeFile& file, std::uint32_t first, std::uint32_t last) {
    const std::uint64_t start = std::uint64_t{file.frameBlocks(0)} * first;
    const std::uint64_t end = std::uint64_t{file.frameBlocks(0)} * last + file.frameBlocks(last);
    const std::uint32_t rate = file.format().sampleRate;
    const std::string numbers =
        first == last ? "frame " : "frames " + std::to_string(first + 1) + " to ";
    return numbers + std::to_string(last + 1) + " of " + std::to_string(file.frameCount()) + " (" +
           pcm::timeText(start, rate) + " to " + pcm::timeText(end, rate) + ")";
}

void writeSamples(const DecodedFrame& samples, std::uint8_t silence, pcm::ByteSink& to) {
    if (!samples.silent) {
        to.write(std::span(samples.bytes).first(samples.size));
        return;
    }
    std::array<std::uint8_t, std::size_t{32} << 10> quiet{};
    quiet.fill(silence);
    for (std::size_t left = samples.size; left > 0;) {
        const std::size_t count = std::min(left, quiet.size());
        to.write(std::span(quiet).first(count));
        left -= count;
    }
}

constexpr auto digestText = "the digest over the whole file is wrong";

} // namespace

void decodeApe(const ApeFile& file, std::size_t jobs, const Advance& advance, pcm::ByteSink& to) {
    const auto damaged = [&](const std::string& what) {
        throw Failure(Failure::Kind::Input, file.input().name() + ": is damaged: " + what);
    };
    decodeFrames(file, jobs, advance, [&](std::uint32_t frame, const DecodedFrame* samples) {
        if (samples == nullptr) {
            damaged(framesText(file, frame, frame));
        }
        writeSamples(*samples, silentByte(file.format()), to);
    });
    to.write(file.wavTrailer());
    if (!file.digestMatches()) {
        damaged(digestText);
    }
}

std::vector<std::string> verifyApe(const ApeFile& file, std::size_t jobs, const Advance& advance) {
    std::vector<std::string> found;
    std::optional<std::uint32_t> firstDamaged;
    const auto endRun = [&](std::uint32_t frame) {
        if (firstDamaged) {
            found.push_back(framesText(file, *firstDamaged, frame - 1));
            firstDamaged.reset();
        }
    };
    decodeFrames(file, jobs, advance, [&](std::uint32_t frame, const DecodedFrame* samples) {
        if (samples != nullptr) {
            endRun(frame);
        } else if (!firstDamaged) {
            firstDamaged = frame;
        }
    });
    endRun(file.frameCount());
    if (!file.digestMatches()) {
        found.emplace_back(digestText);
    } else if (!file.isWhole()) {
        found.emplace_back("its end is cut off"); // and there is no digest
    }
    return found;
}

} // namespace quav::ape
