#include "audio/flac/FlacDecoding.h"

#include "audio/flac/StreamInfo.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/Samples.h"
#include "audio/pcm/TimeText.h"

#include <FLAC/metadata.h>
#include <FLAC/stream_decoder.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

namespace quav::flac {

using pcm::Failure;

namespace {

using Decoder = std::unique_ptr<FLAC__StreamDecoder, decltype(&FLAC__stream_decoder_delete)>;

// One file on its way through libFLAC. No exception may run through that: it is kept and thrown
// behind.
class Decoding {
public:
    Decoding(const std::string& path, const pcm::PcmFormat& format, pcm::ByteSink& to)
        : file_(pcm::InputFile::open(path)), format_(format), to_(to) {}

    void run(bool checksDigest) {
        if (!decoder_) {
            throw std::bad_alloc();
        }
        FLAC__stream_decoder_set_md5_checking(decoder_.get(), checksDigest ? 1 : 0);
        const auto status = FLAC__stream_decoder_init_stream(
            decoder_.get(), read, nullptr, nullptr, nullptr, nullptr, write, nullptr, fail, this);
        if (status != FLAC__STREAM_DECODER_INIT_STATUS_OK) {
            throw std::bad_alloc();
        }
        const bool isDecoded =
            FLAC__stream_decoder_process_until_end_of_stream(decoder_.get()) != 0;
        if (error_) {
            std::rethrow_exception(error_);
        }
        if (!isDecoded || isDamaged_) {
            throw Failure(Failure::Kind::Input, file_.name() + ": is damaged near " +
                                                    pcm::timeText(blocks_, format_.sampleRate));
        }
        if (FLAC__stream_decoder_finish(decoder_.get()) == 0) {
            throw pcm::DigestMismatch(file_.name() +
                                      ": is damaged: its samples do not match its MD5");
        }
    }

private:
    static FLAC__StreamDecoderReadStatus read(const FLAC__StreamDecoder*, FLAC__byte* to,
                                              std::size_t* count, void* decoding) {
        auto* const self = static_cast<Decoding*>(decoding);
        try {
            *count = self->file_.read({to, *count});
        } catch (...) {
            self->error_ = std::current_exception();
            return FLAC__STREAM_DECODER_READ_STATUS_ABORT;
        }
        return *count == 0 ? FLAC__STREAM_DECODER_READ_STATUS_END_OF_STREAM
                           : FLAC__STREAM_DECODER_READ_STATUS_CONTINUE;
    }

    static FLAC__StreamDecoderWriteStatus write(const FLAC__StreamDecoder*,
                                                const FLAC__Frame* frame,
                                                const FLAC__int32* const* channels,
                                                void* decoding) {
        auto* const self = static_cast<Decoding*>(decoding);
        const pcm::PcmFormat& format = self->format_;
        if (self->isDamaged_ || frame->header.channels != format.channels ||
            frame->header.bits_per_sample != format.bitsPerSample ||
            frame->header.sample_rate != format.sampleRate) {
            self->isDamaged_ = true;
            return FLAC__STREAM_DECODER_WRITE_STATUS_ABORT;
        }
        try {
            self->writeFrame(channels, frame->header.blocksize);
        } catch (...) {
            self->error_ = std::current_exception();
            return FLAC__STREAM_DECODER_WRITE_STATUS_ABORT;
        }
        return FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE;
    }

    static void fail(const FLAC__StreamDecoder*, FLAC__StreamDecoderErrorStatus, void* decoding) {
        static_cast<Decoding*>(decoding)->isDamaged_ = true;
    }

    void writeFrame(const FLAC__int32* const* channels, std::size_t blocks) {
        const unsigned count = format_.channels;
        const unsigned shift = format_.containerBits() - format_.bitsPerSample;
        samples_.resize(blocks * count);
        for (unsigned channel = 0; channel < count; ++channel) {
            const FLAC__int32* const from = channels[channel];
            for (std::size_t i = 0; i < blocks; ++i) {
                samples_[i * count + channel] = from[i] << shift;
            }
        }
        bytes_.resize(blocks * format_.blockAlign());
        pcm::packSamples(format_, samples_, bytes_);
        to_.write(bytes_);
        blocks_ += blocks;
    }

    Decoder decoder_{FLAC__stream_decoder_new(), FLAC__stream_decoder_delete};
    pcm::InputFile file_;
    pcm::PcmFormat format_;
    pcm::ByteSink& to_;
    std::uint64_t blocks_ = 0;
    bool isDamaged_ = false;
    std::exception_ptr error_;
    std::vector<std::int32_t> samples_;
    std::vector<std::uint8_t> bytes_;
};

// The speakers of many channels, which a comment tells as the one of WAVE_FORMAT_EXTENSIBLE would;
// 0 when none does.
std::uint32_t speakerMask(const std::string& path) {
    constexpr std::string_view field = "WAVEFORMATEXTENSIBLE_CHANNEL_MASK=";
    FLAC__StreamMetadata* tags = nullptr;
    if (FLAC__metadata_get_tags(path.c_str(), &tags) == 0) {
        return 0;
    }
    std::uint32_t mask = 0;
    const FLAC__StreamMetadata_VorbisComment& comment = tags->data.vorbis_comment;
    for (FLAC__uint32 i = 0; i < comment.num_comments; ++i) {
        const FLAC__StreamMetadata_VorbisComment_Entry& entry = comment.comments[i];
        const std::string text(reinterpret_cast<const char*>(entry.entry), entry.length);
        if (text.starts_with(field)) {
            mask =
                static_cast<std::uint32_t>(std::strtoul(text.c_str() + field.size(), nullptr, 0));
        }
    }
    FLAC__metadata_object_delete(tags);
    return mask;
}

} // namespace

FlacStream readFlacStream(const std::string& path) {
    const pcm::InputFile file = pcm::InputFile::open(path);
    const std::optional<StreamInfo> info = readStreamInfo(file);
    if (!info) {
        throw Failure(Failure::Kind::Input, path + ": is damaged: it has no STREAMINFO");
    }
    if (info->sampleRate == 0 || info->bits < 4) {
        throw Failure(Failure::Kind::Input, path + ": is damaged: its STREAMINFO is wrong");
    }
    const unsigned bytes = (info->bits + 7) / 8;
    FlacStream stream{.format = {.channels = info->channels,
                                 .bitsPerSample = info->bits,
                                 .bytesPerSample = bytes,
                                 .sampleRate = info->sampleRate,
                                 .isUnsigned = bytes == 1},
                      .blocks = info->total,
                      .digest = info->digest};
    if (info->channels > 2) {
        stream.format.channelMask = speakerMask(path);
    }
    return stream;
}

void decodeFlac(const std::string& path, const pcm::PcmFormat& format, bool checksDigest,
                pcm::ByteSink& to) {
    Decoding(path, format, to).run(checksDigest);
}

} // namespace quav::flac
