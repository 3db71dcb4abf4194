#include "audio/pcm/Failure.h"
#include "shntool/Modes.h"
#include "shntool/SplitPoints.h"
#include "shntool/TextFile.h"
#include "shntool/Work.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <optional>
#include <set>
#include <sstream>

namespace quav::shntool {

namespace {

constexpr unsigned maximalPieces = 256;

// A part of the file that becomes a file.
struct Piece {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    bool isWanted = true;
    std::string name;

    std::uint64_t size() const { return end - begin; }
};

// The numbers of "2-6,9,11-13", a set that is empty when all pieces are wanted.
std::set<std::uint64_t> parseExtract(const std::string& text) {
    std::set<std::uint64_t> wanted;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');) {
        const std::size_t dash = part.find('-');
        const std::uint64_t first = parseNumber(part.substr(0, dash)).value_or(0);
        const std::uint64_t last =
            dash == std::string::npos ? first : parseNumber(part.substr(dash + 1)).value_or(0);
        for (const std::uint64_t end : {first, last}) {
            if (end < 1 || end > maximalPieces) {
                throw ModeError("track number to extract (" + std::to_string(end) +
                                ") is not in range [1 .. " + std::to_string(maximalPieces) + "]");
            }
        }
        for (std::uint64_t one = std::min(first, last); one <= std::max(first, last); ++one) {
            wanted.insert(one);
        }
    }
    return wanted;
}

// A number as a format like %02d writes it.
std::string formatted(const std::string& format, std::uint64_t value) {
    std::string digits = format;
    const bool isFramed = digits.starts_with('%') && digits.ends_with('d') && digits.size() <= 4;
    digits = isFramed ? digits.substr(1, digits.size() - 2) : "x";
    if (!std::all_of(digits.begin(), digits.end(),
                     [](unsigned char letter) { return std::isdigit(letter) != 0; })) {
        throw ModeError("file count output format is not of the form %d, %2d or %02d: [" + format +
                            "]",
                        ModeError::Kind::Usage);
    }
    const char fill = digits.starts_with('0') ? '0' : ' ';
    const std::size_t width = parseNumber(digits).value_or(0);
    const std::string text = std::to_string(value);
    return std::string(width > text.size() ? width - text.size() : 0, fill) + text;
}

std::string pointsText(const Options& options) {
    if (!options.has('f')) {
        return readText("-");
    }
    try {
        return readText(options.value('f'));
    } catch (const pcm::Failure&) {
        throw ModeError("could not open split point file: [" + options.value('f') + "]");
    }
}

class Splitter {
public:
    Splitter(Work& work, const AudioFile& file)
        : work_(work), options_(work.options()), console_(work.console()), file_(file),
          data_(file.wave().dataSize), wanted_(parseExtract(options_.value('x'))) {}

    void run() {
        if (options_.has('l')) {
            repeat();
        } else {
            points_ = SplitPoints::parse(pointsText(options_));
            cutAtPoints();
        }
        namePieces();
        tellShape(pieces_.back());
        extendPieces();
        checkOutputs();
        write();
    }

private:
    Length length(const std::string& text) const {
        try {
            const Length length = parseLength(text, file_.wave());
            warnOfRounding(console_, text, length);
            return length;
        } catch (const pcm::Failure& failure) {
            throw ModeError(failure.what());
        }
    }

    void repeat() {
        const std::uint64_t step = length(options_.value('l')).bytes;
        if (step == 0) {
            throw ModeError("repeated split size must be greater than zero");
        }
        if (step >= data_) {
            throw ModeError("repeated split size is not less than data size of input file -- "
                            "nothing to do");
        }
        for (std::uint64_t at = step; at < data_; at += step) {
            cut(at);
        }
        addPiece(data_);
    }

    void cutAtPoints() {
        bool reachesEnd = false;
        for (const std::string& text : points_.places) {
            const std::uint64_t at = length(text).bytes;
            if (at == 0 && &text == &points_.places.front()) {
                console_.warn("discarding initial zero-valued split point");
                continue;
            }
            if (at <= begin_) {
                throw ModeError("split point " + std::to_string(at) +
                                " is not greater than previous split point " +
                                std::to_string(begin_));
            }
            if (at > data_ || reachesEnd) {
                throw ModeError("split points go beyond input file's data size");
            }
            hasPregap_ = hasPregap_ || (points_.isCueSheet && &text == &points_.places.front());
            reachesEnd = at == data_;
            if (!reachesEnd) {
                cut(at);
            }
        }
        if (pieces_.empty() && !reachesEnd) {
            throw ModeError("no split points given -- nothing to do");
        }
        addPiece(data_);
    }

    // Ends a piece that is not the last one.
    void cut(std::uint64_t end) {
        addPiece(end);
        if (pieces_.size() == maximalPieces) {
            throw ModeError("too many split files would be created -- maximum is " +
                            std::to_string(maximalPieces));
        }
        tellShape(pieces_.back());
    }

    void addPiece(std::uint64_t end) {
        const std::uint64_t number = pieces_.size() + 1;
        const bool isWanted = wanted_.empty() || wanted_.contains(number);
        pieces_.push_back({.begin = begin_, .end = end, .isWanted = isWanted, .name = {}});
        begin_ = end;
    }

    // Warns of what a CD would not take.
    void tellShape(const Piece& piece) {
        if (!file_.wave().isCdQuality() || !piece.isWanted) {
            return;
        }
        const bool isShort = piece.size() < shortestTrack;
        const bool isCut = piece.size() % sectorSize != 0;
        if (isShort || isCut) {
            console_.warn("file " + std::to_string(&piece - pieces_.data() + 1) + " will " +
                          (isShort ? "be too short to be burned" : "") +
                          (isShort && isCut ? ", and will " : "") +
                          (isCut ? "not be cut on a sector boundary" : ""));
        }
    }

    void namePieces() {
        const std::uint64_t first = options_.has('c') ? countFrom(options_.value('c')) : 1;
        const std::string format = options_.has('n') ? options_.value('n') : "%02d";
        std::set<std::string> names;
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            const std::uint64_t number =
                first + i - (hasPregap_ ? std::min<std::uint64_t>(first, 1) : 0);
            const std::string digits = formatted(format, number);
            std::string base = digits;
            if (options_.has('t')) {
                base = nameFromCue(i, digits);
                replaceSlashes(base, pieces_[i].isWanted);
            }
            if (options_.output.isFile() && !names.insert(base).second) {
                throw ModeError("detected duplicate filenames: [" + base + "]");
            }
            pieces_[i].name = options_.has('t') ? work_.nameInFolder(base, "")
                                                : work_.nameOf("split-track", base);
        }
    }

    static std::uint64_t countFrom(const std::string& text) {
        const std::optional<std::uint64_t> first = parseNumber(text);
        if (!first || *first > 1'000'000) {
            throw ModeError(text.starts_with('-')
                                ? "starting count cannot be negative"
                                : "invalid number to start counting from: [" + text + "]",
                            ModeError::Kind::Usage);
        }
        return *first;
    }

    std::string nameFromCue(std::size_t piece, const std::string& digits) {
        CueTrack track;
        const std::size_t index = piece - (hasPregap_ ? 1 : 0);
        if (hasPregap_ && piece == 0) {
            track.title = "pregap";
        } else if (index < points_.tracks.size()) {
            track = points_.tracks[index];
        }
        const std::string& performer =
            track.performer.empty() ? points_.performer : track.performer;
        std::string name;
        const std::string format = options_.value('t');
        for (std::size_t i = 0; i < format.size(); ++i) {
            const char field = format[i] == '%' && i + 1 < format.size() ? format[i + 1] : '\0';
            if (field == '\0' || std::string_view("patn").find(field) == std::string_view::npos) {
                name += format[i];
                continue;
            }
            name += field == 'p'   ? performer
                    : field == 'a' ? points_.album
                    : field == 't' ? track.title
                                   : digits;
            ++i;
        }
        return asFileName(name, digits);
    }

    // With the characters that the user wants, and no blanks around.
    std::string asFileName(std::string name, const std::string& digits) const {
        const std::string pairs = options_.value('m');
        for (char& letter : name) {
            for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
                if (letter == pairs[i]) {
                    letter = pairs[i + 1];
                    break;
                }
            }
        }
        const std::size_t begin = name.find_first_not_of(' ');
        name = begin == std::string::npos
                   ? digits
                   : name.substr(begin, name.find_last_not_of(' ') - begin + 1);
        return name;
    }

    void replaceSlashes(std::string& name, bool warns) {
        if (warns && name.find('/') != std::string::npos) {
            console_.warn("converting illegal path character '/' to '-' in CUE-originated "
                          "filename: [" +
                          name + "]");
        }
        std::replace(name.begin(), name.end(), '/', '-');
    }

    // Lets pieces reach into their neighbours.
    void extendPieces() {
        const std::uint64_t leadIn = options_.has('e') ? length(options_.value('e')).bytes : 0;
        const std::uint64_t leadOut = options_.has('u') ? length(options_.value('u')).bytes : 0;
        const std::vector<Piece> cut = pieces_;
        for (std::size_t i = 0; i < cut.size(); ++i) {
            if (i > 0) {
                checkLead(leadIn, cut[i - 1], "lead-in");
                pieces_[i].begin -= leadIn;
            }
            if (i + 1 < cut.size()) {
                checkLead(leadOut, cut[i + 1], "lead-out");
                pieces_[i].end += leadOut;
            }
        }
    }

    static void checkLead(std::uint64_t lead, const Piece& neighbour, const char* what) {
        if (lead > neighbour.size()) {
            throw ModeError(what + std::string(" length exceeds length of one or more files"));
        }
    }

    // What cannot be written whole is not begun.
    void checkOutputs() {
        for (const Piece& piece : pieces_) {
            const std::string reason = piece.isWanted ? work_.obstacle(piece.name) : "";
            if (!reason.empty()) {
                Meter(console_, title(piece), 0).fail();
                throw ModeError(reason);
            }
        }
    }

    std::string title(const Piece& piece) const {
        return (piece.isWanted ? "Splitting " : "Skipping  ") + work_.label(file_) + " --> [" +
               (piece.isWanted ? piece.name : "/dev/null") + "] (" +
               work_.length(file_.wave(), piece.size()) + ")";
    }

    void write() {
        for (const Piece& piece : pieces_) {
            Meter meter(console_, title(piece), piece.size());
            if (piece.isWanted) {
                writePiece(piece, meter);
            }
            meter.done();
        }
    }

    void writePiece(const Piece& piece, Meter& meter) {
        std::unique_ptr<Writer> output;
        try {
            output = work_.create(piece.name, canonicalHeader(file_.wave().format(), piece.size()));
        } catch (const OutputUnavailable& reason) {
            throw ModeError(reason.what());
        }
        const bool isDone = work_.transfer(
            output.get(),
            "error while transferring " + std::to_string(piece.size()) + " bytes of data", [&] {
                goTo(piece.begin);
                copyBytes(*reader_, *output, piece.size(), &meter);
                at_ = piece.end;
                if (at_ == data_) {
                    reader_->finish();
                }
                writeZeros(*output, piece.size() % 2);
                output->commit();
            });
        if (!isDone) {
            throw ModeError("failed to split file");
        }
    }

    void goTo(std::uint64_t place) {
        if (!reader_ || at_ > place) {
            reader_ = file_.reader();
            at_ = 0;
        }
        skipBytes(*reader_, place - at_);
        at_ = place;
    }

    Work& work_;
    const Options& options_;
    Console& console_;
    const AudioFile& file_;
    std::uint64_t data_;
    std::set<std::uint64_t> wanted_;
    SplitPoints points_;
    std::vector<Piece> pieces_;
    std::uint64_t begin_ = 0; // of the next piece
    bool hasPregap_ = false;  // the first piece stands before the first track
    std::unique_ptr<Reader> reader_;
    std::uint64_t at_ = 0; // where the reader is
};

} // namespace

int runSplit(const Options& options, Console& console) {
    if (options.files.size() != 1) {
        throw ModeError("need exactly one file to process");
    }
    Work work(options, console);
    const std::optional<AudioFile> file = work.open(options.files.front());
    if (!file) {
        throw ModeError("cannot continue due to error(s) shown above");
    }
    Splitter(work, *file).run();
    return work.status();
}

} // namespace quav::shntool
