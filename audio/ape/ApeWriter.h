#pragma once

#include "audio/ape/FrameFormat.h"
#include "audio/pcm/Digest.h"
#include "audio/pcm/OutputFile.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quav::ape {

/// Writes a Monkey's Audio 3.99 file around frames that come in order. Throws Failure: Kind::Write
/// when the system fails, Kind::Unsupported when the file would grow beyond 4 GiB.
///
/// Layout: descriptor (52 bytes), header (24), seek table (a 32-bit offset a frame), the WAV file's
/// header, the frames back to back with the bytes of every group of four turned round, the rest of
/// the WAV file. The MD5 digest in the descriptor is over all of these but the first three, and
/// then over header and seek table.
class ApeWriter {
public:
    /// `blocks` is the number of blocks that will come.
    ApeWriter(const std::string& path, const FrameFormat& format, std::uint64_t blocks,
              std::span<const std::uint8_t> wavHeader);

    /// Adds the bytes of the next frame, in logical order.
    void addFrame(std::span<const std::uint8_t> frame);
    /// To be called once, behind the last frame.
    void endFrames();
    void addTrailer(std::span<const std::uint8_t> bytes);
    /// Completes the file and gives it its name.
    void commit();

private:
    [[noreturn]] void tooLarge() const;
    std::vector<std::uint8_t> header() const;
    void write(std::span<const std::uint8_t> bytes);
    void writeWords(std::span<const std::uint8_t> bytes);

    FrameFormat format_;
    std::uint64_t blocks_;
    pcm::OutputFile output_;
    pcm::Md5 md5_;
    std::vector<std::uint32_t> frameOffsets_;
    std::size_t frameCount_;
    std::uint64_t framesStart_ = 0;
    std::uint64_t framesSize_ = 0; // so far
    std::uint64_t trailerSize_ = 0;
    std::uint64_t wavHeaderSize_;
    std::array<std::uint8_t, 4> openWord_{}; // the start of a group that is not complete
};

} // namespace quav::ape
