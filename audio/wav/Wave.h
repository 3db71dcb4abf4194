#pragma once

#include "audio/pcm/PcmFormat.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace quav::wav {

/// Bytes of a CD's sector, of which 75 make a second.
constexpr std::uint64_t sectorSize = 2352;
constexpr std::uint64_t sectorsPerSecond = 75;
/// Bytes of the shortest track that a CD may have, four seconds.
constexpr std::uint64_t shortestTrack = 4 * sectorsPerSecond * sectorSize;

/// How many bytes `size` lacks to be a multiple.
constexpr std::uint64_t paddingTo(std::uint64_t multiple, std::uint64_t size) {
    return (multiple - size % multiple) % multiple;
}

/// What the header of a WAV file says, as it says it, and what follows from it. Files of other
/// formats are described by the header that they store or would decode to.
struct Wave {
    std::uint16_t formatTag = 1; ///< 1, or 0xFFFE for WAVE_FORMAT_EXTENSIBLE with integers in it
    unsigned channels = 0;
    unsigned bits = 0;      ///< of a sample's container
    unsigned validBits = 0; ///< of these
    std::uint32_t channelMask = 0;
    std::uint32_t rate = 0;           ///< blocks per second
    std::uint32_t bytesPerSecond = 0; ///< what the header says, which may be wrong
    std::uint32_t blockAlign = 0;     ///< the same
    std::uint64_t headerSize = 0;     ///< from "RIFF" to the first sample
    std::uint64_t dataSize = 0;
    std::uint64_t chunkSize = 0; ///< what the header says that stands behind its first 8 bytes

    pcm::PcmFormat format() const;
    std::uint64_t totalSize() const { return chunkSize + 8; }
    std::uint64_t rightBytesPerSecond() const { return rate * format().blockAlign(); }
    double seconds(std::uint64_t bytes) const;

    bool isCdQuality() const;
    /// Whether the header is as short as it can be for these samples.
    bool isCanonical() const;
    std::uint64_t misalignment() const { return dataSize % sectorSize; }
    bool isTooShort() const { return dataSize < shortestTrack; }
    bool hasWholeBlocks() const { return dataSize % format().blockAlign() == 0; }
    bool hasExtraChunks() const;
    /// Whether the sizes contradict each other; one too small for the header tells nothing.
    bool isInconsistent() const {
        return totalSize() >= headerSize && totalSize() < headerSize + dataSize;
    }
    /// Whether the zero byte that belongs behind an odd number of bytes is there.
    bool hasPadByte() const { return dataSize % 2 == 1 && totalSize() > headerSize + dataSize; }
};

/// A header byte by byte, and what it says.
struct WaveHeader {
    Wave wave;
    std::vector<std::uint8_t> bytes;
};

/// Fills `to` with the next bytes; returns fewer than there is room for only at the end.
using ReadBytes = std::function<std::size_t(std::span<std::uint8_t> to)>;
/// Gets every chunk's name and length.
using ChunkHandler = std::function<void(const std::string& id, std::uint64_t length)>;

/// Reads a header up to the first sample: RIFF, RF64 or BW64 with integer samples. `file` is for
/// the text of the Failure that anything else throws, of Kind::Input or Kind::Unsupported.
WaveHeader readWaveHeader(const ReadBytes& read, const std::string& file,
                          const ChunkHandler& found = {});

/// The same for a header that is at hand.
WaveHeader readWaveHeader(std::span<const std::uint8_t> bytes, const std::string& file);

/// The shortest header for so many bytes of samples.
WaveHeader canonicalHeader(const pcm::PcmFormat& format, std::uint64_t dataSize);

/// A header for another number of bytes, which keeps all it has beside the sizes; a canonical one
/// in place of RF64, or where the file becomes too long. `behindData` is how many bytes of further
/// chunks follow the samples and their padding.
WaveHeader resizedHeader(const WaveHeader& header, std::uint64_t dataSize,
                         std::uint64_t behindData);

/// What a format tag stands for.
const char* formatName(std::uint16_t tag);

} // namespace quav::wav
