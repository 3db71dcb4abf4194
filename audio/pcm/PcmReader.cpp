#include "audio/pcm/PcmReader.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/SoundBehind.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quav::pcm {

namespace {

constexpr std::uint64_t maximalHeader = std::uint64_t{16} << 20;

// What is kept of what stands behind the samples of a pipe.
constexpr std::uint64_t maximalTrailer = std::uint64_t{16} << 20;

using Bytes = std::span<const std::uint8_t>;

std::string text(Bytes bytes) {
    return {bytes.begin(), bytes.end()};
}

// An 80-bit floating-point number, as AIFF writes the sample rate; 0 when it is no sensible rate.
std::uint32_t rateOf(Bytes bytes) {
    const auto exponent = static_cast<int>(bigEndian(bytes.first(2)));
    const std::uint64_t mantissa = bigEndian(bytes.subspan(2, 8));
    const int shift = 16383 + 63 - exponent; // a set sign bit makes this negative, too
    return shift < 32 || shift > 63 ? 0 : static_cast<std::uint32_t>(mantissa >> shift);
}

} // namespace

struct PcmReader::Chunk {
    std::string id;
    std::uint64_t size = 0;
};

PcmReader::PcmReader(InputFile& input) : input_(input) {
    while (const std::uint64_t tag = id3v2Length(input_.peek(id3v2Header))) {
        take(tag);
    }
    const Bytes start = input_.peek(12);
    const std::string magic = text(start.first(std::min<std::size_t>(start.size(), 4)));
    const std::string kind = text(start.size() < 12 ? Bytes() : start.subspan(8, 4));
    if ((magic == "RIFF" || magic == "RF64" || magic == "BW64") && kind == "WAVE") {
        take(12);
        readWav(magic != "RIFF");
    } else if (magic == "FORM" && (kind == "AIFF" || kind == "AIFC")) {
        take(12);
        isAiff_ = true;
        readAiff(kind == "AIFC");
    } else {
        throw Failure(Failure::Kind::Input, input_.name() + ": is no WAV or AIFF file");
    }
}

void PcmReader::damaged(const std::string& what) const {
    throw Failure(Failure::Kind::Input, input_.name() + ": is damaged: " + what);
}

// Takes bytes into the header and shows them, until the next ones are taken.
Bytes PcmReader::take(std::uint64_t count) {
    const std::size_t start = header_.size();
    if (count > maximalHeader - start) {
        damaged("there are more than 16 MiB before its samples");
    }
    // Piece by piece: a size that is a lie must not cost memory.
    while (header_.size() - start < count) {
        const Bytes piece = input_.peek(static_cast<std::size_t>(count) - (header_.size() - start));
        if (piece.empty()) {
            damaged("it ends before its samples begin");
        }
        header_.insert(header_.end(), piece.begin(), piece.end());
        input_.skip(piece.size());
    }
    return Bytes(header_).subspan(start);
}

PcmReader::Chunk PcmReader::nextChunk(bool isBigEndian) {
    const Bytes head = take(8);
    const Bytes size = head.subspan(4);
    return {text(head.first(4)), isBigEndian ? bigEndian(size) : littleEndian(size)};
}

void PcmReader::readWav(bool isRf64) {
    std::uint64_t longSize = 0;
    while (true) {
        const Chunk chunk = nextChunk(false);
        if (chunk.id == "data") {
            const bool isLong = isRf64 && chunk.size == 0xFFFFFFFF && longSize > 0;
            return startWav(isLong ? longSize : chunk.size, isLong);
        }
        const Bytes content = take(chunk.size + chunk.size % 2);
        if (chunk.id == "ds64" && content.size() >= 16) {
            longSize = littleEndian(content.subspan(8, 8));
        } else if (chunk.id == "fmt ") {
            readWavFormat(content.first(static_cast<std::size_t>(chunk.size)));
        }
    }
}

void PcmReader::readWavFormat(Bytes chunk) {
    if (chunk.size() < 16) {
        damaged("its format chunk is too short");
    }
    std::uint64_t tag = littleEndian(chunk.first(2));
    format_ = {};
    format_.channels = static_cast<unsigned>(littleEndian(chunk.subspan(2, 2)));
    format_.sampleRate = static_cast<std::uint32_t>(littleEndian(chunk.subspan(4, 4)));
    const std::uint64_t blockAlign = littleEndian(chunk.subspan(12, 2));
    format_.bitsPerSample = static_cast<unsigned>(littleEndian(chunk.subspan(14, 2)));
    format_.bytesPerSample = (format_.bitsPerSample + 7) / 8;
    constexpr std::uint64_t extensible = 0xFFFE;
    if (tag == extensible) {
        if (chunk.size() < 40) {
            damaged("its format chunk is too short");
        }
        const auto validBits = static_cast<unsigned>(littleEndian(chunk.subspan(18, 2)));
        if (validBits > 0 && validBits <= format_.bitsPerSample) {
            format_.bitsPerSample = validBits;
        }
        format_.channelMask = static_cast<std::uint32_t>(littleEndian(chunk.subspan(20, 4)));
        tag = littleEndian(chunk.subspan(24, 2));
    }
    if (tag != 1) {
        throw Failure(Failure::Kind::Unsupported,
                      input_.name() +
                          (tag == 3 ? ": holds floating-point samples"
                                    : ": holds samples of a compressed kind") +
                          "; only integers of 8 to 32 bits can be read");
    }
    if (format_.channels == 0 || format_.sampleRate == 0 || format_.bytesPerSample == 0 ||
        format_.bytesPerSample > 4 || blockAlign != format_.blockAlign()) {
        damaged("its format chunk contradicts itself");
    }
    format_.isUnsigned = format_.bytesPerSample == 1;
}

void PcmReader::readAiff(bool isCompressed) {
    while (true) {
        const Chunk chunk = nextChunk(true);
        if (chunk.id == "SSND") {
            const std::uint64_t offset = bigEndian(take(8).first(4));
            if (chunk.size < 8 || offset > chunk.size - 8) {
                damaged("its sound chunk contradicts itself");
            }
            take(offset);
            return startAiff(chunk.size - 8 - offset);
        }
        const Bytes content = take(chunk.size + chunk.size % 2);
        if (chunk.id == "COMM") {
            readAiffFormat(content.first(static_cast<std::size_t>(chunk.size)), isCompressed);
        }
    }
}

void PcmReader::readAiffFormat(Bytes chunk, bool isCompressed) {
    if (chunk.size() < (isCompressed ? 22U : 18U)) {
        damaged("its COMM chunk is too short");
    }
    format_ = {};
    format_.channels = static_cast<unsigned>(bigEndian(chunk.first(2)));
    blocks_ = bigEndian(chunk.subspan(2, 4));
    format_.bitsPerSample = static_cast<unsigned>(bigEndian(chunk.subspan(6, 2)));
    format_.bytesPerSample = (format_.bitsPerSample + 7) / 8;
    format_.sampleRate = rateOf(chunk.subspan(8, 10));
    format_.bigEndian = true;
    if (isCompressed) {
        const std::string type = text(chunk.subspan(18, 4));
        constexpr std::array<std::string_view, 5> plain{"NONE", "twos", "in24", "in32", "raw "};
        format_.isUnsigned = type == "raw ";
        format_.bigEndian = type != "sowt";
        if (type != "sowt" && std::find(plain.begin(), plain.end(), type) == plain.end()) {
            throw Failure(Failure::Kind::Unsupported,
                          input_.name() + ": holds samples of the kind “" + type +
                              "”; only integers of 8 to 32 bits can be read");
        }
    }
    if (format_.channels == 0 || format_.sampleRate == 0 || format_.bytesPerSample == 0 ||
        format_.bytesPerSample > 4) {
        damaged("its COMM chunk contradicts itself");
    }
}

void PcmReader::startWav(std::uint64_t dataBytes, bool isLong) {
    if (format_.channels == 0) {
        damaged("it does not say how its samples look before they begin");
    }
    if (!input_.size() && !isLong && standsForUnknown(dataBytes)) {
        return countToTheEnd();
    }
    if (!input_.size()) {
        return startSamples(dataBytes);
    }
    const SoundExtent extent = extentOfData(input_, {.from = input_.position(),
                                                     .bytes = dataBytes,
                                                     .isLong = isLong,
                                                     .blockAlign = format_.blockAlign()});
    leftOut_ = extent.leftOut;
    leftOutAsTold_ = extent.leftOutAsTold;
    startSamples(extent.bytes);
}

void PcmReader::startAiff(std::uint64_t soundBytes) {
    if (format_.channels == 0) {
        throw Failure(Failure::Kind::Unsupported,
                      input_.name() + ": has its COMM chunk behind its samples, which cannot be "
                                      "read; convert it first");
    }
    if (blocks_.value_or(0) > soundBytes / format_.blockAlign()) {
        damaged("its COMM chunk promises more samples than there are");
    }
    startSamples(soundBytes);
    if (const std::optional<std::uint64_t> size = input_.size()) {
        const std::uint64_t from = input_.position();
        leftOut_ = leftOutAsTold_ =
            behind([this](std::uint64_t offset,
                          std::span<std::uint8_t> to) { return input_.readAt(offset, to); },
                   {.samplesEnd = from + *blocks_ * format_.blockAlign(),
                    .chunkEnd = from + soundBytes,
                    .fileEnd = *size});
    }
}

void PcmReader::startSamples(std::uint64_t soundBytes) {
    blocks_ = blocks_.value_or(soundBytes / format_.blockAlign());
    const std::optional<std::uint64_t> size = input_.size();
    if (size && *size - std::min(*size, input_.position()) < soundBytes) {
        damaged("it ends before the samples do that its header promises");
    }
    if (!size) {
        soundBytes_ = soundBytes;
    }
}

std::optional<std::string> PcmReader::behind(const ReadAt& readAt, SoundEnd end) const {
    end.blockAlign = format_.blockAlign();
    end.isOdd = (end.chunkEnd - end.samplesEnd + *blocks_ * format_.blockAlign()) % 2 == 1;
    end.isAiff = isAiff_;
    return lookBehind(readAt, end).sound;
}

std::optional<std::string> PcmReader::soundLeftOut() const {
    if (!soundBytes_) {
        return leftOut_;
    }
    const std::uint64_t begin = blocksRead_ * format_.blockAlign();
    const ReadAt readAt = [&](std::uint64_t offset, std::span<std::uint8_t> to) {
        const std::uint64_t at = std::min<std::uint64_t>(offset - begin, trailer_.size());
        const std::size_t count =
            std::min(to.size(), trailer_.size() - static_cast<std::size_t>(at));
        std::copy_n(trailer_.begin() + static_cast<std::ptrdiff_t>(at), count, to.begin());
        return count;
    };
    return behind(readAt, {.samplesEnd = begin,
                           .chunkEnd = std::max(begin, *soundBytes_),
                           .fileEnd = begin + trailerBytes_});
}

std::optional<std::string> PcmReader::soundLeftOutAsTold() const {
    return leftOutAsTold_ ? leftOutAsTold_ : soundLeftOut();
}

void PcmReader::refuseToLeaveOut() const {
    if (const std::optional<std::string> what = soundLeftOut()) {
        throw Failure(Failure::Kind::Input,
                      input_.name() + ": holds sound that would be lost: " + *what);
    }
}

void PcmReader::keepTrailer(std::span<const std::uint8_t> piece) {
    const std::size_t room = maximalTrailer - trailer_.size();
    const auto kept = piece.first(std::min(room, piece.size()));
    trailer_.insert(trailer_.end(), kept.begin(), kept.end());
    trailerBytes_ += piece.size();
}

void PcmReader::countToTheEnd() {
    blocks_.reset();
    if (const std::optional<std::uint64_t> size = input_.size()) {
        blocks_ = (*size - std::min(*size, input_.position())) / format_.blockAlign();
    }
}

std::uint64_t PcmReader::countBlocks(const std::string& outputPath) {
    if (!blocks_) {
        input_ = std::move(input_).spooled(outputPath);
        countToTheEnd();
    }
    return *blocks_;
}

std::size_t PcmReader::readSamples(std::span<std::uint8_t> to) {
    const std::size_t align = format_.blockAlign();
    std::uint64_t wanted = to.size() / align;
    if (blocks_) {
        wanted = std::min(wanted, *blocks_ - blocksRead_);
    }
    const std::size_t bytes = static_cast<std::size_t>(wanted) * align;
    const std::size_t count = input_.read(to.first(bytes));
    if (count < bytes) {
        if (blocks_) {
            damaged("it ends before the samples do that its header promises");
        }
        const std::size_t incomplete = count % align;
        leftOver_.assign(to.begin() + static_cast<std::ptrdiff_t>(count - incomplete),
                         to.begin() + static_cast<std::ptrdiff_t>(count));
        blocks_ = blocksRead_ + count / align;
    }
    blocksRead_ += count / align;
    return count - count % align;
}

std::size_t PcmReader::readTrailer(std::span<std::uint8_t> to) {
    const std::size_t first = std::min(to.size(), leftOver_.size());
    std::copy_n(leftOver_.begin(), first, to.begin());
    leftOver_.erase(leftOver_.begin(), leftOver_.begin() + static_cast<std::ptrdiff_t>(first));
    const std::size_t count = first + input_.read(to.subspan(first));
    if (soundBytes_) {
        keepTrailer(to.first(count));
    }
    return count;
}

} // namespace quav::pcm
