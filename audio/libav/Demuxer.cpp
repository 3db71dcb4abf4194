#include "audio/libav/Demuxer.h"

#include "audio/pcm/Failure.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>

namespace quav::libav {

// Lets FFmpeg read a file as if it began with the stream.
class Demuxer::Source {
public:
    Source(const pcm::InputFile& input, std::uint64_t start)
        : input_(input), start_(start), size_(*input.size() - std::min(*input.size(), start)) {}

    static int read(void* source, std::uint8_t* to, int count) {
        auto* const self = static_cast<Source*>(source);
        try {
            const std::size_t got = self->input_.readAt(
                self->start_ + self->position_, std::span(to, static_cast<std::size_t>(count)));
            self->position_ += got;
            return got == 0 ? AVERROR_EOF : static_cast<int>(got);
        } catch (const pcm::Failure&) {
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

Demuxer::Demuxer(const pcm::InputFile& input, std::uint64_t start, const char* format, Edits edits)
    : input_(input), source_(std::make_unique<Source>(input, start)) {
    constexpr int bufferSize = 64 << 10;
    void* const buffer = codec().mallocz(bufferSize);
    if (buffer == nullptr) {
        throw std::bad_alloc();
    }
    io_.reset(libav::format().allocIo(static_cast<unsigned char*>(buffer), bufferSize, 0,
                                      source_.get(), Source::read, nullptr, Source::seek));
    AVFormatContext* context = libav::format().allocContext();
    if (!io_ || context == nullptr) {
        throw std::bad_alloc();
    }
    context->pb = io_.get();
    AVDictionary* options = nullptr;
    codec().dictSet(&options, "ignore_editlist", edits == Edits::Ignore ? "1" : "0", 0);
    const int status =
        libav::format().openInput(&context, "", libav::format().findInputFormat(format), &options);
    codec().dictFree(&options);
    if (status < 0) {
        refuse(); // the context has been freed
    }
    context_.reset(context);
    if (context_->nb_streams == 0) {
        refuse();
    }
}

Demuxer::~Demuxer() = default;

void Demuxer::refuse() const {
    throw pcm::Failure(pcm::Failure::Kind::Input,
                       input_.name() + ": is damaged: its header contradicts itself");
}

std::span<AVStream* const> Demuxer::streams() const {
    return {context_->streams, context_->nb_streams};
}

CodecContext Demuxer::openDecoder(const AVStream& stream, AVSampleFormat wanted) const {
    const AVCodec* const decoder = codec().findDecoder(stream.codecpar->codec_id);
    if (decoder == nullptr) {
        refuse();
    }
    CodecContext opened = makeContext(decoder);
    // Without these a frame with a wrong checksum would pass.
    opened->err_recognition = AV_EF_CRCCHECK | AV_EF_EXPLODE;
    opened->request_sample_fmt = wanted;
    if (codec().toContext(opened.get(), stream.codecpar) < 0 ||
        codec().open(opened.get(), nullptr, nullptr) < 0) {
        refuse();
    }
    return opened;
}

bool Demuxer::read(AVPacket& packet) {
    codec().packetUnref(&packet);
    return format().readFrame(context_.get(), &packet) >= 0;
}

} // namespace quav::libav
