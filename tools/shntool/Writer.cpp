#include "shntool/Writer.h"

#include "audio/pcm/AiffSink.h"
#include "audio/pcm/Bytes.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/TemporaryFile.h"
#include "shntool/Child.h"

#include <sys/stat.h>

#include <algorithm>
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

// What follows the samples belongs to WAV files alone.
class AiffWriter final : public Writer {
public:
    AiffWriter(const std::string& path, bool mayReplace, const WaveHeader& header)
        : file_(openFile(path, mayReplace)),
          samples_(file_, header.wave.format(), header.wave.dataSize, path) {}

    void write(Bytes bytes) override { samples_.write(bytes); }
    void commit() override {
        samples_.finish();
        file_.commit();
    }

private:
    pcm::OutputFile file_;
    pcm::AiffSink samples_;
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
