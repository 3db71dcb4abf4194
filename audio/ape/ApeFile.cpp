#include "audio/ape/ApeFile.h"

#include "audio/ape/Words.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/WavHeader.h"

#include <algorithm>

namespace quav::ape {

using pcm::Failure;

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr unsigned firstVersion = 3800;
constexpr unsigned firstDescribedVersion = 3980;

// The longest frame of any version.
constexpr std::uint32_t maximalFrameBlocks = 1179648;

constexpr std::size_t oldHeaderSize = 32;

enum Flag : unsigned {
    EightBit = 1,
    HasPeak = 4,
    TwentyFourBit = 8,
    HasSeekCount = 16,
    HasNoWavHeader = 32,
};

std::uint32_t numberAt(Bytes bytes, std::size_t at, std::size_t size) {
    return static_cast<std::uint32_t>(pcm::littleEndian(bytes.subspan(at, size)));
}

// The length of the ID3v2 tags that stand in front.
std::uint64_t tagsInFront(const pcm::InputFile& input) {
    std::uint64_t start = input.position();
    std::array<std::uint8_t, pcm::id3v2Header> tag{};
    while (input.readAt(start, tag) == tag.size() && pcm::id3v2Length(tag) > 0) {
        start += pcm::id3v2Length(tag);
    }
    return start;
}

// The end of the file without the ID3v1 and APEv2 tags that stand behind.
std::uint64_t endBeforeTags(const pcm::InputFile& input) {
    std::uint64_t end = *input.size();
    std::array<std::uint8_t, 128> tag{};
    if (end >= tag.size() && input.readAt(end - tag.size(), tag) == tag.size() &&
        pcm::startsWith(tag, "TAG")) {
        end -= tag.size();
    }
    std::array<std::uint8_t, 32> footer{};
    if (end >= footer.size() && input.readAt(end - footer.size(), footer) == footer.size() &&
        pcm::startsWith(footer, "APETAGEX")) {
        const bool hasHeader = (footer[23] & 0x80) != 0;
        const std::uint64_t size =
            pcm::littleEndian(Bytes(footer).subspan(12, 4)) + (hasHeader ? footer.size() : 0);
        end -= std::min(end, size);
    }
    return end;
}

} // namespace

ApeFile::ApeFile(const pcm::InputFile& input) : input_(input), start_(tagsInFront(input)) {
    const std::vector<std::uint8_t> magic = read({start_, 6});
    if (!pcm::startsWith(magic, "MAC ")) {
        throw Failure(Failure::Kind::Input, input_.name() + ": is no Monkey's Audio file");
    }
    version_ = numberAt(magic, 4, 2);
    if (version_ < firstVersion || version_ > newestVersion) {
        throw Failure(Failure::Kind::Input, input_.name() + ": is of version " +
                                                std::to_string(version_) +
                                                ", which cannot be read");
    }
    if (version_ >= firstDescribedVersion) {
        readDescribed();
    } else {
        readOld();
    }
    check();
    usesStoredHeader_ = (flags_ & HasNoWavHeader) == 0 && wavHeader_.size > 0;
}

void ApeFile::damaged(const std::string& what) const {
    throw Failure(Failure::Kind::Input, input_.name() + ": is damaged: " + what);
}

std::vector<std::uint8_t> ApeFile::read(const Extent& extent) const {
    if (extent.end() > *input_.size()) {
        damaged("it ends before its parts do");
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(extent.size));
    if (input_.readAt(extent.offset, bytes) < bytes.size()) {
        damaged("it ends before its parts do");
    }
    return bytes;
}

void ApeFile::readDescribed() {
    const std::vector<std::uint8_t> descriptor = read({start_, descriptorSize});
    const auto number = [&](std::size_t at) {
        return pcm::littleEndian(Bytes(descriptor).subspan(at, 4));
    };
    header_ = {start_ + number(8), number(12)};
    if (number(8) < descriptorSize || number(12) < headerSize) {
        damaged("its descriptor contradicts itself");
    }
    seekTable_ = {header_.end(), number(16)};
    wavHeader_ = {seekTable_.end(), number(20)};
    frames_ = {wavHeader_.end(), number(28) << 32 | number(24)};
    wavTrailer_ = {frames_.end(), number(32)};
    // Beyond any file, but far from where sums of lengths would wrap.
    if (frames_.size >> 48 != 0) {
        damaged("its descriptor contradicts itself");
    }
    std::copy_n(descriptor.begin() + 36, digest_.size(), digest_.begin());

    const std::vector<std::uint8_t> header = read({header_.offset, headerSize});
    const auto field = [&](std::size_t at, std::size_t size) { return numberAt(header, at, size); };
    levelNumber_ = field(0, 2);
    flags_ = field(2, 2);
    blocksPerFrame_ = field(4, 4);
    finalBlocks_ = field(8, 4);
    frameCount_ = field(12, 4);
    setFormat(field(16, 2), field(18, 2), field(20, 4));
    if (std::uint64_t{frameCount_} * 4 > seekTable_.size) {
        damaged("its seek table is too short");
    }
    const std::vector<std::uint8_t> table =
        read({seekTable_.offset, std::uint64_t{frameCount_} * 4});
    frameOffsets_.resize(frameCount_);
    for (std::size_t i = 0; i < frameCount_; ++i) {
        frameOffsets_[i] = numberAt(table, 4 * i, 4);
    }
}

void ApeFile::readOld() {
    const std::vector<std::uint8_t> header = read({start_, oldHeaderSize + 8});
    const auto field = [&](std::size_t at, std::size_t size) { return numberAt(header, at, size); };
    levelNumber_ = field(6, 2);
    flags_ = field(8, 2);
    const unsigned bits = (flags_ & EightBit) != 0 ? 8 : (flags_ & TwentyFourBit) != 0 ? 24 : 16;
    setFormat(bits, field(10, 2), field(12, 4));
    frameCount_ = field(24, 4);
    finalBlocks_ = field(28, 4);
    if (version_ >= 3950) {
        blocksPerFrame_ = 73728 * 4;
    } else {
        blocksPerFrame_ = version_ >= 3900 || levelNumber_ >= 4000 ? 73728 : 9216;
    }
    const unsigned optional =
        ((flags_ & HasPeak) != 0 ? 4U : 0U) + ((flags_ & HasSeekCount) != 0 ? 4U : 0U);
    const std::uint32_t seekCount =
        (flags_ & HasSeekCount) != 0 ? field(oldHeaderSize + optional - 4, 4) : frameCount_;
    wavHeader_ = {start_ + oldHeaderSize + optional, field(16, 4)};
    seekTable_ = {wavHeader_.end(), std::uint64_t{seekCount} * 4};
    // The length of the frames is not told: they end where the trailer begins.
    const std::uint64_t end = endBeforeTags(input_);
    const std::uint64_t trailer = std::min<std::uint64_t>(field(20, 4), end);
    wavTrailer_ = {end - trailer, trailer};
    frames_ = {seekTable_.end(), end - trailer - std::min(end - trailer, seekTable_.end())};
}

void ApeFile::setFormat(unsigned bits, unsigned channels, std::uint32_t sampleRate) {
    format_.channels = channels;
    format_.bitsPerSample = bits;
    format_.bytesPerSample = bits / 8;
    format_.isUnsigned = bits == 8;
    format_.sampleRate = sampleRate;
}

void ApeFile::check() const {
    const unsigned bits = format_.bitsPerSample;
    if ((bits != 8 && bits != 16 && bits != 24) || format_.sampleRate == 0) {
        damaged("its header contradicts itself");
    }
    if (format_.channels != 1 && format_.channels != 2) {
        throw Failure(Failure::Kind::Unsupported, input_.name() + ": holds " +
                                                      std::to_string(format_.channels) +
                                                      " channels; only one or two can be read");
    }
    if (frameCount_ == 0) {
        damaged("it holds no samples");
    }
    if (blocksPerFrame_ == 0 || blocksPerFrame_ > maximalFrameBlocks || finalBlocks_ == 0 ||
        finalBlocks_ > blocksPerFrame_) {
        damaged("its header contradicts itself");
    }
    if (frames_.offset > *input_.size()) {
        damaged("it ends before its parts do");
    }
}

std::uint32_t ApeFile::frameBlocks(std::uint32_t frame) const {
    return frame + 1 < frameCount_ ? blocksPerFrame_ : finalBlocks_;
}

std::uint64_t ApeFile::blocks() const {
    return std::uint64_t{frameCount_ - 1} * blocksPerFrame_ + finalBlocks_;
}

std::vector<std::uint8_t> ApeFile::wavHeader() const {
    return hasStoredHeader() ? read(wavHeader_) : pcm::wavHeader(format_, blocks());
}

std::vector<std::uint8_t> ApeFile::wavTrailer() const {
    return hasStoredHeader() ? read(wavTrailer_)
                             : std::vector<std::uint8_t>(pcm::wavPadding(format_, blocks()));
}

void ApeFile::preferPlainHeader() {
    usesStoredHeader_ = usesStoredHeader_ && storesPlainHeader();
}

// Whether the stored header has a format chunk of 16 bytes with the tag 1, and the size of the
// samples.
bool ApeFile::storesPlainHeader() const {
    const std::vector<std::uint8_t> header = read(wavHeader_);
    const Bytes bytes(header);
    bool isPlain = false;
    for (std::uint64_t at = 12; at + 8 <= bytes.size();) {
        const Bytes chunk = bytes.subspan(static_cast<std::size_t>(at));
        const std::uint64_t size = numberAt(chunk, 4, 4);
        if (pcm::startsWith(chunk, "fmt ") && chunk.size() >= 10) {
            isPlain = size == 16 && numberAt(chunk, 8, 2) == 1;
        } else if (pcm::startsWith(chunk, "data")) {
            return isPlain && pcm::startsWith(bytes, "RIFF") &&
                   size / format_.blockAlign() == blocks();
        }
        at += 8 + size + size % 2;
    }
    return false;
}

bool ApeFile::readFrame(std::uint32_t frame, std::size_t padding,
                        std::vector<std::uint8_t>& to) const {
    const std::uint64_t first = frames_.offset - start_;
    const std::uint64_t begin = frameOffsets_[frame] - first;
    const std::uint64_t end =
        frame + 1 < frameCount_ ? frameOffsets_[frame + 1] - first : frames_.size;
    // The coder can take no more than some twenty bytes for a sample.
    const std::uint64_t limit = std::uint64_t{frameBlocks(frame)} * format_.channels * 20 + 64;
    if (frameOffsets_[frame] < first || begin >= end || end > frames_.size || end - begin > limit) {
        return false;
    }
    const std::uint64_t firstWord = begin / 4 * 4;
    if (frames_.offset + (end + 3) / 4 * 4 > *input_.size()) {
        return false;
    }
    to.resize(static_cast<std::size_t>((end + 3) / 4 * 4 - firstWord));
    if (input_.readAt(frames_.offset + firstWord, to) < to.size()) {
        return false;
    }
    reverseWords(to);
    to.erase(to.begin(), to.begin() + static_cast<std::ptrdiff_t>(begin - firstWord));
    to.resize(static_cast<std::size_t>(end - begin) + padding);
    return true;
}

bool ApeFile::digestMatches() const {
    if (digest_ == pcm::Md5Digest{}) {
        return true;
    }
    pcm::Md5 md5;
    std::vector<std::uint8_t> piece(std::size_t{64} << 10);
    for (Extent left :
         {Extent{wavHeader_.offset, wavTrailer_.end() - wavHeader_.offset}, header_, seekTable_}) {
        while (left.size > 0) {
            const std::size_t wanted = std::min<std::uint64_t>(left.size, piece.size());
            const std::size_t count = input_.readAt(left.offset, std::span(piece).first(wanted));
            if (count < wanted) {
                return false;
            }
            md5.add(std::span(piece).first(count));
            left = {left.offset + count, left.size - count};
        }
    }
    return md5.result() == digest_;
}

} // namespace quav::ape
