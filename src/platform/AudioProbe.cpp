#include "platform/AudioProbe.h"

#include "platform/RegularFile.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <string_view>

namespace quav {

namespace {

constexpr std::uint64_t probedBytes = 8192;

struct CloseInput {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using FormatContext = std::unique_ptr<AVFormatContext, CloseInput>;

FormatContext openInput(const QString& path) {
    // Opened by us first: the library would wait for ever for a pipe.
    const auto file = RegularFile::open(path);
    AVFormatContext* context = nullptr;
    const QByteArray url = file ? "file:" + file->path() : QByteArray();
    if (!file || avformat_open_input(&context, url.constData(), nullptr, nullptr) < 0) {
        return nullptr;
    }
    return FormatContext(context);
}

} // namespace

void silenceAudioLibrary() {
    av_log_set_level(AV_LOG_QUIET);
}

bool isAiffOrWav(const QString& path) {
    auto beginning = RegularFile::beginningOf(path, probedBytes);
    if (!beginning) {
        return false;
    }
    QByteArray& head = *beginning;
    const auto length = static_cast<int>(head.size());
    head.append(AVPROBE_PADDING_SIZE, '\0'); // the prober reads a little past the end
    const AVProbeData data{"", reinterpret_cast<unsigned char*>(head.data()), length, nullptr};
    const AVInputFormat* format = av_probe_input_format(&data, 1);
    return format &&
           (format->name == std::string_view("wav") || format->name == std::string_view("aiff"));
}

std::chrono::milliseconds audioLength(const QString& path) {
    const FormatContext context = openInput(path);
    if (!context) {
        return {};
    }
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        const AVStream& stream = *context->streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO && stream.duration > 0) {
            return std::chrono::milliseconds(
                av_rescale_q(stream.duration, stream.time_base, AVRational{1, 1000}));
        }
    }
    return {};
}

bool isAppleLossless(const QString& path) {
    const FormatContext context = openInput(path);
    if (!context) {
        return false;
    }
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        if (context->streams[i]->codecpar->codec_id == AV_CODEC_ID_ALAC) {
            return true;
        }
    }
    return false;
}

} // namespace quav
