#include "audio/file/AudioFile.h"

#include "audio/ape/ApeDecoder.h"
#include "audio/ape/ApeFile.h"
#include "audio/file/Completeness.h"
#include "audio/file/SampleStreams.h"
#include "audio/flac/FlacDecoding.h"
#include "audio/flac/LastFrame.h"
#include "audio/libav/LibavDecoding.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Progress.h"
#include "audio/pcm/SoundBehind.h"
#include "audio/shorten/Decoder.h"
#include "audio/tta/Decode.h"
#include "audio/tta/Stream.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace quav::audio {

using flac::decodeFlac;
using flac::FlacStream;
using flac::readFlacStream;
using libav::decodeWithLibav;
using libav::findLibavStream;
using libav::LibavStream;
using pcm::Decode;
using pcm::Failure;
using pcm::InputFile;
using pcm::Reader;
using pcm::readerOf;
using wav::canonicalHeader;
using wav::readWaveHeader;
using wav::resizedHeader;
using wav::Wave;

using Bytes = std::span<const std::uint8_t>;

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
        const auto decoder =
            settings_.otherDecoder ? settings_.otherDecoder(file_.format_, path()) : std::nullopt;
        if (decoder) {
            openWith(*decoder);
            file_.leftOut_ = leftOutByOthers();
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

    void openWith(const OtherDecoder& decoder) {
        const std::unique_ptr<Reader> reader = decoder.start();
        try {
            file_.header_ = headerFrom(*reader, path(), settings_.foundChunk);
        } catch (const Failure& failure) {
            if (failure.kind() == Failure::Kind::Unsupported) {
                throw;
            }
            throw Failure(Failure::Kind::Input, "no WAVE data from decoder: [" + decoder.name +
                                                    "] for file: [" + path() + "]");
        }
        if (isUnknown(file_.wave().dataSize)) {
            CountingSink count; // the decoder cannot tell on a pipe either
            copyAll(*reader, count);
            file_.header_ = resizedHeader(file_.header_, wholeBlocks(count.count()), 0);
        }
        file_.makeReader_ = [decoder, path = path()](AudioFile::Check) {
            std::unique_ptr<Reader> again = decoder.start();
            headerFrom(*again, path);
            return again;
        };
    }

    void openOurselves(InputFile& input) {
        if (file_.format_ == "wav") {
            openWav(input);
        } else if (file_.format_ == "aiff") {
            openAiff(input);
        } else if (file_.format_ == "shn") {
            openShn(input);
        } else if (file_.format_ == "ape") {
            openApe(input);
        } else if (file_.format_ == "tta") {
            openTta(input);
        } else if (file_.format_ == "flac") {
            openFlac(input);
        } else {
            openWithLibav(input, file_.format_ == "wv" ? "wv" : "mov");
        }
    }

    // Whatever is wrong beside that, the decoder has to tell.
    std::optional<std::string> leftOutByOthers() const {
        try {
            return soundLeftOut(path(), ReadBy::Others);
        } catch (const Failure&) {
            return {};
        }
    }

    // What recorders that write to a pipe put where the size belongs.
    static bool isUnknown(std::uint64_t size) { return size == 0xFFFFFFFF; }

    std::uint64_t wholeBlocks(std::uint64_t bytes) const {
        return bytes - bytes % file_.wave().format().blockAlign();
    }

    void openWav(const InputFile& input) {
        FileReader reader(path(), file_.tagSize_);
        file_.header_ = headerFrom(reader, path(), settings_.foundChunk);
        const Wave& wave = file_.wave();
        const std::uint64_t start = file_.tagSize_ + wave.headerSize;
        const std::uint64_t told = wave.dataSize;
        const pcm::SoundExtent extent = extentOfData(
            input, {.from = start,
                    .bytes = told,
                    .isLong = told != pcm::littleEndian(Bytes(file_.header_.bytes).last(4)),
                    .blockAlign = wave.format().blockAlign()});
        file_.leftOut_ = extent.leftOut;
        if (extent.isUnknown) {
            // A recorder that wrote to a pipe: the samples go on to the end.
            file_.header_ = resizedHeader(file_.header_, wholeBlocks(extent.bytes), 0);
        } else if (extent.bytes != told) {
            const std::uint64_t end = start + extent.bytes + extent.bytes % 2;
            file_.header_ = resizedHeader(file_.header_, extent.bytes,
                                          file_.size_ - std::min(file_.size_, end));
        }
        file_.makeReader_ = [path = path(), start](AudioFile::Check) {
            return std::make_unique<FileReader>(path, start);
        };
    }

    void describe(const pcm::PcmFormat& format, std::uint64_t blocks) {
        file_.header_ = canonicalHeader(format, blocks * format.blockAlign());
    }

    // `decode` writes the samples; it is told whether to compare their digest.
    void setDecoder(std::function<void(bool checksDigest, pcm::ByteSink&)> decode) {
        file_.makeReader_ = [decode = std::move(decode), path = path(),
                             size = file_.wave().dataSize](AudioFile::Check check) {
            return readerOf([=](pcm::ByteSink& to) {
                ExactSink samples(path, size, to);
                decode(check == AudioFile::Check::Everything, samples);
                samples.finish();
            });
        };
    }

    void openAiff(InputFile& input) {
        const pcm::PcmReader reader(input);
        file_.leftOut_ = reader.soundLeftOut();
        pcm::PcmFormat format = reader.format();
        format.bigEndian = false;
        format.isUnsigned = format.bytesPerSample == 1;
        describe(format, reader.blocks().value_or(0));
        setDecoder(
            [path = path(), format](bool, pcm::ByteSink& to) { writeAiff(path, format, to); });
    }

    void openShn(InputFile& input) {
        const shorten::Decoder decoder(input);
        file_.header_ = readWaveHeader(decoder.header(), path());
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
        file_.header_ = readWaveHeader(ape.wavHeader(), path());
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
            const Wave wave = readWaveHeader(ape.wavHeader(), path()).wave;
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
        setDecoder([path = path()](bool, pcm::ByteSink& to) {
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
        try {
            decode(sink);
        } catch (const pcm::DigestMismatch&) {
            // Whoever reads the samples is told.
        }
        return sink.count() / format.blockAlign();
    }

    void openFlac(const InputFile& input) {
        file_.leftOut_ = flac::soundLeftOut(input);
        const FlacStream stream = readFlacStream(path());
        // The digest is over samples as a WAV file has them only for whole bytes with a sign.
        const unsigned bits = stream.format.bitsPerSample;
        if (stream.digest != pcm::Md5Digest{} && bits % 8 == 0 && bits > 8) {
            file_.storedDigest_ = stream.digest;
        }
        const auto decode = [path = path(), format = stream.format,
                             isComparable = file_.storedDigest_.has_value()](bool checksDigest,
                                                                             pcm::ByteSink& to) {
            decodeFlac(path, format, checksDigest || !isComparable, to);
        };
        const auto decodeAll = [&](pcm::ByteSink& to) { decode(true, to); };
        const bool isLearned = stream.blocks == 0 && settings_.learnsLength;
        describe(stream.format, isLearned ? count(decodeAll, stream.format) : stream.blocks);
        setDecoder(decode);
    }

    void openWithLibav(const InputFile& input, const char* demuxer) {
        const std::uint64_t start = file_.tagSize_;
        if (file_.format_ == "wv") {
            checkWavPack(input);
        }
        const LibavStream stream = findLibavStream(input, start, demuxer);
        const auto decode = [=, path = path(), format = stream.format](bool, pcm::ByteSink& to) {
            decodeWithLibav(InputFile::open(path), start, demuxer, format, to);
        };
        const auto decodeAll = [&](pcm::ByteSink& to) { decode(true, to); };
        const bool isLearned = stream.blocks == 0 && settings_.learnsLength;
        describe(stream.format, isLearned ? count(decodeAll, stream.format) : stream.blocks);
        setDecoder(decode);
    }

    // WavPack also packs floating-point numbers and the bits of DSD; the flags in its block header
    // tell (WavPack 5 file format).
    void checkWavPack(const InputFile& input) const {
        std::array<std::uint8_t, 28> head{};
        input.readAt(file_.tagSize_, head);
        constexpr std::uint64_t isFloatOrDsd = 0x80000080;
        if ((pcm::littleEndian(Bytes(head).subspan(24)) & isFloatOrDsd) != 0) {
            throw Failure(Failure::Kind::Unsupported,
                          path() + ": holds floating-point samples or DSD");
        }
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

} // namespace quav::audio
