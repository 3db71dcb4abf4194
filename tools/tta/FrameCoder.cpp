#include "tta/FrameCoder.h"

#include "pcm/Failure.h"
#include "pcm/Samples.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>

using quav::pcm::Failure;

namespace quav::tta {

namespace {

// FFmpeg holds 24 bits in the upper bits of 32.
constexpr unsigned shiftOf24Bits = 8;

AVSampleFormat sampleFormat(unsigned bitsPerSample) {
    return bitsPerSample == 8    ? AV_SAMPLE_FMT_U8
           : bitsPerSample == 16 ? AV_SAMPLE_FMT_S16
                                 : AV_SAMPLE_FMT_S32;
}

template <typename Sample>
Sample* samplesOf(const libav::Frame& frame) {
    return reinterpret_cast<Sample*>(frame->data[0]);
}

libav::CodecContext open(const AVCodec* coder, libav::CodecContext context) {
    const int result = libav::codec().open(context.get(), coder, nullptr);
    if (result == AVERROR(ENOMEM)) {
        throw std::bad_alloc();
    }
    if (result < 0) {
        throw Failure(Failure::Kind::Unsupported, "FFmpeg's libavcodec cannot code such a stream");
    }
    return context;
}

libav::CodecContext contextFor(const AVCodec* coder) {
    if (coder == nullptr) {
        throw Failure(Failure::Kind::Unsupported, "FFmpeg's libavcodec was built without TTA");
    }
    return libav::makeContext(coder);
}

libav::CodecContext openEncoder(const Header& header) {
    const AVCodec* coder = libav::codec().findEncoder(AV_CODEC_ID_TTA);
    libav::CodecContext context = contextFor(coder);
    context->sample_fmt = sampleFormat(header.bitsPerSample);
    context->bits_per_raw_sample = static_cast<int>(header.bitsPerSample);
    context->sample_rate = static_cast<int>(header.sampleRate);
    context->time_base = {1, context->sample_rate};
    context->ch_layout.nb_channels = static_cast<int>(header.channels);
    return open(coder, std::move(context));
}

// The decoder takes the sizes of its memory from the sample rate, however short the stream is. For
// a stream of one frame a rate is told that makes just this frame whole.
Header withoutSpareRoom(Header header) {
    if (header.blocks < header.frameLength()) {
        header.sampleRate = sampleRateFor(header.blocks);
    }
    return header;
}

libav::CodecContext openDecoder(const Header& header) {
    const AVCodec* coder = libav::codec().findDecoder(AV_CODEC_ID_TTA);
    libav::CodecContext context = contextFor(coder);
    const std::array<std::uint8_t, headerSize> bytes = withoutSpareRoom(header).bytes();
    context->extradata = static_cast<std::uint8_t*>(
        libav::codec().mallocz(headerSize + AV_INPUT_BUFFER_PADDING_SIZE));
    if (context->extradata == nullptr) {
        throw std::bad_alloc();
    }
    std::copy(bytes.begin(), bytes.end(), context->extradata);
    context->extradata_size = headerSize;
    return open(coder, std::move(context));
}

} // namespace

FrameEncoder::FrameEncoder(const Header& header)
    : context_(openEncoder(header)), frame_(libav::makeFrame()), packet_(libav::makePacket()) {}

std::span<const std::uint8_t> FrameEncoder::encode(const pcm::PcmFormat& format,
                                                   std::span<const std::uint8_t> samples) {
    const libav::Codec& av = libav::codec();
    av.packetUnref(packet_.get());
    av.frameUnref(frame_.get());
    frame_->format = context_->sample_fmt;
    frame_->sample_rate = context_->sample_rate;
    frame_->ch_layout = context_->ch_layout;
    frame_->nb_samples = static_cast<int>(samples.size() / format.blockAlign());
    if (av.frameGetBuffer(frame_.get(), 0) < 0) {
        throw std::bad_alloc();
    }

    numbers_.resize(samples.size() / format.bytesPerSample);
    pcm::unpackSamples(format, samples, numbers_);
    switch (context_->sample_fmt) {
    case AV_SAMPLE_FMT_U8:
        std::transform(numbers_.begin(), numbers_.end(), samplesOf<std::uint8_t>(frame_),
                       [](std::int32_t number) { return static_cast<std::uint8_t>(number + 128); });
        break;
    case AV_SAMPLE_FMT_S16:
        std::transform(numbers_.begin(), numbers_.end(), samplesOf<std::int16_t>(frame_),
                       [](std::int32_t number) { return static_cast<std::int16_t>(number); });
        break;
    default:
        std::transform(numbers_.begin(), numbers_.end(), samplesOf<std::int32_t>(frame_),
                       [](std::int32_t number) { return number << shiftOf24Bits; });
    }
    if (av.sendFrame(context_.get(), frame_.get()) < 0 ||
        av.receivePacket(context_.get(), packet_.get()) < 0) {
        throw Failure(Failure::Kind::Memory, "FFmpeg's libavcodec cannot encode a frame");
    }
    return {packet_->data, static_cast<std::size_t>(packet_->size)};
}

FrameDecoder::FrameDecoder(const Header& header)
    : format_(header.wavFormat()), context_(openDecoder(header)), frame_(libav::makeFrame()),
      packet_(libav::makePacket()) {}

bool FrameDecoder::decode(std::span<const std::uint8_t> coded, std::uint32_t blocks,
                          std::vector<std::uint8_t>& samples) {
    const libav::Codec& av = libav::codec();
    av.packetUnref(packet_.get());
    if (av.newPacket(packet_.get(), static_cast<int>(coded.size())) < 0) {
        throw std::bad_alloc();
    }
    std::copy(coded.begin(), coded.end(), packet_->data);
    if (av.sendPacket(context_.get(), packet_.get()) < 0 ||
        av.receiveFrame(context_.get(), frame_.get()) < 0 ||
        frame_->nb_samples != static_cast<int>(blocks)) {
        return false;
    }
    samples.resize(blocks * format_.blockAlign());
    if (context_->sample_fmt == AV_SAMPLE_FMT_S32) {
        const std::span numbers(samplesOf<std::int32_t>(frame_),
                                std::size_t{blocks} * format_.channels);
        for (std::int32_t& number : numbers) {
            number >>= shiftOf24Bits;
        }
        pcm::packSamples(format_, numbers, samples);
    } else {
        std::memcpy(samples.data(), frame_->data[0], samples.size());
    }
    return true;
}

} // namespace quav::tta
