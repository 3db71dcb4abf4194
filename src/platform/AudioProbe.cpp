#include "platform/AudioProbe.h"

#include "audio/file/AudioFile.h"
#include "audio/flac/StreamInfo.h"
#include "audio/pcm/InputFile.h"
#include "audio/wav/Wave.h"
#include "platform/RegularFile.h"

extern "C" {
#include <libavformat/avformat.h>
}

#include <QByteArray>
#include <QFile>

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
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

std::chrono::milliseconds lengthOf(std::uint64_t blocks, std::uint64_t rate) {
    return std::chrono::milliseconds(rate == 0 ? 0 : (blocks * 1000 + rate / 2) / rate);
}

// Much cheaper than opening the file to decode it, which also looks at its end.
std::optional<AudioDescription> describeFlac(const std::string& path) {
    const auto info = flac::readStreamInfo(pcm::InputFile::open(path));
    if (!info) {
        return std::nullopt;
    }
    const bool isCd = info->sampleRate == 44100 && info->channels == 2 && info->bits == 16;
    constexpr std::uint64_t blocksPerSector = wav::sectorSize / 4;
    return AudioDescription{QStringLiteral("flac"),
                            lengthOf(info->total, info->sampleRate),
                            static_cast<int>(info->sampleRate),
                            static_cast<int>(info->bits),
                            static_cast<int>(info->channels),
                            isCd ? static_cast<int>(info->total % blocksPerSector * 4) : 0};
}

AudioDescription describeOther(const std::string& path) {
    audio::OpenSettings settings;
    settings.learnsLength = false;
    const audio::AudioFile file = audio::AudioFile::open(path, settings);
    const wav::Wave& wave = file.wave();
    const auto align = wave.format().blockAlign();
    return {QString::fromStdString(file.format()),
            lengthOf(align == 0 ? 0 : wave.dataSize / align, wave.rate),
            static_cast<int>(wave.rate),
            static_cast<int>(wave.validBits),
            static_cast<int>(wave.channels),
            wave.isCdQuality() ? static_cast<int>(wave.misalignment()) : 0};
}

/// What we do not read ourselves.
std::optional<AudioDescription> describeForeign(const QString& path) {
    const FormatContext context = openInput(path);
    for (unsigned i = 0; context && i < context->nb_streams; ++i) {
        const AVStream& stream = *context->streams[i];
        const AVCodecParameters& codec = *stream.codecpar;
        if (codec.codec_type != AVMEDIA_TYPE_AUDIO) {
            continue;
        }
        AudioDescription found;
        found.format = QString::fromLatin1(avcodec_get_name(codec.codec_id));
        if (stream.duration > 0) {
            found.length = std::chrono::milliseconds(
                av_rescale_q(stream.duration, stream.time_base, AVRational{1, 1000}));
        }
        found.sampleRate = codec.sample_rate;
        found.bits = codec.bits_per_raw_sample;
        found.channels = codec.ch_layout.nb_channels;
        return found;
    }
    return std::nullopt;
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

tl::expected<AudioDescription, QString> describeAudio(const QString& path) {
    const std::string name = QFile::encodeName(path).toStdString();
    try {
        // Opened by us first: a pipe would let us wait for ever.
        if (!RegularFile::open(path)) {
            return tl::make_unexpected(QString());
        }
        const auto flac = describeFlac(name);
        return flac ? *flac : describeOther(name);
    } catch (const std::exception& failure) {
        if (auto foreign = describeForeign(path)) {
            return *foreign;
        }
        return tl::make_unexpected(QString::fromUtf8(failure.what()));
    }
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
