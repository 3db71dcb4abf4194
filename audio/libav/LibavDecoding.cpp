#include "audio/libav/LibavDecoding.h"

#include "audio/libav/Demuxer.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/Samples.h"
#include "audio/pcm/TimeText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <vector>

namespace quav::libav {

using pcm::Failure;

namespace {

constexpr std::array losslessCodecs{AV_CODEC_ID_ALAC, AV_CODEC_ID_WAVPACK};

const AVStream& audioStream(const Demuxer& demuxer, const std::string& file) {
    for (const AVStream* const stream : demuxer.streams()) {
        const AVCodecID codec = stream->codecpar->codec_id;
        if (std::find(losslessCodecs.begin(), losslessCodecs.end(), codec) !=
            losslessCodecs.end()) {
            return *stream;
        }
    }
    throw Failure(Failure::Kind::Unsupported, file + ": holds no sound without loss");
}

unsigned sampleBits(const AVCodecParameters& codec) {
    constexpr std::size_t bitsInCookie = 17; // of Apple's decoder configuration, a byte
    if (codec.codec_id == AV_CODEC_ID_ALAC &&
        codec.extradata_size > static_cast<int>(bitsInCookie)) {
        return codec.extradata[bitsInCookie];
    }
    return static_cast<unsigned>(std::max(codec.bits_per_raw_sample, codec.bits_per_coded_sample));
}

// One stream on its way through a decoder.
class Decoding {
public:
    Decoding(const pcm::InputFile& input, std::uint64_t start, const char* demuxer,
             const pcm::PcmFormat& format, pcm::ByteSink& to)
        : name_(input.name()), demuxer_(input, start, demuxer),
          stream_(audioStream(demuxer_, name_)),
          decoder_(demuxer_.openDecoder(stream_, format.bytesPerSample > 2 ? AV_SAMPLE_FMT_S32
                                                                           : AV_SAMPLE_FMT_S16)),
          format_(format), to_(to) {}

    void run() {
        while (demuxer_.read(*packet_)) {
            if (packet_->stream_index == stream_.index) {
                send(packet_.get());
            }
        }
        send(nullptr);
    }

private:
    [[noreturn]] void damaged() const {
        throw Failure(Failure::Kind::Input,
                      name_ + ": is damaged near " + pcm::timeText(blocks_, format_.sampleRate));
    }

    void send(const AVPacket* packet) {
        if (codec_.sendPacket(decoder_.get(), packet) < 0) {
            damaged();
        }
        while (true) {
            const int status = codec_.receiveFrame(decoder_.get(), frame_.get());
            if (status == AVERROR(EAGAIN) || status == AVERROR_EOF) {
                return;
            }
            if (status < 0 ||
                static_cast<unsigned>(frame_->ch_layout.nb_channels) != format_.channels) {
                damaged();
            }
            write();
        }
    }

    void write() {
        const auto blocks = static_cast<std::size_t>(frame_->nb_samples);
        blocks_ += blocks;
        const bool isWavAlready =
            std::endian::native == std::endian::little &&
            ((frame_->format == AV_SAMPLE_FMT_S16 && format_.bytesPerSample == 2) ||
             (frame_->format == AV_SAMPLE_FMT_S32 && format_.bytesPerSample == 4));
        if (isWavAlready) {
            return to_.write({frame_->extended_data[0], blocks * format_.blockAlign()});
        }
        samples_.resize(blocks * format_.channels);
        switch (frame_->format) {
        case AV_SAMPLE_FMT_U8P:
            return interleave<std::uint8_t>(blocks, 8);
        case AV_SAMPLE_FMT_S16:
        case AV_SAMPLE_FMT_S16P:
            return interleave<std::int16_t>(blocks, 16);
        case AV_SAMPLE_FMT_S32:
        case AV_SAMPLE_FMT_S32P:
            return interleave<std::int32_t>(blocks, 32);
        default:
            throw Failure(Failure::Kind::Unsupported, name_ + ": holds floating-point samples");
        }
    }

    // The decoder's numbers lie in the upper bits of their type, ours in those of the container.
    template <typename Sample>
    void interleave(std::size_t blocks, unsigned bits) {
        const unsigned channels = format_.channels;
        const bool isPlanar = frame_->format == AV_SAMPLE_FMT_U8P ||
                              frame_->format == AV_SAMPLE_FMT_S16P ||
                              frame_->format == AV_SAMPLE_FMT_S32P;
        const int shift = static_cast<int>(bits) - static_cast<int>(format_.containerBits());
        const int offset = bits == 8 ? 128 : 0;
        for (unsigned channel = 0; channel < channels; ++channel) {
            const auto* const from = reinterpret_cast<const Sample*>(
                isPlanar ? frame_->extended_data[channel] : frame_->extended_data[0]);
            const std::size_t step = isPlanar ? 1 : channels;
            const std::size_t first = isPlanar ? 0 : channel;
            for (std::size_t i = 0; i < blocks; ++i) {
                const std::int32_t value = std::int32_t{from[first + i * step]} - offset;
                samples_[i * channels + channel] = shift >= 0 ? value >> shift : value << -shift;
            }
        }
        bytes_.resize(samples_.size() * format_.bytesPerSample);
        pcm::packSamples(format_, samples_, bytes_);
        to_.write(bytes_);
    }

    std::string name_;
    const Codec& codec_ = codec();
    Demuxer demuxer_;
    const AVStream& stream_;
    CodecContext decoder_;
    pcm::PcmFormat format_;
    pcm::ByteSink& to_;
    Packet packet_ = makePacket();
    Frame frame_ = makeFrame();
    std::uint64_t blocks_ = 0;
    std::vector<std::int32_t> samples_;
    std::vector<std::uint8_t> bytes_;
};

} // namespace

LibavStream findLibavStream(const pcm::InputFile& input, std::uint64_t start,
                            const char* demuxerName) {
    const Demuxer demuxer(input, start, demuxerName);
    const AVStream& stream = audioStream(demuxer, input.name());
    const AVCodecParameters& codec = *stream.codecpar;
    const unsigned bits = sampleBits(codec);
    if (bits < 1 || bits > 32 || codec.sample_rate <= 0 || codec.ch_layout.nb_channels <= 0) {
        throw Failure(Failure::Kind::Input,
                      input.name() + ": is damaged: its header contradicts itself");
    }
    const unsigned bytes = (bits + 7) / 8;
    LibavStream found{.format = {.channels = static_cast<unsigned>(codec.ch_layout.nb_channels),
                                 .bitsPerSample = bits,
                                 .bytesPerSample = bytes,
                                 .sampleRate = static_cast<std::uint32_t>(codec.sample_rate),
                                 .isUnsigned = bytes == 1}};
    if (codec.ch_layout.order == AV_CHANNEL_ORDER_NATIVE) {
        found.format.channelMask = static_cast<std::uint32_t>(codec.ch_layout.u.mask);
    }
    // A file that an edit list makes shorter is only as long as what comes out of the decoder.
    const Demuxer whole(input, start, demuxerName, Demuxer::Edits::Ignore);
    const bool isWhole = audioStream(whole, input.name()).duration == stream.duration;
    if (stream.duration > 0 && isWhole) {
        // Lossless files count in blocks, or in fractions that come out even.
        const long double seconds =
            static_cast<long double>(stream.duration) * stream.time_base.num / stream.time_base.den;
        found.blocks = static_cast<std::uint64_t>(std::llroundl(seconds * codec.sample_rate));
    }
    return found;
}

void decodeWithLibav(const pcm::InputFile& input, std::uint64_t start, const char* demuxer,
                     const pcm::PcmFormat& format, pcm::ByteSink& to) {
    Decoding(input, start, demuxer, format, to).run();
}

} // namespace quav::libav
