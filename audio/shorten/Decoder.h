#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/InputFile.h"
#include "audio/shorten/BitReader.h"
#include "audio/shorten/Mean.h"
#include "audio/shorten/Stream.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quav::shorten {

/// Gives the file back that a Shorten stream of version 1, 2 or 3 was made from, byte for byte.
///
/// Throws Failure: Kind::Input for damaged or foreign input, Kind::Unsupported for logarithmic
/// samples and the streams of version 0. The format has no checksum: not every damage shows.
/// Memory is bounded whatever the input; what comes out is not by what goes in:
/// few bits can stand for many samples of silence.
class Decoder {
public:
    /// Reads up to the first sample. ID3v2 tags in front do not count.
    explicit Decoder(pcm::InputFile& input);

    /// The file's bytes before the first sample, at most 16 MiB; none when it is no WAV or AIFF.
    const std::vector<std::uint8_t>& header() const { return header_; }

    /// Writes the file's bytes from the first sample on; to be called once. What stands after the
    /// stream, as a seek table, is left alone.
    void decode(pcm::ByteSink& output);

private:
    struct Channel {
        std::vector<std::int32_t> samples; // what the predictor looks back to, then the block
        Mean mean;
    };

    [[noreturn]] void damaged(const std::string& what) const;
    std::uint32_t longNumber();
    void readSettings();
    Function readFunction();
    void readVerbatim(std::vector<std::uint8_t>& to);
    void changeBlockSize();
    void changeShift();

    void decodeBlock(Function function);
    unsigned readK();
    template <unsigned Order>
    void decodeDifferences(std::span<std::int32_t> block, std::int32_t offset);
    void decodePredicted(std::span<std::int32_t> block, std::int32_t offset);
    void writeBlocks(pcm::ByteSink& output);

    pcm::InputFile& input_;
    unsigned version_;
    BitReader bits_;
    SampleType type_;
    std::size_t blockSize_ = 0;
    std::size_t history_ = 0;
    unsigned shift_ = 0;
    std::vector<Channel> channels_;
    std::size_t turn_ = 0; // the channel whose block comes next
    std::vector<std::uint32_t> coefficients_;
    std::vector<std::uint8_t> packed_;
    std::vector<std::uint8_t> header_;
    Function next_ = Function::Quit; // what follows the header
};

} // namespace quav::shorten
