#include "audio/ape/OldVersions.h"

#include "audio/libav/Demuxer.h"
#include "audio/pcm/Bytes.h"

#include <algorithm>

namespace quav::ape {

namespace {

// FFmpeg's libraries at work on one file.
class Reader {
public:
    explicit Reader(const ApeFile& file)
        : file_(file), demuxer_(file.input(), file.start(), "ape"),
          decoder_(demuxer_.openDecoder(*demuxer_.streams().front())) {}

    // Decodes the next frame; false when it is damaged.
    bool decode(std::uint32_t blocks, DecodedFrame& to) {
        to.size = 0;
        blocksLeft_ = blocks;
        if (!demuxer_.read(*packet_) || codec_.sendPacket(decoder_.get(), packet_.get()) < 0) {
            return false;
        }
        while (true) {
            const int status = codec_.receiveFrame(decoder_.get(), frame_.get());
            if (status == AVERROR(EAGAIN)) {
                return blocksLeft_ == 0;
            }
            if (status < 0 || !append(to)) {
                return false;
            }
        }
    }

private:
    // Takes over a part of a frame; false when it is not of the kind that the header promises.
    bool append(DecodedFrame& to) {
        const pcm::PcmFormat& format = file_.format();
        const auto blocks = static_cast<std::size_t>(frame_->nb_samples);
        if (blocks > blocksLeft_ ||
            static_cast<unsigned>(frame_->ch_layout.nb_channels) != format.channels) {
            return false;
        }
        blocksLeft_ -= blocks;
        const std::size_t start = to.size;
        to.size += blocks * format.blockAlign();
        to.bytes.resize(std::max(to.bytes.size(), to.size));
        const std::size_t width = format.bytesPerSample;
        for (unsigned channel = 0; channel < format.channels; ++channel) {
            const std::uint8_t* const plane = frame_->extended_data[channel];
            for (std::size_t i = 0; i < blocks; ++i) {
                const std::size_t at = start + (i * format.channels + channel) * width;
                pcm::storeLittleEndian(std::span(to.bytes).subspan(at, width), sampleAt(plane, i));
            }
        }
        return true;
    }

    std::uint64_t sampleAt(const std::uint8_t* plane, std::size_t i) const {
        switch (frame_->format) {
        case AV_SAMPLE_FMT_U8P:
            return plane[i];
        case AV_SAMPLE_FMT_S16P:
            return static_cast<std::uint64_t>(reinterpret_cast<const std::int16_t*>(plane)[i]);
        default: // 24 bits, in the upper ones of 32
            return static_cast<std::uint64_t>(reinterpret_cast<const std::int32_t*>(plane)[i] >> 8);
        }
    }

    const ApeFile& file_;
    const libav::Codec& codec_ = libav::codec();
    libav::Demuxer demuxer_;
    libav::CodecContext decoder_;
    libav::Packet packet_ = libav::makePacket();
    libav::Frame frame_ = libav::makeFrame();
    std::size_t blocksLeft_ = 0;
};

} // namespace

void decodeOldFrames(const ApeFile& file, const Advance& advance, const FrameHandler& handle) {
    Reader reader(file);
    DecodedFrame samples;
    for (std::uint32_t frame = 0; frame < file.frameCount(); ++frame) {
        const std::uint32_t blocks = file.frameBlocks(frame);
        const bool sound = reader.decode(blocks, samples);
        handle(frame, sound ? &samples : nullptr);
        if (advance) {
            advance(blocks);
        }
    }
}

} // namespace quav::ape
