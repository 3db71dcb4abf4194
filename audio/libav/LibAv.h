#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>

/// FFmpeg's libraries, loaded when they are first asked for: linking them would load a hundred
/// libraries at every start of a tool, most of which only look at a header. Loaded once, they stay.
///
/// To use one more function, add its line to Codec or Format.
namespace quav::libav {

/// An address that becomes whatever function pointer it is assigned to.
class Symbol {
public:
    explicit Symbol(void* address) : address_(address) {}

    template <typename Function>
    operator Function*() const {
        return reinterpret_cast<Function*>(address_);
    }

private:
    void* address_;
};

/// One library of FFmpeg, of the version that this program was built for.
class Library {
public:
    /// Throws pcm::Failure that tells what to install when the library is not there.
    Library(const char* name, int majorVersion);

    /// Throws pcm::Failure when the library has no such function.
    Symbol operator[](const char* function) const;

private:
    void* handle_;
};

/// The functions of libavcodec and libavutil in use.
struct Codec {
    Library avutil{"libavutil", LIBAVUTIL_VERSION_MAJOR};
    decltype(&::av_dict_free) dictFree = avutil["av_dict_free"];
    decltype(&::av_dict_set) dictSet = avutil["av_dict_set"];
    decltype(&::av_free) free = avutil["av_free"];
    decltype(&::av_frame_alloc) frameAlloc = avutil["av_frame_alloc"];
    decltype(&::av_frame_free) frameFree = avutil["av_frame_free"];
    decltype(&::av_frame_unref) frameUnref = avutil["av_frame_unref"];
    decltype(&::av_log_set_level) logSetLevel = avutil["av_log_set_level"];
    decltype(&::av_mallocz) mallocz = avutil["av_mallocz"];

    Library avcodec{"libavcodec", LIBAVCODEC_VERSION_MAJOR};
    decltype(&::av_packet_alloc) packetAlloc = avcodec["av_packet_alloc"];
    decltype(&::av_packet_free) packetFree = avcodec["av_packet_free"];
    decltype(&::av_packet_unref) packetUnref = avcodec["av_packet_unref"];
    decltype(&::avcodec_alloc_context3) allocContext = avcodec["avcodec_alloc_context3"];
    decltype(&::avcodec_find_decoder) findDecoder = avcodec["avcodec_find_decoder"];
    decltype(&::avcodec_free_context) freeContext = avcodec["avcodec_free_context"];
    decltype(&::avcodec_open2) open = avcodec["avcodec_open2"];
    decltype(&::avcodec_parameters_to_context) toContext = avcodec["avcodec_parameters_to_context"];
    decltype(&::avcodec_receive_frame) receiveFrame = avcodec["avcodec_receive_frame"];
    decltype(&::avcodec_send_packet) sendPacket = avcodec["avcodec_send_packet"];
};

/// The functions of libavformat in use.
struct Format {
    Library avformat{"libavformat", LIBAVFORMAT_VERSION_MAJOR};
    decltype(&::av_find_input_format) findInputFormat = avformat["av_find_input_format"];
    decltype(&::av_read_frame) readFrame = avformat["av_read_frame"];
    decltype(&::avformat_alloc_context) allocContext = avformat["avformat_alloc_context"];
    decltype(&::avformat_close_input) closeInput = avformat["avformat_close_input"];
    decltype(&::avformat_open_input) openInput = avformat["avformat_open_input"];
    decltype(&::avio_alloc_context) allocIo = avformat["avio_alloc_context"];
    decltype(&::avio_context_free) freeIo = avformat["avio_context_free"];
};

/// Loads libavcodec and libavutil at the first call, and silences them. From any thread.
const Codec& codec();

/// Loads libavformat at the first call.
const Format& format();

/// Gives an object of FFmpeg's back to the library that made it.
struct Deleter {
    void operator()(AVIOContext* context) const {
        codec().free(context->buffer);
        format().freeIo(&context);
    }
    void operator()(AVCodecContext* context) const { codec().freeContext(&context); }
    void operator()(AVFormatContext* context) const { format().closeInput(&context); }
    void operator()(AVFrame* frame) const { codec().frameFree(&frame); }
    void operator()(AVPacket* packet) const { codec().packetFree(&packet); }
};
using CodecContext = std::unique_ptr<AVCodecContext, Deleter>;
using FormatContext = std::unique_ptr<AVFormatContext, Deleter>;
using Frame = std::unique_ptr<AVFrame, Deleter>;
using IoContext = std::unique_ptr<AVIOContext, Deleter>;
using Packet = std::unique_ptr<AVPacket, Deleter>;

/// These throw std::bad_alloc when there is no memory.
CodecContext makeContext(const AVCodec* codec);
Frame makeFrame();
Packet makePacket();

} // namespace quav::libav
