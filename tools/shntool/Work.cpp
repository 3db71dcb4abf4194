#include "shntool/Work.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"
#include "shntool/CommandReader.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace quav::shntool {

using pcm::Failure;

namespace {

constexpr const char* cannotOpen = "could not open output file";

std::string unavailable(const std::string& reason) {
    return std::string(cannotOpen) + " (" + reason + ")";
}

// Bytes that are copied at once.
std::size_t pieceOf(std::uint64_t count) {
    return static_cast<std::size_t>(std::min<std::uint64_t>(count, std::size_t{1} << 20));
}

bool meansAudio(const std::string& extension) {
    std::string lower = extension;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    constexpr std::array more{"wave", "rf64", "bwf", "aif", "aifc", "mp4", "alac"};
    return std::find(more.begin(), more.end(), lower) != more.end() ||
           std::any_of(formats().begin(), formats().end(), [&](const Format& format) {
               return !lower.empty() && lower == format.extension;
           });
}

bool userAgrees(const std::string& path) {
    if (::isatty(STDIN_FILENO) != 1) {
        throw ModeError("standard input is not a terminal -- cannot prompt for overwrite action.  "
                        "use \"-O always\" or \"-O never\".");
    }
    pcm::tellUser("\noverwrite [" + pcm::printable(path, STDERR_FILENO) + "] (y/n)? ");
    // Standard input may have been read to its end for the names of the files.
    std::ifstream terminal("/dev/tty");
    std::string answer;
    std::getline(terminal, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

} // namespace

std::string joinPath(const std::string& folder, const std::string& name) {
    const bool isHere = folder.empty() || folder == ".";
    return (isHere ? "" : folder + (folder.ends_with('/') ? "" : "/")) + name;
}

Work::Work(const Options& options, Console& console) : options_(options), console_(console) {
    for (const std::string& path : options.files) {
        if (const auto identity = identityOf(path)) {
            sources_.insert(*identity);
        }
    }
}

void Work::skip(const std::string& warning) {
    console_.warn(warning);
    failed();
}

void Work::skip(const OutputUnavailable& reason) {
    skip(std::string(reason.what()) + " -- skipping.");
}

std::optional<AudioFile> Work::open(const std::string& path) {
    std::optional<AudioFile> file = openToDescribe(path);
    return file && readsAll(*file) ? std::move(file) : std::nullopt;
}

bool Work::readsAll(const AudioFile& file) {
    if (file.soundLeftOut()) {
        skip("file holds more sound than its header tells (" + *file.soundLeftOut() + "): [" +
             file.path() + "]");
    }
    return !file.soundLeftOut();
}

int Work::onEach(const std::function<void(const AudioFile&)>& work) {
    for (const std::string& path : options_.files) {
        if (const auto file = open(path)) {
            work(*file);
        }
    }
    return status_;
}

std::optional<AudioFile> Work::openToDescribe(const std::string& path) {
    audio::OpenSettings settings = openSettings(options_.decoders);
    settings.foundChunk = [&](const std::string& id, std::uint64_t length) {
        console_.debug("found chunk: [" + id + "] with length: " + std::to_string(length) +
                       " in file: [" + path + "]");
    };
    try {
        return AudioFile::open(path, settings);
    } catch (const Failure& failure) {
        if (*failure.what() != '\0') {
            console_.warn(failure.what());
        }
        if (failure.kind() != Failure::Kind::Read) {
            console_.warn("none of the builtin format modules handle input file: [" + path + "]");
        }
        failed();
        return {};
    }
}

AudioFile Work::mustOpen(const std::string& path) {
    std::optional<AudioFile> file = open(path);
    if (!file) {
        throw ModeError("could not open file: [" + path + "]");
    }
    return *std::move(file);
}

std::vector<AudioFile> Work::mustOpenAll() {
    std::vector<AudioFile> files;
    for (const std::string& path : options_.files) {
        files.push_back(mustOpen(path));
    }
    return files;
}

std::string Work::length(const Wave& wave, std::uint64_t bytes) const {
    return lengthText(wave, bytes, options_.times);
}

std::string Work::label(const AudioFile& file) const {
    return "[" + file.path() + "] (" + length(file.wave(), file.wave().dataSize) + ")";
}

std::string Work::baseName(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::size_t point = name.rfind('.');
    return point != std::string::npos && point > 0 && meansAudio(name.substr(point + 1))
               ? name.substr(0, point)
               : name;
}

std::string Work::nameInFolder(const std::string& base, const std::string& usualPostfix) const {
    if (options_.output.name == "null") {
        return "/dev/null";
    }
    if (options_.output.name == "term") {
        return "terminal";
    }
    const std::string& extension = options_.output.extension;
    return joinPath(options_.folder, options_.prefix + base +
                                         options_.postfix.value_or(usualPostfix) +
                                         (extension.empty() ? "" : "." + extension));
}

std::string Work::nameOf(const std::string& usualPrefix, const std::string& number) const {
    return nameInFolder((options_.prefix.empty() ? usualPrefix : "") + number, "");
}

std::string Work::nameFor(const AudioFile& source, const std::string& usualPostfix) const {
    const std::string name = nameInFolder(baseName(source.path()), usualPostfix);
    const std::size_t slash = source.path().rfind('/');
    const bool isBeside =
        options_.folder.empty() && options_.output.isFile() && slash != std::string::npos;
    return isBeside ? source.path().substr(0, slash + 1) + name : name;
}

std::optional<Work::Identity> Work::identityOf(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return {};
    }
    return Identity{status.st_dev, status.st_ino};
}

std::string Work::obstacle(const std::string& path) const {
    struct stat status = {};
    if (!options_.output.isFile()) {
        return "";
    }
    if (outputs_.contains(path)) {
        return "output file has just been written";
    }
    if (::lstat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? "" : unavailable(std::generic_category().message(errno));
    }
    if (const auto identity = identityOf(path); identity && sources_.contains(*identity)) {
        return "output file would overwrite input file";
    }
    return options_.overwrite == Overwrite::Never ? cannotOpen : "";
}

bool Work::mayReplace(const std::string& path) const {
    const std::string reason = obstacle(path);
    if (!reason.empty()) {
        throw OutputUnavailable(reason);
    }
    struct stat status = {};
    if (!options_.output.isFile() || ::lstat(path.c_str(), &status) != 0) {
        return false;
    }
    if (options_.overwrite == Overwrite::Ask && !userAgrees(path)) {
        throw OutputUnavailable(cannotOpen);
    }
    return true;
}

std::unique_ptr<Writer> Work::create(const std::string& path, const WaveHeader& header) {
    const bool replaces = mayReplace(path);
    try {
        // A hyphen alone would be standard output.
        auto writer = openWriter(options_.output, path == "-" ? "./-" : path, replaces, header);
        outputs_.insert(path);
        return writer;
    } catch (const Failure& failure) {
        // The file has been named in front of this.
        const std::string name = path + ": ";
        const std::string reason = failure.what();
        throw OutputUnavailable(
            unavailable(reason.starts_with(name) ? reason.substr(name.size()) : reason));
    }
}

void Work::rewrite(const AudioFile& file, const std::string& name, const Rewrite& rewrite,
                   const std::string& toldSize, Meter& meter) {
    try {
        const auto output = create(name, rewrite.header);
        const std::string told = "error while transferring " + toldSize + " -- skipping.";
        const bool isDone = transfer(output.get(), told, [&] {
            const auto reader = file.reader();
            writeZeros(*output, rewrite.zerosBefore);
            skipBytes(*reader, rewrite.begin);
            copyBytes(*reader, *output, rewrite.end - rewrite.begin, &meter);
            writeZeros(*output, rewrite.zerosBehind);
            if (rewrite.kept > 0) {
                skipBytes(*reader,
                          file.wave().dataSize - rewrite.end + file.behindData() - rewrite.kept);
                copyRest(*reader, *output, rewrite.kept);
            }
            reader->finish();
            output->commit();
        });
        if (isDone) {
            meter.done();
        }
    } catch (const OutputUnavailable& reason) {
        skip(reason);
    }
}

bool Work::transfer(Writer* output, const std::string& told, const std::function<void()>& fill) {
    std::string reason;
    bool isOutput = true; // that failed, and not the source
    try {
        fill();
        return true;
    } catch (const Failure& failure) {
        reason = failure.what();
        isOutput = failure.kind() == Failure::Kind::Write;
    } catch (const pcm::ReaderGone&) {
        if (options_.output.name == "term") {
            throw;
        }
    }
    const std::optional<Writer::Ended> encoder =
        output != nullptr && isOutput ? output->failedEncoder() : std::nullopt;
    if (!reason.empty() && !encoder) {
        console_.warn(reason);
    }
    if (!encoder || !encoder->hadAll) {
        console_.warn(told);
    }
    if (encoder) {
        console_.warn("child encoder process " + std::to_string(encoder->process) +
                      " had non-zero exit status " + std::to_string(encoder->status));
    }
    failed();
    return false;
}

void copyBytes(Reader& from, pcm::ByteSink& to, std::uint64_t count, Meter* meter) {
    std::vector<std::uint8_t> piece(pieceOf(count));
    while (count > 0) {
        const std::span part = std::span(piece).first(pieceOf(count));
        if (from.read(part) < part.size()) {
            throw Failure(Failure::Kind::Input, "");
        }
        to.write(part);
        count -= part.size();
        if (meter != nullptr) {
            meter->advance(part.size());
        }
    }
}

void skipBytes(Reader& from, std::uint64_t count) {
    class Nowhere final : public pcm::ByteSink {
        void write(std::span<const std::uint8_t>) override {}
    } nowhere;
    copyBytes(from, nowhere, count);
}

void copyRest(Reader& from, pcm::ByteSink& to, std::uint64_t limit) {
    std::vector<std::uint8_t> piece(pieceOf(limit));
    while (limit > 0) {
        const std::size_t count = from.read(std::span(piece).first(pieceOf(limit)));
        if (count == 0) {
            return;
        }
        to.write(std::span(piece).first(count));
        limit -= count;
    }
}

void writeZeros(pcm::ByteSink& to, std::uint64_t count) {
    const std::vector<std::uint8_t> zeros(pieceOf(count));
    while (count > 0) {
        const std::span part = std::span(zeros).first(pieceOf(count));
        to.write(part);
        count -= part.size();
    }
}

void warnOfRounding(Console& console, const std::string& text, const Length& length) {
    if (length.wasZero) {
        console.warn("closest sector boundary to " + text +
                     " is the beginning of the file -- rounding up to first sector boundary");
    }
    if (length.wasRounded) {
        console.warn("rounding " + text + " (offset: " + std::to_string(length.rounded) +
                     ") to nearest sector boundary (offset: " + std::to_string(length.bytes) + ")");
    }
}

void warnOfPartialBlock(Console& console, const AudioFile& file, bool isLast) {
    if (!isLast && !file.wave().hasWholeBlocks()) {
        console.warn(
            "data chunk is not block-aligned, channels of what follows will be shifted: [" +
            file.path() + "]");
    }
}

std::string formatDifference(const Wave& one, const Wave& other) {
    if (one.channels != other.channels) {
        return "number of channels differs";
    }
    if (one.rate != other.rate) {
        return "samples per second differs";
    }
    if (one.bytesPerSecond != other.bytesPerSecond) {
        return "average bytes per second differs";
    }
    return one.bits != other.bits ? "bits per sample differs" : "";
}

void checkSameFormat(std::span<const AudioFile> files) {
    for (const AudioFile& file : files.subspan(1)) {
        const std::string difference = formatDifference(files.front().wave(), file.wave());
        if (!difference.empty()) {
            throw ModeError(difference + " among these files");
        }
    }
}

std::string soundnessProblem(const AudioFile& file) {
    if (file.missingBytes() > 0) {
        return "file seems to be truncated: [" + file.path() + "]";
    }
    return file.wave().isInconsistent() ? "file has an inconsistent header: [" + file.path() + "]"
                                        : "";
}

} // namespace quav::shntool
