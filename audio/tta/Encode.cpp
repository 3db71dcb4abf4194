#include "audio/tta/Encode.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/OrderedWork.h"
#include "audio/pcm/TemporaryFile.h"
#include "audio/tta/FrameCoder.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>
#include <vector>

using quav::pcm::Failure;

namespace quav::tta {

namespace {

constexpr const char* temporaryName = "a temporary file";

// Codes all frames and gives each of them to `deliver`.
template <typename Deliver>
void encodeFrames(pcm::PcmReader& reader, const Header& header, std::size_t jobs, Deliver deliver) {
    struct Piece {
        std::vector<std::uint8_t> samples;
        std::vector<std::uint8_t> coded;
    };
    const std::size_t frames = header.frames();
    std::size_t fetched = 0;
    const auto fetch = [&](Piece& piece) {
        if (fetched == frames) {
            return false;
        }
        piece.samples.resize(header.blocksOfFrame(fetched++) * reader.format().blockAlign());
        reader.readSamples(piece.samples);
        return true;
    };
    const auto work = [&](Piece& piece) {
        FrameCoder(reader.format()).encode(piece.samples, piece.coded);
    };
    pcm::inOrder<Piece>(std::min(jobs, frames), fetch, work,
                        [&](const Piece& piece) { deliver(piece.coded); });
}

void append(pcm::UniqueFd file, pcm::OutputFile& output) {
    pcm::InputFile input(std::move(file), temporaryName);
    input.seek(0);
    std::vector<std::uint8_t> piece(std::size_t{256} << 10);
    while (const std::size_t count = input.read(piece)) {
        output.write(std::span(piece).first(count));
    }
}

// What sends us its output fails when we do not take it to the end.
void drain(pcm::PcmReader& reader) {
    std::vector<std::uint8_t> rest(std::size_t{64} << 10);
    while (reader.readTrailer(rest) > 0) {
    }
}

} // namespace

Header headerFor(const pcm::PcmFormat& format, std::uint64_t blocks, const std::string& name) {
    const auto refuse = [&name](const std::string& what) {
        throw Failure(Failure::Kind::Unsupported, name + ": " + what);
    };
    if (format.containerBits() > 24) {
        refuse("has samples of " + std::to_string(format.containerBits()) +
               " bits; TTA holds 8, 16 or 24");
    }
    if (format.channels > maximalChannels) {
        refuse("has " + std::to_string(format.channels) + " channels; TTA is written with up to " +
               std::to_string(maximalChannels));
    }
    if (format.sampleRate > maximalSampleRate) {
        refuse("has a sample rate of " + std::to_string(format.sampleRate) +
               " Hz; TTA is written with up to " + std::to_string(maximalSampleRate));
    }
    if (blocks == 0) {
        refuse("holds no samples; a TTA file has at least one");
    }
    if (blocks > std::numeric_limits<std::uint32_t>::max()) {
        refuse("has more samples than a TTA file can count");
    }
    return {.channels = format.channels,
            .bitsPerSample = format.containerBits(),
            .sampleRate = format.sampleRate,
            .blocks = static_cast<std::uint32_t>(blocks)};
}

void encode(pcm::PcmReader& reader, const Header& header, std::size_t jobs, pcm::OutputFile& output,
            pcm::Progress& progress) {
    reader.refuseToLeaveOut();
    const std::array<std::uint8_t, headerSize> start = header.bytes();
    std::vector<std::uint32_t> sizes;
    pcm::UniqueFd waiting;
    if (output.canSeek()) {
        // The frames come behind the room for a table with the sizes that are not known yet.
        output.write(start);
        output.write(seekTable(std::vector<std::uint32_t>(header.frames())));
    } else {
        waiting = pcm::unnamedFile("-");
    }
    encodeFrames(reader, header, jobs, [&](std::span<const std::uint8_t> coded) {
        if (output.canSeek()) {
            output.write(coded);
        } else {
            pcm::writeAll(waiting.get(), coded, temporaryName);
        }
        sizes.push_back(static_cast<std::uint32_t>(coded.size()));
        progress.advanceTo(std::uint64_t{sizes.size()} * header.frameLength());
    });
    drain(reader);
    reader.refuseToLeaveOut();
    if (output.canSeek()) {
        output.writeAt(headerSize, seekTable(sizes));
    } else {
        output.write(start);
        output.write(seekTable(sizes));
        append(std::move(waiting), output);
    }
}

} // namespace quav::tta
