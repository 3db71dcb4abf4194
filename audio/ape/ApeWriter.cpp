#include "audio/ape/ApeWriter.h"

#include "audio/ape/ApeFile.h"
#include "audio/ape/Words.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"

#include <algorithm>
#include <limits>

namespace quav::ape {

using pcm::Failure;

namespace {

void append(std::vector<std::uint8_t>& to, std::uint64_t number, std::size_t size) {
    to.resize(to.size() + size);
    pcm::storeLittleEndian(std::span(to).last(size), number);
}

} // namespace

ApeWriter::ApeWriter(const std::string& path, const FrameFormat& format, std::uint64_t blocks,
                     std::span<const std::uint8_t> wavHeader)
    : format_(format), blocks_(blocks), output_(path),
      frameCount_((blocks + format.level->frameBlocks - 1) / format.level->frameBlocks),
      wavHeaderSize_(wavHeader.size()) {
    if (!output_.canSeek()) {
        throw Failure(Failure::Kind::Write,
                      output_.name() + ": cannot take a Monkey's Audio file, whose start is "
                                       "written last; name a file");
    }
    if (blocks > std::numeric_limits<std::uint32_t>::max()) {
        tooLarge();
    }
    // What is known only at the end goes here at the end.
    output_.write(std::vector<std::uint8_t>(descriptorSize + headerSize + 4 * frameCount_));
    write(wavHeader);
    framesStart_ = output_.position();
}

void ApeWriter::tooLarge() const {
    throw Failure(Failure::Kind::Unsupported,
                  output_.name() + ": would grow beyond 4 GiB; Monkey's Audio holds less");
}

void ApeWriter::write(std::span<const std::uint8_t> bytes) {
    if (output_.position() + bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        tooLarge();
    }
    md5_.add(bytes);
    output_.write(bytes);
}

void ApeWriter::addFrame(std::span<const std::uint8_t> frame) {
    frameOffsets_.push_back(static_cast<std::uint32_t>(framesStart_ + framesSize_));
    writeWords(frame);
}

// Frames follow each other at any byte; the groups of four go on across them.
void ApeWriter::writeWords(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t atOnce = std::size_t{16} << 10;
    std::array<std::uint8_t, atOnce + 4> piece{};
    while (!bytes.empty()) {
        const std::size_t open = framesSize_ % 4;
        std::copy_n(openWord_.begin(), open, piece.begin());
        const std::size_t taken = std::min(bytes.size(), atOnce);
        std::copy_n(bytes.begin(), taken, piece.begin() + static_cast<std::ptrdiff_t>(open));
        bytes = bytes.subspan(taken);
        framesSize_ += taken;
        const std::size_t whole = (open + taken) / 4 * 4;
        std::copy_n(piece.begin() + static_cast<std::ptrdiff_t>(whole), framesSize_ % 4,
                    openWord_.begin());
        reverseWords(std::span(piece).first(whole));
        write(std::span(piece).first(whole));
    }
}

void ApeWriter::endFrames() {
    constexpr std::array<std::uint8_t, 4> zeros{};
    writeWords(std::span(zeros).first(4 - framesSize_ % 4));
}

void ApeWriter::addTrailer(std::span<const std::uint8_t> bytes) {
    write(bytes);
    trailerSize_ += bytes.size();
}

std::vector<std::uint8_t> ApeWriter::header() const {
    std::vector<std::uint8_t> header;
    append(header, format_.level->number, 2);
    append(header, 0, 2);
    append(header, format_.level->frameBlocks, 4);
    append(header, blocks_ - (frameCount_ - 1) * format_.level->frameBlocks, 4);
    append(header, frameCount_, 4);
    append(header, format_.pcm.containerBits(), 2);
    append(header, format_.pcm.channels, 2);
    append(header, format_.pcm.sampleRate, 4);
    return header;
}

void ApeWriter::commit() {
    const std::vector<std::uint8_t> header = this->header();
    std::vector<std::uint8_t> seekTable;
    for (const std::uint32_t offset : frameOffsets_) {
        append(seekTable, offset, 4);
    }
    md5_.add(header);
    md5_.add(seekTable);

    std::vector<std::uint8_t> start{'M', 'A', 'C', ' '};
    append(start, newestVersion, 4);
    append(start, descriptorSize, 4);
    append(start, headerSize, 4);
    append(start, seekTable.size(), 4);
    append(start, wavHeaderSize_, 4);
    append(start, framesSize_, 8);
    append(start, trailerSize_, 4);
    const pcm::Md5Digest digest = md5_.result();
    start.insert(start.end(), digest.begin(), digest.end());
    start.insert(start.end(), header.begin(), header.end());
    start.insert(start.end(), seekTable.begin(), seekTable.end());
    output_.writeAt(0, start);
    output_.commit();
}

} // namespace quav::ape
