#include "audio/pcm/Failure.h"
#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <algorithm>
#include <optional>

namespace quav::shntool {

namespace {

// Where the sound begins and ends, in bytes of whole blocks.
struct Sound {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

class SilenceScan final : public pcm::ByteSink {
public:
    explicit SilenceScan(const Wave& wave)
        : align_(wave.format().blockAlign()), silence_(wave.format().isUnsigned ? 0x80 : 0) {}

    void write(std::span<const std::uint8_t> bytes) override {
        const auto isSound = [this](std::uint8_t byte) { return byte != silence_; };
        const auto first = std::find_if(bytes.begin(), bytes.end(), isSound);
        if (first != bytes.end()) {
            const auto last = std::find_if(bytes.rbegin(), bytes.rend(), isSound);
            if (!first_) {
                first_ = at_ + static_cast<std::uint64_t>(first - bytes.begin());
            }
            last_ = at_ + static_cast<std::uint64_t>(bytes.rend() - last) - 1;
        }
        at_ += bytes.size();
    }

    // Nothing when there was nothing but silence.
    std::optional<Sound> sound() const {
        if (!first_) {
            return {};
        }
        return Sound{*first_ - *first_ % align_, std::min(at_, (last_ / align_ + 1) * align_)};
    }

private:
    std::uint64_t align_;
    std::uint8_t silence_;
    std::uint64_t at_ = 0;
    std::optional<std::uint64_t> first_; // byte that is not silent
    std::uint64_t last_ = 0;
};

// Which ends are to be trimmed.
enum class Ends { Both, Begin, End };

std::string placeName(Ends ends) {
    return ends == Ends::Both ? "either end" : ends == Ends::Begin ? "the beginning" : "the end";
}

std::optional<Sound> scan(Work& work, const AudioFile& file, Ends ends) {
    const std::uint64_t data = file.wave().dataSize;
    Meter meter(work.console(), "Scanning " + work.label(file), data);
    SilenceScan silence(file.wave());
    const bool isDone = work.transfer(
        nullptr, "error while reading " + std::to_string(data) + " bytes -- skipping.", [&] {
            const auto reader = file.reader();
            copyBytes(*reader, silence, data, &meter);
            reader->finish();
        });
    if (!isDone) {
        return {};
    }
    std::optional<Sound> sound = silence.sound();
    if (!sound) {
        work.skip("input file contains nothing but silence -- skipping.");
        return {};
    }
    if (ends == Ends::Begin) {
        sound->end = data;
    } else if (ends == Ends::End) {
        sound->begin = 0;
    }
    if (sound->begin == 0 && sound->end == data) {
        work.skip("input file has no silence to trim from " + placeName(ends) + " -- skipping.");
        return {};
    }
    meter.done();
    return sound;
}

void trim(Work& work, const AudioFile& file, const Sound& sound) {
    const std::uint64_t size = sound.end - sound.begin;
    const std::uint64_t extra = file.extraChunks();
    const std::string name = work.nameFor(file, "-trimmed");
    Meter meter(work.console(), "Trimming " + work.label(file) + " --> [" + name + "]", size);
    work.rewrite(file, name,
                 {.header = resizedHeader(file.header(), size, extra),
                  .begin = sound.begin,
                  .end = sound.end,
                  .zerosBehind = size % 2,
                  .kept = extra},
                 std::to_string(size) + " bytes", meter);
}

} // namespace

int runTrim(const Options& options, Console& console) {
    const bool isBoth = !options.has('b') && !options.has('e');
    const Ends ends = isBoth ? Ends::Both : options.lastOf("be") == 'b' ? Ends::Begin : Ends::End;
    Work work(options, console);
    for (const std::string& path : options.files) {
        const auto file = work.open(path);
        if (!file) {
            continue;
        }
        if (const auto sound = scan(work, *file, ends)) {
            trim(work, *file, *sound);
        }
    }
    return work.status();
}

} // namespace quav::shntool
