#pragma once

#include "audio/pcm/InputFile.h"
#include "audio/pcm/PcmFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quav::tta {

/// What other programs read at most.
constexpr unsigned maximalChannels = 16;
constexpr std::uint32_t maximalSampleRate = 0x7FFFFF;

constexpr std::size_t headerSize = 22;
/// A frame's checksum comes after its coded samples.
constexpr std::size_t checksumSize = 4;

/// The CRC-32 of zip files; the TTA format guards everything with it.
std::uint32_t checksum(std::span<const std::uint8_t> bytes);

/// Makes the last four bytes the checksum of the others.
void putChecksum(std::span<std::uint8_t> bytes);

/// What the header of a TTA1 stream tells. A stream is this header, the seek table, and frames,
/// each of which can be decoded alone. All its numbers are little-endian.
struct Header {
    unsigned channels = 0;
    unsigned bitsPerSample = 0; ///< 8, 16 or 24
    std::uint32_t sampleRate = 0;
    std::uint32_t blocks = 0;

    /// Blocks in every frame but the last, which may have fewer.
    std::uint32_t frameLength() const;
    std::size_t frames() const;
    std::uint32_t blocksOfFrame(std::size_t frame) const;
    /// How the samples lie in a WAV file.
    pcm::PcmFormat wavFormat() const;

    std::array<std::uint8_t, headerSize> bytes() const;
};

/// The seek table as it stands in the file, for frames of these sizes (checksums included).
std::vector<std::uint8_t> seekTable(std::span<const std::uint32_t> frameSizes);

/// Where in a regular file a TTA1 stream begins, perhaps after ID3v2 tags; nothing when none does.
std::optional<std::uint64_t> findStream(const pcm::InputFile& input);

/// A TTA1 stream in a regular file, perhaps between tags: its header, and where its frames are.
class Stream {
public:
    /// Reads and checks the header and the seek table. Throws pcm::Failure with Kind::Input.
    /// The input must outlive this.
    explicit Stream(const pcm::InputFile& input);

    const std::string& name() const { return input_.name(); }
    const Header& header() const { return header_; }

    /// Reads a coded frame, without its checksum, and checks it. Returns what is wrong with it, or
    /// nothing. Any thread may call this.
    std::string readFrame(std::size_t frame, std::vector<std::uint8_t>& coded) const;

private:
    void readHeader(std::uint64_t offset);
    void readSeekTable(std::uint64_t offset);
    [[noreturn]] void damaged(const std::string& what) const;

    const pcm::InputFile& input_;
    std::uint64_t fileSize_;
    Header header_;
    std::vector<std::uint64_t> frameStarts_; ///< and the end of the last
};

} // namespace quav::tta
