#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace quav::shntool {

namespace {

struct Unit {
    const char* name;
    const char* label;
    double bytes;
};
constexpr std::array<Unit, 5> units{{{"b", "B ", 1},
                                     {"kb", "KB", 1 << 10},
                                     {"mb", "MB", 1 << 20},
                                     {"gb", "GB", 1 << 30},
                                     {"tb", "TB", 1LL << 40}}};

const Unit& unitOf(const Options& options, char option) {
    const std::string name = options.has(option) ? options.value(option) : "b";
    const auto* const unit =
        std::find_if(units.begin(), units.end(), [&](const Unit& one) { return name == one.name; });
    if (unit == units.end()) {
        throw ModeError("unknown file size unit: [" + name + "]", ModeError::Kind::Usage);
    }
    return *unit;
}

// The columns of length and size. Hundredths and thousandths stand with their points in one line.
std::string lengthAndSize(const std::string& length, bool hasFrames, std::uint64_t bytes,
                          const Unit& unit) {
    std::array<char, 120> text{};
    if (unit.bytes == 1) {
        std::snprintf(text.data(), text.size(), "%13s %13llu %s",
                      (length + (hasFrames ? " " : "")).c_str(),
                      static_cast<unsigned long long>(bytes), unit.label);
    } else {
        std::snprintf(text.data(), text.size(), "%13s %13.2f %s",
                      (length + (hasFrames ? " " : "")).c_str(),
                      static_cast<double>(bytes) / unit.bytes, unit.label);
    }
    return text.data();
}

std::string ratioText(double ratio) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.4f", ratio);
    return text.data();
}

std::string row(const AudioFile& file, const Options& options, const Unit& unit) {
    const Wave& wave = file.wave();
    const bool isCd = wave.isCdQuality();
    const auto flag = [](bool isSet, char letter) { return isSet ? letter : '-'; };
    const std::string cd{isCd ? '-' : 'c', isCd ? flag(wave.misalignment() > 0, 'b') : 'x',
                         isCd ? flag(wave.isTooShort(), 's') : 'x'};
    const std::string header{flag(!wave.isCanonical(), 'h'), flag(wave.hasExtraChunks(), 'e')};
    const std::string problems{flag(file.tagSize() > 0, '3'), flag(!wave.hasWholeBlocks(), 'a'),
                               flag(wave.isInconsistent(), 'i'),
                               file.isWav() ? flag(file.missingBytes() > 0, 't') : 'x',
                               file.isWav() ? flag(file.junkBytes() > 0, 'j') : 'x'};
    const std::string format =
        std::string(5 - std::min<std::size_t>(5, file.format().size()), ' ') + file.format();
    return lengthAndSize(lengthText(wave, wave.dataSize, options.times), isCd, wave.totalSize(),
                         unit) +
           "  " + cd + "   " + header + "   " + problems + "  " + format + "  " +
           ratioText(file.ratio()) + "  " + Console::name(file.path());
}

// What all files are together.
class Total {
public:
    void add(const AudioFile& file) {
        const Wave& wave = file.wave();
        ++files_;
        isCd_ = isCd_ && wave.isCdQuality();
        data_ += wave.dataSize;
        seconds_ += wave.seconds(wave.dataSize);
        expanded_ += wave.totalSize();
        stored_ += file.size();
    }

    std::string row(const Options& options, const Unit& unit) const {
        const std::string length =
            isCd_ ? framesText(data_, options.times) : secondsText(seconds_, options.times);
        const double ratio =
            expanded_ == 0 ? 0 : static_cast<double>(stored_) / static_cast<double>(expanded_);
        const std::string empty(27, ' '); // columns that have no total
        return lengthAndSize(length, isCd_, expanded_, unit) + empty + ratioText(ratio) + "  (" +
               std::to_string(files_) + (files_ == 1 ? " file)" : " files)");
    }

private:
    std::uint64_t files_ = 0;
    bool isCd_ = true;
    std::uint64_t data_ = 0;
    double seconds_ = 0;
    std::uint64_t expanded_ = 0;
    std::uint64_t stored_ = 0;
};

} // namespace

int runLen(const Options& options, Console& console) {
    const Unit& fileUnit = unitOf(options, 'u');
    const Unit& totalUnit = unitOf(options, 'U');
    Work work(options, console);
    if (!options.has('c')) {
        console.result("    length     expanded size    cdr  WAVE problems  fmt   ratio  filename");
    }
    Total total;
    for (const std::string& path : options.files) {
        if (const auto file = work.openToDescribe(path)) {
            console.result(row(*file, options, fileUnit));
            total.add(*file);
            work.readsAll(*file);
        }
    }
    if (!options.has('t')) {
        console.result(total.row(options, totalUnit));
    }
    return work.status();
}

} // namespace quav::shntool
