#include "audio/pcm/SoundBehind.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

namespace quav::pcm {

using namespace std::string_view_literals;

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t headSize = 8;

// What is shorter is no sound that anybody would miss, but what programs leave behind.
constexpr std::uint64_t fewBytes = 128;
constexpr std::uint64_t fewBlocks = 64;
// No program fills a file up with so many; they are silence.
constexpr std::uint64_t manyZeros = std::uint64_t{128} << 10;

// Chunks that may have been cut short; any other one must end where the file does or before.
constexpr std::array knownChunks{
    "LIST"sv, "list"sv, "id3 "sv, "ID3 "sv, "bext"sv, "cue "sv, "fact"sv, "smpl"sv,
    "inst"sv, "plst"sv, "acid"sv, "iXML"sv, "axml"sv, "aXML"sv, "_PMX"sv, "PEAK"sv,
    "JUNK"sv, "junk"sv, "PAD "sv, "FLLR"sv, "cart"sv, "minf"sv, "umid"sv, "DISP"sv,
    "chna"sv, "afsp"sv, "NAME"sv, "AUTH"sv, "ANNO"sv, "(c) "sv, "MARK"sv, "APPL"sv};

std::string standBehind(const std::string& chunk) {
    return " stand behind its " + chunk + " chunk";
}

bool isPrintable(Bytes id) {
    return id.size() >= 4 && std::all_of(id.begin(), id.begin() + 4, [](std::uint8_t letter) {
               return letter >= 0x20 && letter < 0x7F;
           });
}

// Goes from chunk to chunk behind the samples.
class Walk {
public:
    Walk(const ReadAt& readAt, const SoundEnd& end)
        : readAt_(readAt), end_(end), at_(end.chunkEnd), stop_(end.fileEnd) {}

    Behind result() {
        lookIntoChunk();
        if (at_ >= stop_ && !sound_) {
            return {.sound = {}, .isTidy = true};
        }
        stop_ = beginOfTags(readAt_, std::min(at_, stop_), stop_);
        evenOut(end_.isOdd);
        bool isTidy = true;
        while (at_ < stop_ && !sound_) {
            isTidy = step() && isTidy;
        }
        return {.sound = sound_, .isTidy = isTidy && !sound_};
    }

private:
    bool isMuch(std::uint64_t bytes) const {
        return bytes >= std::max(fewBytes, fewBlocks * end_.blockAlign);
    }

    // The sound chunk of an AIFF file may hold more than the number of samples tells.
    void lookIntoChunk() {
        const std::uint64_t stop = std::min(end_.chunkEnd, end_.fileEnd);
        const std::uint64_t more = stop - std::min(stop, end_.samplesEnd);
        if (isMuch(more) && endOfZeros(end_.samplesEnd, stop) < stop) {
            sound_ = "its SSND chunk holds " + sizeText(more) + " more than its COMM chunk tells";
        }
    }

    Bytes peek(std::uint64_t at) {
        const auto wanted = static_cast<std::size_t>(
            std::min<std::uint64_t>(head_.size(), stop_ - std::min(stop_, at)));
        return Bytes(head_).first(readAt_(at, std::span(head_).first(wanted)));
    }

    // Not every program writes the byte that evens out an odd size.
    void evenOut(bool isOdd) {
        if (isOdd && (isPrintable(peek(at_ + 1)) || !isPrintable(peek(at_)))) {
            ++at_;
        }
    }

    // Passes over what stands next. False when it is nothing that belongs there.
    bool step() {
        const Bytes head = peek(at_);
        if (isAnotherFile(head)) {
            return true;
        }
        if (const std::uint64_t tag = id3v2Length(head)) {
            at_ += std::min(tag, stop_ - at_);
            return true;
        }
        if (head.size() >= headSize && isPrintable(head) && passChunk(head)) {
            return true;
        }
        return passOther();
    }

    bool isAnotherFile(Bytes head) {
        const Bytes kind = head.size() < 12 ? Bytes() : head.subspan(8);
        if ((startsWith(head, "RIFF") || startsWith(head, "RF64") || startsWith(head, "BW64")) &&
            startsWith(kind, "WAVE")) {
            sound_ = "another WAV file stands behind its sound";
        } else if (startsWith(head, "FORM") &&
                   (startsWith(kind, "AIFF") || startsWith(kind, "AIFC"))) {
            sound_ = "another AIFF file stands behind its sound";
        } else if (startsWith(head, "fLaC") && head.size() >= 8 &&
                   bigEndian(head.subspan(5, 3)) == 34) {
            sound_ = "a FLAC file stands behind its sound";
        }
        return sound_.has_value();
    }

    bool passChunk(Bytes head) {
        const std::string id(head.begin(), head.begin() + 4);
        const Bytes four = head.subspan(4, 4);
        const std::uint64_t size = end_.isAiff ? bigEndian(four) : littleEndian(four);
        const std::uint64_t there = stop_ - at_ - headSize;
        const bool isSound = id == (end_.isAiff ? "SSND" : "data");
        const bool isKnown =
            isSound || std::find(knownChunks.begin(), knownChunks.end(), id) != knownChunks.end();
        if (size > there && !isKnown) {
            return false;
        }
        if (isSound && std::min(size, there) >= (end_.isAiff ? 9U : 1U)) {
            sound_ = "a second " + id + " chunk with " + sizeText(std::min(size, there)) +
                     " of sound stands behind the first";
        }
        at_ += headSize + std::min(size, there);
        evenOut(size % 2 == 1);
        zerosBegin_.reset();
        return true;
    }

    // Where zeros end; `stop` when nothing else can be read there.
    std::uint64_t endOfZeros(std::uint64_t at, std::uint64_t stop) const {
        std::vector<std::uint8_t> piece(std::size_t{64} << 10);
        while (at < stop) {
            const auto wanted = std::min<std::uint64_t>(piece.size(), stop - at);
            const auto got = std::span(piece).first(
                readAt_(at, std::span(piece).first(static_cast<std::size_t>(wanted))));
            const auto found =
                std::find_if(got.begin(), got.end(), [](std::uint8_t byte) { return byte != 0; });
            if (got.empty()) {
                return stop;
            }
            at += static_cast<std::uint64_t>(found - got.begin());
            if (found != got.end()) {
                break;
            }
        }
        return at;
    }

    // Zeros, and then something else or nothing.
    bool passOther() {
        const std::uint64_t start = zerosBegin_.value_or(at_);
        const std::uint64_t next = endOfZeros(at_, std::min(stop_, at_ + manyZeros));
        if (next > at_ && next < stop_ && isPrintable(peek(next))) {
            zerosBegin_ = start; // This may be a chunk.
            at_ = next;
            return false;
        }
        if (next < stop_ && isMuch(stop_ - start)) {
            sound_ =
                sizeText(stop_ - start) + " of sound" + standBehind(end_.isAiff ? "SSND" : "data");
        }
        at_ = stop_;
        return false;
    }

    const ReadAt& readAt_;
    const SoundEnd& end_;
    std::uint64_t at_;
    std::uint64_t stop_;
    std::array<std::uint8_t, 12> head_{};
    std::optional<std::uint64_t> zerosBegin_;
    std::optional<std::string> sound_;
};

// The number of bytes of one tag at the end, or 0.
class TagAtEnd {
public:
    TagAtEnd(const ReadAt& readAt, std::uint64_t end) : readAt_(readAt), end_(end) {}

    std::uint64_t size() {
        for (const auto find :
             {&TagAtEnd::id3v1, &TagAtEnd::ape, &TagAtEnd::lyrics, &TagAtEnd::id3v2}) {
            if (const std::uint64_t found = (this->*find)()) {
                return found;
            }
        }
        return 0;
    }

private:
    // So many of the last bytes; none when there are fewer.
    Bytes last(std::size_t count) {
        bytes_.resize(count);
        const bool isThere = count <= end_ && readAt_(end_ - count, bytes_) == count;
        return isThere ? Bytes(bytes_) : Bytes();
    }

    std::uint64_t id3v1() {
        constexpr std::size_t size = 128;
        constexpr std::size_t extended = 227; // in front of it
        if (!startsWith(last(size), "TAG")) {
            return 0;
        }
        return startsWith(last(size + extended), "TAG+") ? size + extended : size;
    }

    std::uint64_t ape() {
        constexpr std::size_t footer = 32;
        const Bytes bytes = last(footer);
        if (!startsWith(bytes, "APETAGEX")) {
            return 0;
        }
        const std::uint64_t size = littleEndian(bytes.subspan(12, 4));
        const bool hasHeader = (bytes[23] & 0x80U) != 0;
        return std::max<std::uint64_t>(size, footer) + (hasHeader ? footer : 0);
    }

    std::uint64_t lyrics() {
        constexpr std::size_t endMark = 9;
        constexpr std::size_t digits = 6;
        constexpr std::size_t longest = 5120; // of the first version, which tells no size
        const Bytes bytes = last(digits + endMark);
        if (bytes.empty()) {
            return 0;
        }
        if (startsWith(bytes.subspan(digits), "LYRICS200")) {
            std::uint64_t size = 0;
            for (const std::uint8_t digit : bytes.first(digits)) {
                size = size * 10 + (digit - '0') % 10U;
            }
            return size + digits + endMark;
        }
        if (!startsWith(bytes.subspan(digits), "LYRICSEND")) {
            return 0;
        }
        const Bytes all = last(static_cast<std::size_t>(std::min<std::uint64_t>(longest, end_)));
        constexpr std::string_view begin = "LYRICSBEGIN";
        const auto found = std::find_end(all.begin(), all.end(), begin.begin(), begin.end());
        return static_cast<std::uint64_t>(all.end() - found);
    }

    std::uint64_t id3v2() {
        const Bytes bytes = last(id3v2Header);
        if (!startsWith(bytes, "3DI")) {
            return 0;
        }
        std::array<std::uint8_t, id3v2Header> header{};
        std::copy(bytes.begin(), bytes.end(), header.begin());
        std::copy_n("ID3", 3, header.begin());
        return id3v2Length(header);
    }

    const ReadAt& readAt_;
    std::uint64_t end_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace

bool standsForUnknown(std::uint64_t size) {
    return size <= 0xFFFFFFFF && (size >= 0xFFFFF000 || (size >= 0x7FFFF000 && size <= 0x80000000));
}

std::uint64_t beginOfTags(const ReadAt& readAt, std::uint64_t begin, std::uint64_t end) {
    while (const std::uint64_t tag = TagAtEnd(readAt, end).size()) {
        if (tag > end - begin) {
            break;
        }
        end -= tag;
    }
    return end;
}

Behind lookBehind(const ReadAt& readAt, const SoundEnd& end) {
    return Walk(readAt, end).result();
}

SoundExtent extentOfData(const InputFile& input, const ToldData& told) {
    const std::uint64_t end = input.size().value_or(0);
    const std::uint64_t there = end - std::min(end, told.from);
    const bool mayBeUnknown = !told.isLong && standsForUnknown(told.bytes);
    SoundExtent extent{.bytes = told.bytes, .isUnknown = false, .leftOut = {}, .leftOutAsTold = {}};
    if (told.bytes > there) {
        extent.isUnknown = mayBeUnknown;
        extent.bytes = mayBeUnknown ? there : told.bytes;
        return extent;
    }
    const ReadAt readAt = [&](std::uint64_t offset, std::span<std::uint8_t> to) {
        return input.readAt(offset, to);
    };
    const auto look = [&](std::uint64_t size) {
        return lookBehind(readAt, {.samplesEnd = told.from + size,
                                   .chunkEnd = told.from + size,
                                   .fileEnd = end,
                                   .blockAlign = told.blockAlign,
                                   .isOdd = size % 2 == 1});
    };
    const Behind behind = look(told.bytes);
    extent.leftOut = extent.leftOutAsTold = behind.sound;
    if (behind.isTidy || told.isLong) {
        return extent;
    }
    constexpr std::uint64_t lap = std::uint64_t{1} << 32;
    for (std::uint64_t size = told.bytes + lap; size <= there; size += lap) {
        if (size % told.blockAlign == 0 && look(size).isTidy) {
            extent.leftOutAsTold = sizeText(size - told.bytes) + " of sound" + standBehind("data");
            extent.leftOut.reset();
            extent.bytes = size;
            return extent;
        }
    }
    if (mayBeUnknown && behind.sound) {
        extent.bytes = there;
        extent.isUnknown = true;
        extent.leftOut.reset();
    }
    return extent;
}

std::string sizeText(std::uint64_t bytes) {
    if (bytes < 1000) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    auto number = static_cast<double>(bytes) / 1000;
    constexpr std::array units{"kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    while (number >= 999.5 && unit + 1 < units.size()) {
        number /= 1000;
        ++unit;
    }
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.*f %s",
                  number < 9.995   ? 2
                  : number < 99.95 ? 1
                                   : 0,
                  number, units.at(unit));
    return text.data();
}

} // namespace quav::pcm
