#pragma once

#include "shntool/Audio.h"
#include "shntool/Console.h"
#include "shntool/Options.h"
#include "shntool/Writer.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quav::shntool {

/// The output cannot be begun; the text tells why.
class OutputUnavailable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A name in a folder; the working folder is not named.
std::string joinPath(const std::string& folder, const std::string& name);

/// What becomes of one source: zeros, a part of its samples, zeros, and the end of what stands
/// behind its samples.
struct Rewrite {
    WaveHeader header;
    std::uint64_t zerosBefore = 0;
    std::uint64_t begin = 0; ///< of the part, in bytes of samples
    std::uint64_t end = 0;
    std::uint64_t zerosBehind = 0;
    std::uint64_t kept = 0; ///< bytes at the end
};

/// What the modes have in common: files are opened, outputs are named and made, and what goes wrong
/// is told. A mode that goes on after a failure ends with status 1 all the same.
class Work {
public:
    Work(const Options& options, Console& console);

    const Options& options() const { return options_; }
    Console& console() { return console_; }

    /// 0, or 1 after failed().
    int status() const { return status_; }
    void failed() { status_ = 1; }
    /// Warns, and has failed.
    void skip(const std::string& warning);
    void skip(const OutputUnavailable& reason);

    /// Opens a file of which all sound will be read, or warns and has failed.
    std::optional<AudioFile> open(const std::string& path);
    /// Opens the files of the command line one after the other for `work`, those that can be
    /// opened; the status.
    int onEach(const std::function<void(const AudioFile&)>& work);
    /// Opens any file that can be described, or warns and has failed; to be followed by readsAll().
    std::optional<AudioFile> openToDescribe(const std::string& path);
    /// Whether the file's reader passes over no sound; else warns and has failed.
    bool readsAll(const AudioFile& file);
    /// The same as open(), or warns and throws ModeError.
    AudioFile mustOpen(const std::string& path);
    std::vector<AudioFile> mustOpenAll();

    /// "[NAME] (LENGTH)" for the title of a meter.
    std::string label(const AudioFile& file) const;
    std::string length(const Wave& wave, std::uint64_t bytes) const;

    /// The name of the output for a source: in the source's folder unless another one was chosen.
    std::string nameFor(const AudioFile& source, const std::string& usualPostfix) const;
    /// The same in the folder that was chosen, or else the working folder.
    std::string nameInFolder(const std::string& base, const std::string& usualPostfix) const;
    /// The same for what has no source: the name begins with `usualPrefix` unless another one was
    /// chosen.
    std::string nameOf(const std::string& usualPrefix, const std::string& number = {}) const;
    /// A source's name without its folder, and without an extension that means audio.
    static std::string baseName(const std::string& path);

    /// Begins an output. Throws OutputUnavailable when there is a file in the way that is not to
    /// be written over, or that is any of the sources or of this run's outputs, and when it cannot
    /// be made.
    std::unique_ptr<Writer> create(const std::string& path, const WaveHeader& header);

    /// Makes an output of a source, or warns and has failed. `toldSize` is how the warning calls
    /// what could not be transferred.
    void rewrite(const AudioFile& file, const std::string& name, const Rewrite& rewrite,
                 const std::string& toldSize, Meter& meter);

    /// Does what fills and commits an output. When that fails, tells why, then `told`, and returns
    /// false.
    bool transfer(Writer* output, const std::string& told, const std::function<void()>& fill);

    /// Why create() would refuse this output whatever the user says; empty when it would not. Of
    /// several outputs, all can be looked at before the first is written.
    std::string obstacle(const std::string& path) const;

private:
    /// What a file is, whatever its names are: its device, and its number there.
    using Identity = std::pair<std::uint64_t, std::uint64_t>;
    static std::optional<Identity> identityOf(const std::string& path);
    bool mayReplace(const std::string& path) const;

    const Options& options_;
    Console& console_;
    int status_ = 0;
    std::set<Identity> sources_;
    std::set<std::string> outputs_; // that have been begun
};

/// Copies bytes. Throws pcm::Failure when the reader ends before; its text is empty then.
void copyBytes(Reader& from, pcm::ByteSink& to, std::uint64_t count, Meter* meter = nullptr);
/// Passes over bytes.
void skipBytes(Reader& from, std::uint64_t count);
/// Copies all that is left up to `limit` bytes.
void copyRest(Reader& from, pcm::ByteSink& to, std::uint64_t limit);
void writeZeros(pcm::ByteSink& to, std::uint64_t count);

/// Tells that a length was not on a sector boundary.
void warnOfRounding(Console& console, const std::string& text, const Length& length);

/// Tells that a file ends within a block, so that what follows it has its channels shifted.
void warnOfPartialBlock(Console& console, const AudioFile& file, bool isLast);

/// How two files differ in what they must share to be compared or joined, as "number of channels
/// differs"; empty when they do not.
std::string formatDifference(const Wave& one, const Wave& other);
/// Throws ModeError when any files differ so.
void checkSameFormat(std::span<const AudioFile> files);

/// What is wrong with a file that is to be joined or fixed; empty when nothing is.
std::string soundnessProblem(const AudioFile& file);

} // namespace quav::shntool
