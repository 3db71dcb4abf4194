#include "codecs/EncoderTask.h"

#include "app/Formats.h"
#include "codecs/FlacOutput.h"
#include "platform/PathNames.h"
#include "tags/TagLibTagsHelper.h"

#include <QCoreApplication>

#include <stdexcept>
#include <utility>

namespace quav {

namespace {

ToolReport readFlac(const QString& piece) {
    return {flacoutput::decodePercentage(piece)};
}

/// What is shown while a source is being brought to the encoder.
QString statusOfDecoding(const AudioFormat* format) {
    return !format ? QString()
           : *format == formats::m4a
               ? QCoreApplication::translate("EncoderTask", "Decoding ALAC to Wav")
           : *format == formats::flac
               ? QCoreApplication::translate("EncoderTask", "Decoding FLAC to Wav")
           : *format == formats::shn
               ? QCoreApplication::translate("EncoderTask", "Decoding SHN to Wav")
               : QString();
}

/// Who reads the tags of a source, and what is shown while they are written.
struct TagSource {
    const AudioFormat& format;
    TagsObject (TagLibTagsHelper::*read)(const QString& path) const;
    const char* status;
};

constexpr TagSource tagSources[] = {{formats::flac, &TagLibTagsHelper::tagsForFlacFile,
                                     QT_TRANSLATE_NOOP("EncoderTask", "Copying FLAC Tags")},
                                    {formats::aiff, &TagLibTagsHelper::tagsForAIFFFile,
                                     QT_TRANSLATE_NOOP("EncoderTask", "Copying Aiff Tags")},
                                    {formats::wav, &TagLibTagsHelper::tagsForWAVEFile,
                                     QT_TRANSLATE_NOOP("EncoderTask", "Copying WAV Tags")}};

} // namespace

EncoderTask::EncoderTask(const Job& job, const Services& services,
                         std::shared_ptr<QUAVTaskResults> results, Encoder encoder)
    : BackgroundConversion(job, services), encoder_(std::move(encoder)) {
    setResults(std::move(results));
}

std::optional<EncoderTask::Input> EncoderTask::inputFor(const QString& source,
                                                        const QString& output) {
    const AudioFormat* format = formatOf(source);
    if (!format) {
        return std::nullopt;
    }
    if (*format == formats::wav) {
        return Input{{}, source};
    }
    const QString wav = passedOn(output);
    if (*format == formats::flac) {
        return Input{
            {{QStringLiteral("flac"),
              {QStringLiteral("-d"), source, QStringLiteral("-o"), wav, QStringLiteral("-f")}}},
            wav};
    }
    if (*format == formats::aiff || *format == formats::shn || *format == formats::m4a) {
        return Input{{{QString(), {source, wav}}}, wav};
    }
    return std::nullopt;
}

void EncoderTask::aboutToBegin() {
    showStatus(encoder_.words.status);
    if (!inputFor(fileName(), outFile())) {
        // Not translated: whoever searches reports for it finds it in any language.
        throw std::runtime_error("Unknown file extension " + formatWord(fileName()).toStdString());
    }
}

BackgroundConversion::Words EncoderTask::wordsOf(const ToolCall& step) const {
    if (step.tool == encoder_.tool) {
        return {{}, encoder_.words.progress, encoder_.words.read};
    }
    return {statusOfDecoding(formatOf(fileName())),
            QCoreApplication::translate("EncoderTask", "Decoding to Wav: %1%"),
            step.tool.isEmpty() ? nullptr : readFlac};
}

TagResult EncoderTask::copyTags() {
    const AudioFormat* format = formatOf(fileName());
    for (const TagSource& source : tagSources) {
        if (format && source.format == *format) {
            TagLibTagsHelper helper;
            const TagsObject tags = (helper.*source.read)(fileName());
            showStatus(QCoreApplication::translate("EncoderTask", source.status));
            TagResult written = writeTags(helper, tags);
            noteProblems(helper.problems());
            return written;
        }
    }
    return {};
}

} // namespace quav
