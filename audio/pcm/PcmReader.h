#pragma once

#include "audio/pcm/InputFile.h"
#include "audio/pcm/PcmFormat.h"
#include "audio/pcm/SoundBehind.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quav::pcm {

/// Reads the samples of a WAV (plain, WAVE_FORMAT_EXTENSIBLE, RF64) or AIFF/AIFF-C (NONE, twos,
/// sowt, raw, in24, in32) stream, and keeps what stands around them: the input is exactly header(),
/// the bytes of readSamples(), and the bytes of readTrailer(), in this order.
///
/// Throws Failure: Kind::Input for damaged or foreign input, Kind::Unsupported for samples that are
/// no integers of 8 to 32 bit, Kind::Read when the system fails.
class PcmReader {
public:
    /// Reads up to the first sample. An ID3v2 tag in front counts to the header.
    explicit PcmReader(InputFile& input);

    const PcmFormat& format() const { return format_; }
    bool isAiff() const { return isAiff_; }

    /// Every byte before the first sample, at most 16 MiB.
    const std::vector<std::uint8_t>& header() const { return header_; }

    /// Number of blocks; nothing when the header does not tell (a recorder that wrote to a pipe)
    /// and the input's length is unknown, too. An incomplete block at the end counts to the
    /// trailer.
    std::optional<std::uint64_t> blocks() const { return blocks_; }

    /// Makes blocks() known, before the first sample is read: an input of unknown length is copied
    /// to an unnamed temporary file beside `outputPath`.
    std::uint64_t countBlocks(const std::string& outputPath);

    /// Fills `to` with the next samples as they stand in the file; `to` must be a multiple of a
    /// block. Returns the number of bytes, whole blocks always; fewer than asked only at the end.
    /// Input that ends before its header says it does is a Failure.
    std::size_t readSamples(std::span<std::uint8_t> to);

    /// Bytes after the last whole block, to be read when readSamples() has come to its end.
    std::size_t readTrailer(std::span<std::uint8_t> to);

    /// What of the sound readSamples() leaves out (see Behind::sound): of a regular file at any
    /// time, of a pipe when the trailer has been read.
    std::optional<std::string> soundLeftOut() const;

    /// The same for programs that take the size in the header for what it seems to be.
    std::optional<std::string> soundLeftOutAsTold() const;

    /// Throws Failure with Kind::Input when there is such sound.
    void refuseToLeaveOut() const;

private:
    struct Chunk;
    Chunk nextChunk(bool bigEndian);
    std::span<const std::uint8_t> take(std::uint64_t count);
    void readWav(bool isRf64);
    void readWavFormat(std::span<const std::uint8_t> chunk);
    void readAiff(bool isCompressed);
    void readAiffFormat(std::span<const std::uint8_t> chunk, bool isCompressed);
    void startWav(std::uint64_t dataBytes, bool isLong);
    void startAiff(std::uint64_t soundBytes);
    std::optional<std::string> behind(const ReadAt& readAt, SoundEnd end) const;
    void startSamples(std::uint64_t soundBytes);
    void countToTheEnd();
    void keepTrailer(std::span<const std::uint8_t> piece);
    [[noreturn]] void damaged(const std::string& what) const;

    InputFile& input_;
    PcmFormat format_;
    std::vector<std::uint8_t> header_;
    std::optional<std::uint64_t> blocks_;
    std::uint64_t blocksRead_ = 0;
    std::vector<std::uint8_t> leftOver_; // an incomplete block at the end, for the trailer
    bool isAiff_ = false;
    std::optional<std::string> leftOut_;
    std::optional<std::string> leftOutAsTold_;
    std::optional<std::uint64_t> soundBytes_; // of a pipe, when its header tells
    std::vector<std::uint8_t> trailer_;       // of a pipe, its beginning
    std::uint64_t trailerBytes_ = 0;
};

} // namespace quav::pcm
