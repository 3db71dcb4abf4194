#include "audio/pcm/Failure.h"
#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <optional>

namespace quav::shntool {

namespace {

using Bytes = std::span<const std::uint8_t>;

// By how many bytes one of two files begins later than the other.
struct Shift {
    std::uint64_t first = 0; ///< bytes that only the first file has
    std::uint64_t second = 0;
};

struct Arguments {
    bool listsBytes = false;
    bool findsShift = false;
    std::uint64_t seconds = 3;
    std::uint64_t fuzz = 0; ///< bytes that may differ in what is searched
};

std::uint64_t positive(const std::string& text, const char* what) {
    const std::uint64_t value = parseNumber(text).value_or(0);
    if (value == 0 || value > 1'000'000) {
        throw ModeError(std::string(what) + " must be positive", ModeError::Kind::Usage);
    }
    return value;
}

Arguments argumentsOf(const Options& options) {
    Arguments arguments{.listsBytes = options.has('l'), .findsShift = options.has('s')};
    if (options.has('c')) {
        arguments.seconds = positive(options.value('c'), "seconds for byte-shift comparison");
    }
    if (options.has('f')) {
        if (!arguments.findsShift) {
            throw ModeError("fuzz factor can only be used with byte-shift", ModeError::Kind::Usage);
        }
        arguments.fuzz = positive(options.value('f'), "fuzz factor");
    }
    if (options.files.size() != 2) {
        throw ModeError("need exactly two files to process", ModeError::Kind::Usage);
    }
    return arguments;
}

// Whether no more than `fuzz` bytes differ.
bool isAlike(Bytes one, Bytes other, std::uint64_t fuzz) {
    const std::size_t count = std::min(one.size(), other.size());
    if (fuzz == 0) {
        return std::memcmp(one.data(), other.data(), count) == 0;
    }
    // Most bytes are the same, or none: what is the same is passed over in long steps.
    constexpr std::size_t step = 256;
    std::uint64_t differences = 0;
    for (std::size_t at = 0; at < count && differences <= fuzz; at += step) {
        const std::size_t size = std::min(step, count - at);
        if (std::memcmp(&one[at], &other[at], size) != 0) {
            for (std::size_t i = at; i < at + size; ++i) {
                differences += one[i] != other[i] ? 1 : 0;
            }
        }
    }
    return differences <= fuzz;
}

// How many bytes at the end of `text` are the beginning of `pattern`: the most, but not more than
// the pattern has (the algorithm of Knuth, Morris and Pratt).
std::size_t longestOverlap(Bytes text, Bytes pattern) {
    std::vector<std::uint32_t> border(pattern.size() + 1, 0); // of every beginning of the pattern
    const auto advance = [&](std::size_t matched, std::uint8_t next) {
        while (matched > 0 && (matched == pattern.size() || pattern[matched] != next)) {
            matched = border[matched];
        }
        return pattern[matched] == next ? matched + 1 : 0;
    };
    for (std::size_t length = 2; length <= pattern.size(); ++length) {
        border[length] =
            static_cast<std::uint32_t>(advance(border[length - 1], pattern[length - 1]));
    }
    std::size_t matched = 0;
    for (const std::uint8_t byte : text) {
        matched = advance(matched, byte);
    }
    return matched;
}

// The smallest shift that makes two beginnings of the same size alike.
std::optional<Shift> findShift(Bytes one, Bytes other, std::uint64_t fuzz) {
    const std::size_t size = one.size();
    // What is left must be long enough to mean something.
    const std::size_t least = std::min<std::size_t>(size, 64) + static_cast<std::size_t>(fuzz);
    if (isAlike(one, other, fuzz)) {
        return Shift{};
    }
    if (fuzz == 0) {
        const std::size_t first = longestOverlap(one, other);
        const std::size_t second = longestOverlap(other, one);
        if (std::max(first, second) < least) {
            return {};
        }
        return first > second ? Shift{size - first, 0} : Shift{0, size - second};
    }
    for (std::size_t shift = 1; shift + least <= size; ++shift) {
        if (isAlike(one, other.subspan(shift), fuzz)) {
            return Shift{0, shift};
        }
        if (isAlike(one.subspan(shift), other, fuzz)) {
            return Shift{shift, 0};
        }
    }
    return {};
}

class Comparison {
public:
    Comparison(Work& work, const AudioFile& one, const AudioFile& other, const Arguments& arguments)
        : work_(work), console_(work.console()), one_(one), other_(other), arguments_(arguments) {}

    int run() {
        if (arguments_.findsShift) {
            scan();
        }
        compare();
        return work_.status();
    }

private:
    struct Difference {
        std::uint64_t offset = 0; // from 1
        std::uint8_t one = 0;
        std::uint8_t other = 0;
    };

    // Piece by piece: a header that is a lie must not cost memory.
    static std::vector<std::uint8_t> beginning(const AudioFile& file, std::uint64_t size) {
        constexpr std::uint64_t step = std::uint64_t{1} << 20;
        std::vector<std::uint8_t> bytes;
        const auto reader = file.reader();
        while (bytes.size() < size) {
            const std::size_t start = bytes.size();
            bytes.resize(static_cast<std::size_t>(std::min(size, start + step)));
            const std::size_t count = reader->read(std::span(bytes).subspan(start));
            if (count < bytes.size() - start) {
                throw ModeError("possibly truncated and/or corrupt file: [" + file.path() + "]");
            }
        }
        return bytes;
    }

    void scan() {
        const std::uint64_t size = std::min({arguments_.seconds * one_.wave().rightBytesPerSecond(),
                                             one_.wave().dataSize, other_.wave().dataSize});
        std::optional<Shift> found;
        {
            Meter meter(console_, "Scanning [" + one_.path() + "] and [" + other_.path() + "]",
                        size);
            found = findShift(beginning(one_, size), beginning(other_, size), arguments_.fuzz);
            if (found) {
                meter.done();
            }
        }
        if (!found) {
            throw ModeError("these files do not share identical data within the first " +
                            std::to_string(size) + " bytes.");
        }
        shift_ = *found;
        tellShift();
    }

    void tellShift() {
        const std::string fuzz = "With fuzz factor " + std::to_string(arguments_.fuzz) + ", ";
        const std::uint64_t extra = shift_.first + shift_.second;
        console_.note("");
        if (extra == 0) {
            console_.note((arguments_.fuzz > 0 ? fuzz + "f" : "F") +
                          std::string("iles are identical so far."));
        } else {
            const Wave& wave = one_.wave();
            std::string sizes =
                std::to_string(extra / wave.format().blockAlign()) + " extra samples";
            if (wave.isCdQuality()) {
                sizes += ", or " + std::to_string(extra / sectorSize) + " extra sectors";
            }
            console_.note((arguments_.fuzz > 0 ? fuzz + "f" : "F") + std::string("ile the ") +
                          (shift_.first > 0 ? "first" : "second") + " file seems to have " +
                          std::to_string(extra) + " extra bytes (" + sizes + ")");
            console_.note("");
            console_.note("These extra bytes will be ignored in the full comparison.");
        }
        console_.note("");
        console_.note("Preparing to do a full comparison...");
        console_.note("");
    }

    void compare() {
        const std::uint64_t sizeOne = one_.wave().dataSize - shift_.first;
        const std::uint64_t sizeOther = other_.wave().dataSize - shift_.second;
        const std::uint64_t size = std::min(sizeOne, sizeOther);
        if (sizeOne != sizeOther) {
            console_.warn("WAVE data size differs between these files -- will check up to smaller "
                          "size");
        }
        Meter meter(console_, "Comparing " + work_.label(one_) + " and " + work_.label(other_),
                    size);
        const bool isRead = work_.transfer(nullptr, "error while comparing these files",
                                           [&] { findDifferences(size, meter); });
        if (!isRead) {
            return;
        }
        const bool isAligned = shift_.first + shift_.second > 0;
        const std::string contents =
            isAligned ? "Aligned contents of these files " : "Contents of these files ";
        if (isSame_) {
            meter.done();
            console_.note("");
            console_.note(contents + "are identical" +
                          (sizeOne != sizeOther ? " (up to the first " + std::to_string(size) +
                                                      " bytes of WAVE data)."
                                                : "."));
            return;
        }
        work_.failed();
        meter.fail();
        if (!arguments_.listsBytes) {
            throw ModeError("WAVE data differs at byte offset: " +
                            std::to_string(firstDifference_.offset));
        }
        console_.note("");
        console_.note(contents + "differed as indicated above.");
    }

    void findDifferences(std::uint64_t size, Meter& meter) {
        constexpr std::size_t pieceSize = std::size_t{1} << 20;
        const auto one = one_.reader();
        const auto other = other_.reader();
        skipBytes(*one, shift_.first);
        skipBytes(*other, shift_.second);
        std::vector<std::uint8_t> pieceOne(pieceSize);
        std::vector<std::uint8_t> pieceOther(pieceSize);
        for (std::uint64_t at = 0; at < size;) {
            const auto count =
                static_cast<std::size_t>(std::min<std::uint64_t>(size - at, pieceSize));
            const std::span partOne = std::span(pieceOne).first(count);
            const std::span partOther = std::span(pieceOther).first(count);
            if (one->read(partOne) < count || other->read(partOther) < count) {
                throw pcm::Failure(pcm::Failure::Kind::Input, "one of the files ends too early");
            }
            if (!comparePiece(partOne, partOther, at, meter)) {
                return;
            }
            at += count;
            meter.advance(count);
        }
        one->finish();
        other->finish();
    }

    // Returns whether to go on.
    bool comparePiece(Bytes one, Bytes other, std::uint64_t at, Meter& meter) {
        auto place = std::mismatch(one.begin(), one.end(), other.begin());
        while (place.first != one.end()) {
            const Difference difference{at + static_cast<std::uint64_t>(place.first - one.begin()) +
                                            1,
                                        *place.first, *place.second};
            if (isSame_) {
                isSame_ = false;
                firstDifference_ = difference;
                if (!arguments_.listsBytes) {
                    return false;
                }
                meter.fail();
                console_.note("");
                console_.note("    offset   1   2");
                console_.note("   ----------------");
            }
            std::array<char, 60> row{};
            std::snprintf(row.data(), row.size(), "%10llu %3u %3u",
                          static_cast<unsigned long long>(difference.offset), difference.one,
                          difference.other);
            console_.note(row.data());
            place = std::mismatch(place.first + 1, one.end(), place.second + 1);
        }
        return true;
    }

    Work& work_;
    Console& console_;
    const AudioFile& one_;
    const AudioFile& other_;
    const Arguments& arguments_;
    Shift shift_;
    bool isSame_ = true;
    Difference firstDifference_;
};

} // namespace

int runCmp(const Options& options, Console& console) {
    const Arguments arguments = argumentsOf(options);
    Work work(options, console);
    const auto one = work.open(options.files[0]);
    const auto other = work.open(options.files[1]);
    if (!one || !other) {
        return 1;
    }
    const std::string difference = formatDifference(one->wave(), other->wave());
    if (!difference.empty()) {
        throw ModeError(difference + " between these files");
    }
    return Comparison(work, *one, *other, arguments).run();
}

} // namespace quav::shntool
