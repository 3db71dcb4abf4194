#include "shntool/Writer.h"

#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/Samples.h"
#include "audio/pcm/TemporaryFile.h"
#include "shntool/Child.h"

#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <system_error>
#include <utility>

namespace quav::shntool {

using pcm::Failure;

namespace {

using Bytes = std::span<const std::uint8_t>;

class NullWriter final : public Writer {
public:
    void write(Bytes) override {}
    void commit() override {}
};

pcm::Existing existing(bool mayReplace) {
    return mayReplace ? pcm::Existing::Replace : pcm::Existing::Keep;
}

pcm::OutputFile openFile(const std::string& path, bool mayReplace) {
    return pcm::OutputFile(path, pcm::OutputFile::Until::Nameless, existing(mayReplace));
}

class WavWriter final : public Writer {
public:
    WavWriter(const std::string& path, bool mayReplace, const WaveHeader& header)
        : file_(openFile(path, mayReplace)) {
        file_.write(header.bytes);
    }

    void write(Bytes bytes) override { file_.write(bytes); }
    void commit() override { file_.commit(); }

private:
    pcm::OutputFile file_;
};

// The big-endian numbers of AIFF ("Audio Interchange File Format AIFF-C", Apple 1991).
class BigEndianBytes {
public:
    void id(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void number(std::uint64_t value, unsigned width) {
        while (width-- > 0) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * width)));
        }
    }
    // An 80-bit floating-point number.
    void rate(std::uint32_t value) {
        const int shift = std::countl_zero(std::uint64_t{value});
        number(static_cast<std::uint64_t>(16383 + 63 - shift), 2);
        number(std::uint64_t{value} << shift, 8);
    }
    Bytes bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

class AiffWriter final : public Writer {
public:
    AiffWriter(const std::string& path, bool mayReplace, const WaveHeader& header)
        : file_(openFile(path, mayReplace)), from_(header.wave.format()), to_(from_),
          left_(header.wave.dataSize - header.wave.dataSize % from_.blockAlign()) {
        to_.bigEndian = true;
        to_.isUnsigned = false;
        const std::uint64_t padded = left_ + left_ % 2;
        if (padded > 0xFFFFFFFF - 100) {
            throw Failure(Failure::Kind::Unsupported, path + ": AIFF ends at 4 GiB");
        }
        pads_ = left_ % 2 == 1;
        BigEndianBytes bytes;
        bytes.id("FORM");
        bytes.number(4 + 8 + 18 + 8 + 8 + padded, 4);
        bytes.id("AIFFCOMM");
        bytes.number(18, 4);
        bytes.number(from_.channels, 2);
        bytes.number(left_ / from_.blockAlign(), 4);
        bytes.number(from_.bitsPerSample, 2);
        bytes.rate(from_.sampleRate);
        bytes.id("SSND");
        bytes.number(8 + left_, 4);
        bytes.number(0, 8); // no offset, no blocks
        file_.write(bytes.bytes());
    }

    void write(Bytes bytes) override {
        // What follows the samples belongs to WAV files alone.
        bytes = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), left_)));
        left_ -= bytes.size();
        waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
        const std::size_t whole = waiting_.size() - waiting_.size() % from_.blockAlign();
        samples_.resize(whole / from_.bytesPerSample);
        pcm::unpackSamples(from_, Bytes(waiting_).first(whole), samples_);
        turned_.resize(whole);
        pcm::packSamples(to_, samples_, turned_);
        file_.write(turned_);
        waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(whole));
    }

    void commit() override {
        if (pads_) {
            constexpr std::uint8_t zero = 0;
            file_.write({&zero, 1});
        }
        file_.commit();
    }

private:
    pcm::OutputFile file_;
    pcm::PcmFormat from_;
    pcm::PcmFormat to_;
    std::uint64_t left_; // bytes of samples to come
    bool pads_ = false;
    std::vector<std::uint8_t> waiting_; // an incomplete block
    std::vector<std::int32_t> samples_;
    std::vector<std::uint8_t> turned_;
};

// A header that every encoder takes: WAVE_FORMAT_EXTENSIBLE where channels need speakers only.
WaveHeader headerForEncoders(const WaveHeader& header) {
    constexpr std::uint16_t plainTag = 1;
    return header.wave.formatTag == plainTag && pcm::startsWith(header.bytes, "RIFF")
               ? header
               : canonicalHeader(header.wave.format(), header.wave.dataSize);
}

class EncoderWriter final : public Writer {
public:
    EncoderWriter(const OutputFormat& format, const std::string& path, bool mayReplace,
                  const WaveHeader& header)
        : name_(path), place_(pcm::OutputPlace::find(path, existing(mayReplace))),
          folder_(pcm::folderOf(place_.path), path),
          // The name ends like the final one: some encoders choose what they write by it.
          temporary_(folder_.pathOf("output." + format.extension)),
          header_(headerForEncoders(header).bytes), samplesLeft_(header.wave.dataSize) {
        const pcm::SignalsHeld held;
        child_.emplace(withFile(format.encoder, temporary_), Child::Pipe::ToInput);
        pcm::TemporaryFolder::setWriter(child_->process());
    }
    ~EncoderWriter() override {
        // The temporary file must not come back when it has been removed.
        const pcm::SignalsHeld held;
        child_.reset();
        pcm::TemporaryFolder::setWriter(0);
    }

    void write(Bytes bytes) override {
        writeHeader();
        const bool isBehind = samplesLeft_ == 0;
        samplesLeft_ -= std::min<std::uint64_t>(samplesLeft_, bytes.size());
        try {
            pcm::writeAll(child_->fd(), bytes, name_);
        } catch (const pcm::ReaderGone&) {
            // Some encoders end when they have the samples. Whether all is well they tell then.
            if (!isBehind) {
                throw;
            }
        }
    }

    void commit() override {
        writeHeader();
        if (waitForEncoder(true) != 0) {
            throw Failure(Failure::Kind::Write, name_ + ": the encoder failed");
        }
        if (place_.mode) {
            ::chmod(temporary_.c_str(), *place_.mode); // as good as it can be kept
        }
        if (!pcm::giveName(temporary_, place_.path, place_.mode.has_value())) {
            throw Failure(Failure::Kind::Write,
                          name_ + ": cannot be created: " + std::generic_category().message(errno));
        }
    }

    std::optional<Ended> failedEncoder() override {
        if (!ended_) {
            waitForEncoder(false);
        }
        return ended_->status != 0 ? ended_ : std::nullopt;
    }

private:
    int waitForEncoder(bool hadAll) {
        const int process = child_->process();
        const int status = child_->wait();
        pcm::TemporaryFolder::setWriter(0);
        ended_ = {process, status, hadAll};
        return status;
    }

    void writeHeader() {
        const std::vector<std::uint8_t> header = std::exchange(header_, {});
        pcm::writeAll(child_->fd(), header, name_);
    }

    std::string name_;
    pcm::OutputPlace place_;
    pcm::TemporaryFolder folder_;
    std::string temporary_; // what the encoder makes there
    std::optional<Child> child_;
    std::vector<std::uint8_t> header_; // until it has been written
    std::uint64_t samplesLeft_;        // bytes to come
    std::optional<Ended> ended_;       // when it has been waited for
};

} // namespace

std::unique_ptr<Writer> openWriter(const OutputFormat& format, const std::string& path,
                                   bool mayReplace, const WaveHeader& header) {
    if (format.name == "null") {
        return std::make_unique<NullWriter>();
    }
    if (!format.encoder.empty()) {
        return std::make_unique<EncoderWriter>(format, path, mayReplace, header);
    }
    if (format.name == "aiff") {
        return std::make_unique<AiffWriter>(path, mayReplace, header);
    }
    return std::make_unique<WavWriter>(format.name == "term" ? "-" : path, mayReplace, header);
}

} // namespace quav::shntool
