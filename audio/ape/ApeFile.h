#pragma once

#include "audio/ape/FrameFormat.h"
#include "audio/pcm/Digest.h"
#include "audio/pcm/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quav::ape {

/// The version that is written, and the newest one that is read.
inline constexpr unsigned newestVersion = 3990;

/// Bytes of the parts that a file of the newest version begins with.
inline constexpr std::size_t descriptorSize = 52;
inline constexpr std::size_t headerSize = 24;

/// A stretch of a file.
struct Extent {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;

    std::uint64_t end() const { return offset + size; }
};

/// Where everything lies in a Monkey's Audio file: its descriptor, header and seek table, read and
/// held against the file's length. All versions from 3800 to 3990; an ID3v2 tag may stand in front,
/// other tags behind.
class ApeFile {
public:
    /// `input` is a regular file and must outlive the object. Throws Failure with Kind::Input when
    /// it is no such file, is damaged here, or holds no samples.
    explicit ApeFile(const pcm::InputFile& input);

    const pcm::InputFile& input() const { return input_; }
    std::uint64_t start() const { return start_; } ///< of the stream, behind tags
    unsigned version() const { return version_; }
    unsigned levelNumber() const { return levelNumber_; }
    const pcm::PcmFormat& format() const { return format_; }
    std::uint32_t frameCount() const { return frameCount_; }
    std::uint32_t frameBlocks(std::uint32_t frame) const;
    std::uint64_t blocks() const;

    /// What the WAV file had before and behind its samples. When it is not stored, the header is
    /// made, and the trailer is what pads the samples.
    ///
    /// Programs that read a pipe know no other header than the plain one, and believe its sizes:
    /// for them a stored header of another kind counts as not stored after preferPlainHeader().
    void preferPlainHeader();
    std::vector<std::uint8_t> wavHeader() const;
    std::vector<std::uint8_t> wavTrailer() const;

    /// Of version 3990: the bytes of a frame in logical order, `padding` bytes behind them. False
    /// when the seek table contradicts itself there or the file ends before.
    bool readFrame(std::uint32_t frame, std::size_t padding, std::vector<std::uint8_t>& to) const;

    /// Whether the file is as long as its parts are together.
    bool isWhole() const { return wavTrailer_.end() <= *input_.size(); }

    /// Whether the stored digest of the whole file is right; true for versions that have none.
    bool digestMatches() const;

private:
    void readDescribed();
    void readOld();
    void setFormat(unsigned bits, unsigned channels, std::uint32_t sampleRate);
    void check() const;
    bool hasStoredHeader() const { return usesStoredHeader_; }
    bool storesPlainHeader() const;
    std::vector<std::uint8_t> read(const Extent& extent) const;
    [[noreturn]] void damaged(const std::string& what) const;

    const pcm::InputFile& input_;
    std::uint64_t start_ = 0; // of the stream; offsets in it count from here
    unsigned version_ = 0;
    unsigned levelNumber_ = 0;
    unsigned flags_ = 0;
    pcm::PcmFormat format_;
    std::uint32_t blocksPerFrame_ = 0;
    std::uint32_t finalBlocks_ = 0;
    std::uint32_t frameCount_ = 0;
    Extent header_;
    Extent seekTable_;
    Extent wavHeader_;
    Extent frames_;
    Extent wavTrailer_;
    bool usesStoredHeader_ = false;
    pcm::Md5Digest digest_{};
    std::vector<std::uint32_t> frameOffsets_;
};

} // namespace quav::ape
