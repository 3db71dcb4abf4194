#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <array>
#include <cstdio>

namespace quav::shntool {

namespace {

// A block of lines about a file, written at once.
class Report {
public:
    void line(std::string key, const std::string& value) {
        constexpr std::size_t valueColumn = 30;
        key += ':';
        key.resize(std::max(key.size() + 1, valueColumn), ' ');
        text_ += key + value + '\n';
    }
    void heading(const std::string& text) { text_ += text + '\n'; }

    // Without the last line's end.
    std::string text() const { return text_.substr(0, text_.size() - 1); }

private:
    std::string text_;
};

std::string bytesText(std::uint64_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

std::string yesNo(bool yes) {
    return yes ? "yes" : "no";
}

std::string yesWith(std::uint64_t count, const char* what) {
    return count == 0 ? "no" : "yes (" + std::string(what) + bytesText(count) + ")";
}

void addFormat(Report& report, const Work& work, const AudioFile& file) {
    const Wave& wave = file.wave();
    std::array<char, 80> tag{};
    std::snprintf(tag.data(), tag.size(), "0x%04x (%s)", wave.formatTag,
                  wav::formatName(wave.formatTag));
    std::array<char, 40> ratio{};
    std::snprintf(ratio.data(), ratio.size(), "%.4f", file.ratio());
    report.heading(std::string(79, '-'));
    report.line("File name", Console::name(file.path()));
    report.line("Handled by", file.format() + " format module");
    report.line("Length", work.length(wave, wave.dataSize));
    report.line("WAVE format", tag.data());
    report.line("Channels", std::to_string(wave.channels));
    report.line("Bits/sample", std::to_string(wave.bits));
    report.line("Samples/sec", std::to_string(wave.rate));
    report.line("Average bytes/sec", std::to_string(wave.bytesPerSecond));
    report.line("Rate (calculated)", std::to_string(wave.rightBytesPerSecond()));
    report.line("Block align", std::to_string(wave.blockAlign));
    report.line("Header size", bytesText(wave.headerSize));
    report.line("Data size", bytesText(wave.dataSize));
    report.line("Chunk size", bytesText(wave.chunkSize));
    report.line("Total size (chunk size + 8)", bytesText(wave.totalSize()));
    report.line("Actual file size", std::to_string(file.size()));
    report.line("File is compressed", yesNo(file.isCompressed()));
    report.line("Compression ratio", ratio.data());
}

// Behind an odd number of bytes of samples, the first further byte may be padding or not.
std::string extraText(const AudioFile& file) {
    const bool isOdd = file.wave().dataSize % 2 == 1;
    const std::string least = isOdd ? std::to_string(file.extraChunks()) + " or " : "";
    return file.wave().hasExtraChunks() ? "yes (" + least + bytesText(file.behindData()) + ")"
                                        : "no";
}

void addProperties(Report& report, const AudioFile& file) {
    const Wave& wave = file.wave();
    const bool isCd = wave.isCdQuality();
    const auto ofCd = [&](const std::string& text) { return isCd ? text : "n/a"; };
    const auto ofWav = [&](const std::string& text) { return file.isWav() ? text : "unknown"; };
    report.heading("CD-quality properties:");
    report.line("  CD quality", yesNo(isCd));
    report.line("  Cut on sector boundary", ofCd(yesNo(wave.misalignment() == 0)));
    report.line("  Sector misalignment", ofCd(bytesText(wave.misalignment())));
    report.line(
        "  Long enough to be burned",
        ofCd(wave.isTooShort() ? "no -- needs to be at least " + bytesText(shortestTrack) : "yes"));
    report.heading("WAVE properties:");
    report.line("  Non-canonical header", yesNo(!wave.isCanonical()));
    report.line("  Extra RIFF chunks", extraText(file));
    report.heading("Possible problems:");
    report.line("  File contains ID3v2 tag", yesWith(file.tagSize(), ""));
    report.line("  Data chunk block-aligned", yesNo(wave.hasWholeBlocks()));
    report.line("  Inconsistent header", yesNo(wave.isInconsistent()));
    report.line("  File probably truncated", ofWav(yesWith(file.missingBytes(), "missing ")));
    report.line("  Junk appended to file", ofWav(yesWith(file.junkBytes(), "")));
    report.line("  Odd data size has pad byte", wave.dataSize % 2 == 0  ? "n/a"
                                                : wave.hasExtraChunks() ? "unknown"
                                                                        : yesNo(wave.hasPadByte()));
    if (file.hasSeekTable()) {
        report.heading("Extra shn-specific info:");
        report.line("  Seekable", yesNo(*file.hasSeekTable()));
    }
}

} // namespace

int runInfo(const Options& options, Console& console) {
    Work work(options, console);
    for (const std::string& path : options.files) {
        if (const auto file = work.openToDescribe(path)) {
            Report report;
            addFormat(report, work, *file);
            addProperties(report, *file);
            console.result(report.text());
            work.readsAll(*file);
        }
    }
    return work.status();
}

} // namespace quav::shntool
