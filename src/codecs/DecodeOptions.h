#pragma once

#include "codecs/ConversionOptions.h"

#include <array>

namespace quav {

/// What compressed files are turned back into.
enum class DecodeTarget { Wav, Aiff };

/// The options of the decode tab.
class DecodeOptions : public ConversionOptions {
    using Control = OptionInfo::Control;
    using Otherwise = OptionInfo::Otherwise;

public:
    DecodeOptions();

    Option<DecodeTarget> outputFormat{*this, target(targets)};
    Option<bool> flacThroughErrors{
        *this,
        {.key = "decodeFlacThroughErrors",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "Decode &through errors"),
         .tip = QT_TRANSLATE_NOOP("Options", "Go on after damage instead of stopping at it"),
         .passes = "flac -F",
         .flag = "through-errors",
         .applies = hasFlac,
         .otherwise = Otherwise::Hidden}};
    Option<bool> flacKeepForeignMetadata{
        *this,
        {.key = "flacKeepForeignMetadataButton",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "&Keep foreign metadata"),
         .tip =
             QT_TRANSLATE_NOOP("Options", "Write back the WAV or AIFF chunks that encoding kept"),
         .passes = "flac --keep-foreign-metadata",
         .flag = "keep-foreign-metadata",
         .applies = hasFlac,
         .otherwise = Otherwise::Hidden}};

private:
    static bool hasFlac(const OptionValues& values, const ListFacts& facts);

    static constexpr std::array targets{
        OptionChoice{static_cast<int>(DecodeTarget::Wav), "wav",
                     QT_TRANSLATE_NOOP("Options", "WA&V"),
                     QT_TRANSLATE_NOOP("Options", "Decode to WAV files")},
        OptionChoice{
            static_cast<int>(DecodeTarget::Aiff), "aiff", QT_TRANSLATE_NOOP("Options", "A&IFF"),
            QT_TRANSLATE_NOOP("Options", "Decode to AIFF files"), "flac --force-aiff-format"}};
};

const DecodeOptions& decodeOptions();

} // namespace quav
