#include "codecs/Codec.h"

#include "codecs/DecodeFlacTask.h"
#include "codecs/DecodeWavpackTask.h"
#include "codecs/EncodeFlacTask.h"
#include "codecs/EncodeWavpackTask.h"
#include "codecs/FlacCommand.h"
#include "codecs/WavpackTool.h"
#include "engine/ToolsFolder.h"

#include <algorithm>

namespace quav {

namespace {

const AudioFormat& aiffOrWav(const OptionValues& values) {
    return values[decodeOptions().outputFormat] == DecodeTarget::Aiff ? formats::aiff
                                                                      : formats::wav;
}

/// What `flac` reads itself: files of its own kind, and whatever holds plain samples.
bool isReadByFlac(const QString& source) {
    const AudioFormat* format = formatOf(source);
    return !format || !format->isPacked || *format == formats::flac;
}

std::vector<ToolCall> encodeFLAC(const OptionValues& values, const Job& job) {
    const EncodeOptions& rows = encodeOptions();
    const FlacEncodeOptions flac{values[rows.flacLevel], values[rows.flacLax],
                                 values[rows.flacKeepForeignMetadata], values[rows.flacVerify],
                                 job.existing == OutputGuard::Existing::Overwrite};
    return {{QStringLiteral("flac"), flacEncodeArguments(flac, job.source(), job.output())}};
}

ConvertingTask makeFlacEncoder(const Job& job, const Services& services,
                               const std::shared_ptr<QUAVTaskResults>& batch) {
    const ToolCall& call = job.steps.front();
    return ConvertingTask::of(std::make_shared<EncodeFlacTask>(
        job.source(), services, services.tools.tool(call.tool), call.arguments, batch));
}

std::vector<ToolCall> decodeFlac(const OptionValues& values, const Job& job) {
    const DecodeOptions& rows = decodeOptions();
    const FlacDecodeOptions flac{aiffOrWav(values).name(), values[rows.flacKeepForeignMetadata],
                                 values[rows.flacThroughErrors]};
    return {{QStringLiteral("flac"), flacDecodeArguments(flac, job.source(), job.output())}};
}

ConvertingTask makeFlacDecoder(const Job& job, const Services& services) {
    const ToolCall& call = job.steps.front();
    return ConvertingTask::of(std::make_shared<DecodeFlacTask>(
        job.source(), services, services.tools.tool(call.tool), call.arguments));
}

/// What cannot be encoded fails by itself, with its reason.
bool isEverything(const QString& /*source*/) {
    return true;
}

std::vector<ToolCall> encodeWavpack(const OptionValues& values, const Job& job) {
    auto input = EncoderTask::inputFor(job.source(), job.output());
    if (!input) {
        return {};
    }
    const bool isFast = values[encodeOptions().wavepackFormat] == WavpackMode::Fast;
    const QString level = isFast ? QStringLiteral("-f") : QStringLiteral("-h");
    input->steps.push_back(
        {QStringLiteral("wavpack"), wavpack::encodeArguments(level, input->path, job.output())});
    return input->steps;
}

ConvertingTask makeWavpackEncoder(const Job& job, const Services& services,
                                  const std::shared_ptr<QUAVTaskResults>& batch) {
    return ConvertingTask::of(std::make_shared<EncodeWavpackTask>(job, services, batch));
}

std::vector<ToolCall> decodeWavpack(const OptionValues& /*values*/, const Job& job) {
    const QString output = DecoderTask::outputOfDecoder(job.output());
    return DecoderTask::stepsTo(
        job.output(), {QStringLiteral("wvunpack"),
                       wavpack::decodeArguments(job.source(), output, output != job.output())});
}

ConvertingTask makeWavpackDecoder(const Job& job, const Services& services) {
    return ConvertingTask::of(std::make_shared<DecodeWavpackTask>(job, services));
}

constexpr std::array table{
    Codec{formats::flac, EncodeTarget::Flac, ExistingOutputs::Asked, isReadByFlac, encodeFLAC,
          makeFlacEncoder, decodeFlac, makeFlacDecoder},
    Codec{formats::wv, EncodeTarget::Wavpack, ExistingOutputs::Refused, isEverything, encodeWavpack,
          makeWavpackEncoder, decodeWavpack, makeWavpackDecoder},
};

} // namespace

std::span<const Codec> codecs() {
    return table;
}

const Codec& codecOf(EncodeTarget target) {
    return *std::find_if(table.begin(), table.end(),
                         [&](const Codec& codec) { return codec.target == target; });
}

const Codec* codecOf(const QString& path) {
    const AudioFormat* format = formatOf(path);
    const auto* const found = std::find_if(table.begin(), table.end(), [&](const Codec& codec) {
        return format && codec.format == *format;
    });
    return found == table.end() ? nullptr : found;
}

} // namespace quav
