#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <algorithm>

namespace quav::shntool {

namespace {

// Where the tracks of a set begin, in bytes from the beginning of the first one; and where the last
// one ends, with its padding. Between two tracks there is no gap.
class Tracks {
public:
    Tracks(const std::vector<AudioFile>& files, char direction, bool pads) {
        for (const AudioFile& file : files) {
            before_.push_back(before_.back() + file.wave().dataSize);
        }
        const std::uint64_t end = total() + (pads ? padding() : 0);
        for (const std::uint64_t at : before_) {
            after_.push_back(std::min(moved(at, direction), end));
        }
        after_.back() = end;
    }

    std::size_t count() const { return before_.size() - 1; }
    /// Bytes of all files.
    std::uint64_t total() const { return before_.back(); }
    /// What the last track lacks to end on a sector boundary.
    std::uint64_t padding() const { return paddingTo(sectorSize, total()); }

    std::uint64_t begin(std::size_t track) const { return after_[track]; }
    std::uint64_t size(std::size_t track) const { return after_[track + 1] - after_[track]; }
    /// How much of a track comes from the files; the rest is padding.
    std::uint64_t sound(std::size_t track) const {
        return std::min(after_[track + 1], total()) - std::min(after_[track], total());
    }

    /// How many tracks stay as they are, from the first on; all but the last one when nothing but
    /// its padding is missing.
    std::size_t unchanged() const {
        const auto moved = std::mismatch(before_.begin(), before_.end() - 1, after_.begin()).first;
        const bool isMoved = moved != before_.end() - 1;
        return isMoved ? static_cast<std::size_t>(moved - before_.begin()) - 1
                       : count() - (padding() > 0 ? 1 : 0);
    }

private:
    static std::uint64_t moved(std::uint64_t at, char direction) {
        const std::uint64_t rest = at % sectorSize;
        const bool isForward =
            direction == 'f' ? rest > 0 : direction == 'u' && rest >= sectorSize / 2;
        return at - rest + (isForward ? sectorSize : 0);
    }

    std::vector<std::uint64_t> before_{0};
    std::vector<std::uint64_t> after_;
};

// All samples of a set, one file after the other.
class SetReader final : public Reader {
public:
    explicit SetReader(const std::vector<AudioFile>& files)
        : next_(files.begin()), end_(files.end()) {}

    std::size_t read(std::span<std::uint8_t> to) override {
        std::size_t done = 0;
        while (done < to.size()) {
            if (left_ == 0 && !nextFile()) {
                break;
            }
            const std::size_t part =
                static_cast<std::size_t>(std::min<std::uint64_t>(left_, to.size() - done));
            if (reader_->read(to.subspan(done, part)) < part) {
                break;
            }
            done += part;
            left_ -= part;
            if (left_ == 0) {
                reader_->finish();
            }
        }
        return done;
    }

private:
    bool nextFile() {
        while (next_ != end_ && left_ == 0) {
            reader_ = next_->reader();
            left_ = next_->wave().dataSize;
            ++next_;
        }
        return left_ > 0;
    }

    std::vector<AudioFile>::const_iterator next_;
    std::vector<AudioFile>::const_iterator end_;
    std::unique_ptr<Reader> reader_;
    std::uint64_t left_ = 0; // of the present file
};

void checkFiles(Work& work, const std::vector<AudioFile>& files) {
    for (const AudioFile& file : files) {
        if (!file.wave().isCdQuality()) {
            work.skip("file is not CD-quality: [" + file.path() + "]");
        } else if (const std::string problem = soundnessProblem(file); !problem.empty()) {
            work.skip(problem);
        } else {
            warnOfPartialBlock(work.console(), file, &file == &files.back());
        }
    }
    if (work.status() != 0) {
        throw ModeError("could not fix files due to errors, see above");
    }
}

// Two tracks must not become one file.
std::vector<std::string> outputNames(const Work& work, const std::vector<AudioFile>& files) {
    std::vector<std::string> names(files.size());
    std::transform(files.begin(), files.end(), names.begin(), [&](const AudioFile& file) {
        return work.nameInFolder(Work::baseName(file.path()), "");
    });
    std::vector<std::string> sorted = names;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (work.options().output.isFile() && twice != sorted.end()) {
        throw ModeError("detected duplicate filenames: [" + *twice + "]");
    }
    return names;
}

std::string title(const Work& work, const AudioFile& file, const std::string& name) {
    return "Fixing " + work.label(file) + " --> [" + name + "]";
}

// A set that cannot be written whole is not begun.
void checkOutputs(Work& work, const std::vector<AudioFile>& files,
                  const std::vector<std::string>& names, std::size_t first) {
    for (std::size_t track = first; track < files.size(); ++track) {
        const std::string reason = work.obstacle(names[track]);
        if (!reason.empty()) {
            Meter(work.console(), title(work, files[track], names[track]), 0).fail();
            throw ModeError(reason + ": [" + names[track] + "]");
        }
    }
}

void fix(Work& work, const std::vector<AudioFile>& files, const Tracks& tracks, std::size_t first) {
    const std::vector<std::string> names = outputNames(work, files);
    checkOutputs(work, files, names, first);
    SetReader reader(files);
    for (std::size_t track = first; track < tracks.count(); ++track) {
        const std::uint64_t size = tracks.size(track);
        const std::uint64_t sound = tracks.sound(track);
        const std::string& name = names[track];
        Meter meter(work.console(), title(work, files[track], name), size);
        const WaveHeader header = canonicalHeader(files[track].wave().format(), size);
        std::unique_ptr<Writer> output;
        try {
            output = work.create(name, header);
        } catch (const OutputUnavailable& reason) {
            throw ModeError(reason.what() + std::string(": [") + name + "]");
        }
        const std::string told =
            "error while transferring " + std::to_string(sound) + " bytes of data";
        const bool isDone = work.transfer(output.get(), told, [&] {
            if (track == first) {
                skipBytes(reader, tracks.begin(first));
            }
            copyBytes(reader, *output, sound, &meter);
            writeZeros(*output, size - sound + size % 2);
            output->commit();
        });
        if (!isDone) {
            throw ModeError("failed to fix files");
        }
        meter.done();
    }
}

} // namespace

int runFix(const Options& options, Console& console) {
    if (options.files.empty()) {
        throw ModeError("need one or more files to process", ModeError::Kind::Usage);
    }
    Work work(options, console);
    const std::vector<AudioFile> files = work.mustOpenAll();
    checkFiles(work, files);
    const bool pads = !options.has('n');
    const Tracks tracks(files, options.lastOf("bfu"), pads);
    const std::size_t unchanged = tracks.unchanged();
    const bool isFine = unchanged == tracks.count();
    if (options.has('c')) {
        return isFine ? 1 : 0;
    }
    if (isFine) {
        throw ModeError("everything seems fine, no need for fixing");
    }
    const std::size_t first = options.has('k') ? 0 : unchanged;
    if (first > 0) {
        console.warn("skipping first " + std::to_string(first) +
                     (first == 1 ? " file because it would" : " files because they would") +
                     " not be changed");
    }
    fix(work, files, tracks, first);
    const std::string zeros = std::to_string(tracks.padding());
    if (tracks.padding() == 0) {
        console.note("No padding needed.");
    } else {
        console.note(pads ? "Padded last file with " + zeros + " zero-bytes."
                          : "Last file was not padded, though it needs " + zeros +
                                " bytes of padding.");
    }
    return work.status();
}

} // namespace quav::shntool
