#include "ape/OldVersions.h"

#include "libav/LibAv.h"
#include "pcm/Bytes.h"
#include "pcm/Failure.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>

namespace quav::ape {

using pcm::Failure;

namespace {

// Lets FFmpeg read a file as if it began with the stream.
class Source {
public:
    explicit Source(const ApeFile& file)
        : input_(file.input()), start_(file.start()), size_(*file.input().size() - file.start()) {}

    static int read(void* source, std::uint8_t* to, int count) {
        auto* const self = static_cast<Source*>(source);
        try {
            const std::size_t got = self->input_.readAt(
                self->start_ + self->position_, std::span(to, static_cast<std::size_t>(count)));
            self->position_ += got;
            return got == 0 ? AVERROR_EOF : static_cast<int>(got);
        } catch (const Failure&) {
            return AVERROR(EIO); // An exception must not run through C.
        }
    }

    static std::int64_t seek(void* source, std::int64_t offset, int whence) {
        auto* const self = static_cast<Source*>(source);
        if ((whence & AVSEEK_SIZE) != 0) {
            return static_cast<std::int64_t>(self->size_);
        }
        if (whence == SEEK_CUR) {
            offset += static_cast<std::int64_t>(self->position_);
        } else if (whence == SEEK_END) {
            offset += static_cast<std::int64_t>(self->size_);
        }
        if (offset < 0) {
            return AVERROR(EINVAL);
        }
        self->position_ = static_cast<std::uint64_t>(offset);
        return offset;
    }

private:
    const pcm::InputFile& input_;
    std::uint64_t start_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
};

// Both libraries at work on one file.
class Reader {
public:
    explicit Reader(const ApeFile& file) : file_(file), source_(file) {
        openFormat();
        openDecoder();
    }

    // Decodes the next frame; false when it is damaged.
    bool decode(std::uint32_t blocks, DecodedFrame& to) {
        to.size = 0;
        blocksLeft_ = blocks;
        codec_.packetUnref(packet_.get());
        if (format_.readFrame(demuxer_.get(), packet_.get()) < 0) {
            return false;
        }
        if (codec_.sendPacket(decoder_.get(), packet_.get()) < 0) {
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
    [[noreturn]] void refuse() const {
        throw Failure(Failure::Kind::Input,
                      file_.input().name() + ": is damaged: its header contradicts itself");
    }

    void openFormat() {
        constexpr int bufferSize = 32 << 10;
        void* const buffer = codec_.mallocz(bufferSize);
        if (buffer == nullptr) {
            throw std::bad_alloc();
        }
        io_.reset(format_.allocIo(static_cast<unsigned char*>(buffer), bufferSize, 0, &source_,
                                  Source::read, nullptr, Source::seek));
        AVFormatContext* context = format_.allocContext();
        if (!io_ || context == nullptr) {
            throw std::bad_alloc();
        }
        context->pb = io_.get();
        // A failure frees the context.
        if (format_.openInput(&context, "", format_.findInputFormat("ape"), nullptr) < 0) {
            refuse();
        }
        demuxer_.reset(context);
    }

    void openDecoder() {
        decoder_ = libav::makeContext(codec_.findDecoder(AV_CODEC_ID_APE));
        // Without these a frame with a wrong checksum would pass.
        decoder_->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;
        if (codec_.toContext(decoder_.get(), demuxer_->streams[0]->codecpar) < 0 ||
            codec_.open(decoder_.get(), nullptr, nullptr) < 0) {
            refuse();
        }
    }

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
    Source source_;
    const libav::Codec& codec_ = libav::codec();
    const libav::Format& format_ = libav::format();
    libav::IoContext io_;
    libav::FormatContext demuxer_;
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
