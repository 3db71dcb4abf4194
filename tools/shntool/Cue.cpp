#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <array>
#include <cstdio>

namespace quav::shntool {

namespace {

std::string cueSheet(const std::vector<AudioFile>& files) {
    std::string sheet = "FILE \"joined.wav\" WAVE";
    std::uint64_t before = 0;
    unsigned number = 0;
    for (const AudioFile& file : files) {
        const std::uint64_t sectors = (before + sectorSize / 2) / sectorSize;
        std::array<char, 120> track{};
        std::snprintf(track.data(), track.size(),
                      "\n  TRACK %02u AUDIO\n    INDEX 01 %llu:%02llu:%02llu", ++number,
                      static_cast<unsigned long long>(sectors / sectorsPerSecond / 60),
                      static_cast<unsigned long long>(sectors / sectorsPerSecond % 60),
                      static_cast<unsigned long long>(sectors % sectorsPerSecond));
        sheet += track.data();
        before += file.wave().dataSize;
    }
    return sheet;
}

std::string splitPoints(const std::vector<AudioFile>& files) {
    std::string points;
    std::uint64_t before = 0;
    for (std::size_t i = 0; i + 1 < files.size(); ++i) {
        before += files[i].wave().dataSize;
        if (!points.empty()) {
            points += '\n';
        }
        points += std::to_string(before);
    }
    return points;
}

} // namespace

// Nothing is printed before all is known: what reads it might keep the half of a sheet.
int runCue(const Options& options, Console& console) {
    Work work(options, console);
    std::vector<AudioFile> files;
    for (const std::string& path : options.files) {
        if (auto file = work.open(path)) {
            files.push_back(*std::move(file));
        }
    }
    const bool wantsPoints = options.lastOf("cs") == 's';
    if (wantsPoints && files.size() < 2) {
        throw ModeError("need two or more files in order to generate split points");
    }
    if (files.empty()) {
        throw ModeError("need one or more files in order to generate CUE sheet");
    }
    if (work.status() != 0) {
        return work.status();
    }
    if (wantsPoints) {
        checkSameFormat(files);
        console.result(splitPoints(files));
        return 0;
    }
    for (const AudioFile& file : files) {
        if (!file.wave().isCdQuality()) {
            throw ModeError("file is not CD-quality: [" + file.path() + "]");
        }
    }
    console.result(cueSheet(files));
    return 0;
}

} // namespace quav::shntool
