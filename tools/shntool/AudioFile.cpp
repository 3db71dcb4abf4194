#include "shntool/AudioFile.h"

#include "ape/ApeDecoder.h"
#include "ape/ApeFile.h"
#include "pcm/Bytes.h"
#include "pcm/Failure.h"
#include "pcm/InputFile.h"
#include "pcm/PcmReader.h"
#include "pcm/Progress.h"
#include "pcm/Samples.h"
#include "shntool/Child.h"
#include "shntool/FlacDecoding.h"
#include "shntool/LibavDecoding.h"
#include "shorten/Decoder.h"
#include "tta/Decode.h"
#include "tta/Stream.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quav::shntool {

using pcm::Failure;
using pcm::InputFile;

namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

using Bytes = std::span<const std::uint8_t>;

// A WAV file from its first sample on.
class FileReader final : public Reader {
public:
    FileReader(const std::string& path, std::uint64_t start) : file_(InputFile::open(path)) {
        file_.seek(start);
    }
    std::size_t read(std::span<std::uint8_t> to) override { return file_.read(to); }

private:
    InputFile file_;
};

// What another program writes, after the header.
class CommandReader final : public Reader {
public:
    explicit CommandReader(const std::vector<std::string>& command)
        : child_(command, Child::Pipe::FromOutput),
          output_(pcm::UniqueFd(::dup(child_.fd())), command.front()) {}

    std::size_t read(std::span<std::uint8_t> to) override { return output_.read(to); }

private:
    Child child_;
    InputFile output_;
};

WaveHeader headerFrom(Reader& reader, const std::string& path, const ChunkHandler& found = {}) {
    return readWaveHeader([&](std::span<std::uint8_t> to) { return reader.read(to); }, path, found);
}

WaveHeader headerFrom(Bytes bytes, const std::string& path) {
    const ReadBytes read = [&](std::span<std::uint8_t> to) {
        const std::size_t count = std::min(to.size(), bytes.size());
        std::copy_n(bytes.begin(), count, to.begin());
        bytes = bytes.subspan(count);
        return count;
    };
    return readWaveHeader(read, path);
}

// The byte that evens out an odd number of bytes of samples.
void writePadding(const Wave& wave, pcm::ByteSink& to) {
    if (wave.dataSize % 2 == 1) {
        constexpr std::uint8_t zero = 0;
        to.write({&zero, 1});
    }
}

void writeAiff(const std::string& path, const pcm::PcmFormat& as, pcm::ByteSink& to) {
    InputFile file = InputFile::open(path);
    pcm::PcmReader reader(file);
    std::vector<std::uint8_t> bytes(pieceSize - pieceSize % as.blockAlign());
    std::vector<std::int32_t> samples;
    while (const std::size_t count = reader.readSamples(bytes)) {
        const std::span piece(bytes.data(), count);
        samples.resize(count / as.bytesPerSample);
        pcm::unpackSamples(reader.format(), piece, samples);
        pcm::packSamples(as, samples, piece);
        to.write(piece);
    }
}

class CountingSink final : public pcm::ByteSink {
public:
    void write(Bytes bytes) override { count_ += bytes.size(); }
    std::uint64_t count() const { return count_; }

private:
    std::uint64_t count_ = 0;
};

} // namespace

/// Finds out what a file is.
class Opener {
public:
    Opener(const std::string& path, const OpenSettings& settings) : settings_(settings) {
        file_.path_ = path;
    }

    AudioFile open() {
        checkPath();
        InputFile input = InputFile::open(path());
        file_.size_ = input.size().value_or(0);
        while (const std::uint64_t tag = pcm::id3v2Length(input.peek(pcm::id3v2Header))) {
            file_.tagSize_ += tag;
            input.seek(file_.tagSize_);
        }
        file_.format_ = formatOf(input.peek(12));
        if (file_.format_.empty()) {
            throw Failure(Failure::Kind::Input, "");
        }
        if (const auto decoder = chosenDecoder()) {
            openWith(withFile(*decoder, path()));
        } else {
            openOurselves(input);
        }
        return std::move(file_);
    }

private:
    const std::string& path() const { return file_.path_; }

    void checkPath() const {
        struct stat status = {};
        if (::stat(path().c_str(), &status) != 0 && errno == ENOENT) {
            throw Failure(Failure::Kind::Read, "cannot open non-existent file: [" + path() + "]");
        }
        if (S_ISDIR(status.st_mode)) {
            throw Failure(Failure::Kind::Read, "cannot open directory: [" + path() + "]");
        }
        if (status.st_mode != 0 && !S_ISREG(status.st_mode)) {
            throw Failure(Failure::Kind::Read, "cannot open non-regular file: [" + path() + "]");
        }
    }

    static std::string formatOf(Bytes start) {
        struct Magic {
            std::size_t at;
            std::string_view magic;
            const char* format;
        };
        constexpr std::array<Magic, 10> magics{{{0, "fLaC", "flac"},
                                                {8, "WAVE", "wav"},
                                                {8, "AIFF", "aiff"},
                                                {8, "AIFC", "aiff"},
                                                {0, "ajkg", "shn"},
                                                {0, "MAC ", "ape"},
                                                {0, "TTA1", "tta"},
                                                {0, "wvpk", "wv"},
                                                {4, "ftyp", "alac"},
                                                {0, "RIFF", "wav"}}};
        for (const Magic& one : magics) {
            if (start.size() >= one.at && pcm::startsWith(start.subspan(one.at), one.magic)) {
                return one.format;
            }
        }
        return {};
    }

    std::optional<std::vector<std::string>> chosenDecoder() const {
        std::optional<InputDecoder> wanted = InputDecoder::fromEnvironment(file_.format_);
        for (const InputDecoder& decoder : settings_.decoders) {
            if (decoder.format == file_.format_) {
                wanted = decoder;
            }
        }
        return wanted ? std::optional(wanted->command) : std::nullopt;
    }

    void openWith(const std::vector<std::string>& command) {
        CommandReader reader(command);
        try {
            file_.header_ = headerFrom(reader, path(), settings_.foundChunk);
        } catch (const Failure& failure) {
            if (failure.kind() == Failure::Kind::Unsupported) {
                throw;
            }
            throw Failure(Failure::Kind::Input, "no WAVE data from decoder: [" + command.front() +
                                                    "] for file: [" + path() + "]");
        }
        file_.makeReader_ = [command, path = path()](AudioFile::Check) {
            auto again = std::make_unique<CommandReader>(command);
            headerFrom(*again, path);
            return again;
        };
    }

    void openOurselves(InputFile& input) {
        if (file_.format_ == "wav") {
            openWav();
        } else if (file_.format_ == "aiff") {
            openAiff(input);
        } else if (file_.format_ == "shn") {
            openShn(input);
        } else if (file_.format_ == "ape") {
            openApe(input);
        } else if (file_.format_ == "tta") {
            openTta(input);
        } else if (file_.format_ == "flac") {
            openFlac();
        } else {
            openWithLibav(input, file_.format_ == "wv" ? "wv" : "mov");
        }
    }

    void openWav() {
        FileReader reader(path(), file_.tagSize_);
        file_.header_ = headerFrom(reader, path(), settings_.foundChunk);
        const Wave& wave = file_.wave();
        constexpr std::uint64_t unknown = 0xFFFFFFFF;
        const std::uint64_t start = file_.tagSize_ + wave.headerSize;
        if (wave.dataSize == unknown && file_.size_ - start < unknown) {
            // A recorder that wrote to a pipe: the samples go on to the end.
            const std::uint64_t size = file_.size_ - start;
            file_.header_ =
                resizedHeader(file_.header_, size - size % wave.format().blockAlign(), 0);
        }
        file_.makeReader_ = [path = path(), start](AudioFile::Check) {
            return std::make_unique<FileReader>(path, start);
        };
    }

    void describe(const pcm::PcmFormat& format, std::uint64_t blocks) {
        file_.header_ = canonicalHeader(format, blocks * format.blockAlign());
    }

    // `write` gets the samples only.
    void setDecoder(Decode write) {
        file_.makeReader_ = [write = std::move(write), wave = file_.wave()](AudioFile::Check) {
            return readerOf([write, wave](pcm::ByteSink& to) {
                write(to);
                writePadding(wave, to);
            });
        };
    }

    void openAiff(InputFile& input) {
        const pcm::PcmReader reader(input);
        pcm::PcmFormat format = reader.format();
        format.bigEndian = false;
        format.isUnsigned = format.bytesPerSample == 1;
        describe(format, reader.blocks().value_or(0));
        setDecoder([path = path(), format](pcm::ByteSink& to) { writeAiff(path, format, to); });
    }

    void openShn(InputFile& input) {
        const shorten::Decoder decoder(input);
        file_.header_ = headerFrom(Bytes(decoder.header()), path());
        std::array<std::uint8_t, 8> end{};
        file_.hasSeekTable_ = file_.size_ > end.size() &&
                              input.readAt(file_.size_ - end.size(), end) == end.size() &&
                              pcm::startsWith(end, "SHNAMPSK");
        file_.makeReader_ = [path = path()](AudioFile::Check) {
            return readerOf([path](pcm::ByteSink& to) {
                InputFile file = InputFile::open(path);
                shorten::Decoder(file).decode(to);
            });
        };
    }

    void openApe(const InputFile& input) {
        ape::ApeFile ape(input);
        if (!hasTrueHeader(ape)) {
            ape.preferPlainHeader();
        }
        file_.header_ = headerFrom(Bytes(ape.wavHeader()), path());
        file_.makeReader_ = [path = path()](AudioFile::Check) {
            return readerOf([path](pcm::ByteSink& to) {
                const InputFile file = InputFile::open(path);
                ape::decodeApe(
                    ape::ApeFile(file), 1, [](std::uint64_t) {}, to);
            });
        };
    }

    // Whether the WAV header that is stored describes the samples that are stored.
    bool hasTrueHeader(const ape::ApeFile& ape) const {
        try {
            const Wave wave = headerFrom(Bytes(ape.wavHeader()), path()).wave;
            const pcm::PcmFormat format = wave.format();
            return wave.dataSize == ape.blocks() * format.blockAlign() &&
                   format.channels == ape.format().channels &&
                   format.bytesPerSample == ape.format().bytesPerSample;
        } catch (const Failure&) {
            return false;
        }
    }

    void openTta(const InputFile& input) {
        const tta::Header header = tta::Stream(input).header();
        describe(header.wavFormat(), header.blocks);
        setDecoder([path = path()](pcm::ByteSink& to) {
            const InputFile file = InputFile::open(path);
            pcm::Progress silent;
            tta::decode(tta::Stream(file), 1, to, silent, [&](const std::string& damage) {
                throw Failure(Failure::Kind::Input, path + ": " + damage);
            });
        });
    }

    // What was written to a pipe does not tell its length: all is decoded to learn it.
    static std::uint64_t count(const Decode& decode, const pcm::PcmFormat& format) {
        CountingSink sink;
        decode(sink);
        return sink.count() / format.blockAlign();
    }

    void openFlac() {
        const FlacStream stream = readFlacStream(path());
        const auto decode = [path = path(), format = stream.format](bool checksDigest,
                                                                    pcm::ByteSink& to) {
            decodeFlac(path, format, checksDigest, to);
        };
        const auto decodeAll = [decode](pcm::ByteSink& to) { decode(true, to); };
        describe(stream.format,
                 stream.blocks > 0 ? stream.blocks : count(decodeAll, stream.format));
        // The digest is over samples as a WAV file has them only for whole bytes with a sign.
        const unsigned bits = stream.format.bitsPerSample;
        if (stream.digest != pcm::Md5Digest{} && bits % 8 == 0 && bits > 8) {
            file_.storedDigest_ = stream.digest;
        }
        file_.makeReader_ = [decode, wave = file_.wave(),
                             isKnown = file_.storedDigest_.has_value()](AudioFile::Check check) {
            const bool checksDigest = !isKnown || check == AudioFile::Check::Everything;
            return readerOf([=](pcm::ByteSink& to) {
                decode(checksDigest, to);
                writePadding(wave, to);
            });
        };
    }

    void openWithLibav(const InputFile& input, const char* demuxer) {
        const std::uint64_t start = file_.tagSize_;
        const LibavStream stream = findLibavStream(input, start, demuxer);
        const Decode decode = [=, path = path(), format = stream.format](pcm::ByteSink& to) {
            decodeWithLibav(InputFile::open(path), start, demuxer, format, to);
        };
        describe(stream.format, stream.blocks > 0 ? stream.blocks : count(decode, stream.format));
        setDecoder(decode);
    }

    const OpenSettings& settings_;
    AudioFile file_;
};

AudioFile AudioFile::open(const std::string& path, const OpenSettings& settings) {
    return Opener(path, settings).open();
}

double AudioFile::ratio() const {
    return static_cast<double>(size_) / static_cast<double>(wave().totalSize());
}

std::uint64_t AudioFile::missingBytes() const {
    const std::uint64_t length = size_ - tagSize_;
    return isWav() && length < wave().totalSize() ? wave().totalSize() - length : 0;
}

std::uint64_t AudioFile::junkBytes() const {
    const std::uint64_t length = size_ - tagSize_;
    return isWav() && length > wave().totalSize() ? length - wave().totalSize() : 0;
}

std::uint64_t AudioFile::behindData() const {
    const std::uint64_t known = wave().headerSize + wave().dataSize;
    return wave().totalSize() > known ? wave().totalSize() - known : 0;
}

std::uint64_t AudioFile::extraChunks() const {
    return wave().hasExtraChunks() ? behindData() - wave().dataSize % 2 : 0;
}

std::unique_ptr<Reader> AudioFile::reader(Check check) const {
    return makeReader_(check);
}

} // namespace quav::shntool
