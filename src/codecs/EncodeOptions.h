#pragma once

#include "app/Formats.h"
#include "codecs/ConversionOptions.h"
#include "platform/Settings.h"

#include <array>

namespace quav {

/// What lossless files are made of others. The values are the places in the choice of targets.
enum class EncodeTarget { Flac = 1, Wavpack = 3 };

/// What `wavpack` is told to take its time for.
enum class WavpackMode { Fast, High };

/// The options of the encode tab.
class EncodeOptions : public ConversionOptions {
    using Control = OptionInfo::Control;

public:
    EncodeOptions();

    Option<EncodeTarget> outputFormat{*this, target(targets)};
    Option<int> flacLevel{
        *this,
        {.key = "flacSlider",
         .control = Control::Slider,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "Le&vel"),
         .tip = QT_TRANSLATE_NOOP("Options", "How hard to compress, from 0 (fast) to 8 "
                                             "(small); the sound is the same; with --lax it "
                                             "is left to flac"),
         .passes = "flac -0 … -8",
         .flag = "level",
         .valueName = "N",
         .setting = keys::encodeFlacLevel,
         .applies = levelCounts}};
    Option<bool> flacVerify{
        *this,
        {.key = "flacVerifyButton",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "Verif&y"),
         .tip = QT_TRANSLATE_NOOP("Options", "Decode while encoding and compare with the source"),
         .passes = "flac -V",
         .flag = "verify",
         .setting = keys::flacVerifyButton,
         .applies = isFor<EncodeTarget::Flac>}};
    Option<bool> flacLax{
        *this,
        {.key = "flacLaxButton",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "La&x"),
         .tip = QT_TRANSLATE_NOOP("Options", "Allow streams outside the FLAC subset, for "
                                             "unusual sample rates and resolutions"),
         .passes = "flac --lax",
         .flag = "lax",
         .applies = isFor<EncodeTarget::Flac>}};
    Option<bool> flacKeepForeignMetadata{
        *this,
        {.key = "flacKeepForeignMetadataButton",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "&Keep foreign metadata"),
         .tip = QT_TRANSLATE_NOOP("Options", "Keep the WAV or AIFF chunks that are not audio"),
         .passes = "flac --keep-foreign-metadata",
         .flag = "keep-foreign-metadata",
         .setting = keys::flacKeepForeignMetadataButton,
         .applies = isFor<EncodeTarget::Flac>}};
    /// Whether a fingerprint file is written into each output folder afterwards.
    Option<bool> generateFFP{
        *this,
        {.key = "generateFFPButton",
         .control = Control::Switch,
         .group = optiongroups::flac,
         .label = QT_TRANSLATE_NOOP("Options", "Wr&ite fingerprint file"),
         .tip = QT_TRANSLATE_NOOP("Options", "Write a fingerprint file into each output "
                                             "folder afterwards"),
         .passes = "metaflac --show-md5",
         .flag = "ffp",
         .setting = keys::flacGenerateFFPButton,
         .applies = isFor<EncodeTarget::Flac>}};

    Option<WavpackMode> wavepackFormat{
        *this,
        {.key = "wavepackFormatMatrix",
         .control = Control::Choice,
         .group = optiongroups::wavpack,
         .label = QT_TRANSLATE_NOOP("Options", "Mode"),
         .tip = QT_TRANSLATE_NOOP("Options", "How hard WavPack compresses; the sound is the same"),
         .flag = "mode",
         .valueName = "MODE",
         .choices = wavpackModes,
         .applies = isFor<EncodeTarget::Wavpack>}};

private:
    static bool isTarget(EncodeTarget target, const OptionValues& values);
    template <EncodeTarget target>
    static bool isFor(const OptionValues& values, const ListFacts& /*facts*/) {
        return isTarget(target, values);
    }
    static bool levelCounts(const OptionValues& values, const ListFacts& facts);

    static constexpr std::array wavpackModes{
        OptionChoice{static_cast<int>(WavpackMode::Fast), "fast",
                     QT_TRANSLATE_NOOP("Options", "Fas&t"),
                     QT_TRANSLATE_NOOP("Options", "Compress quickly"), "wavpack -f"},
        OptionChoice{static_cast<int>(WavpackMode::High), "high",
                     QT_TRANSLATE_NOOP("Options", "Hi&gh"),
                     QT_TRANSLATE_NOOP("Options", "Make small files"), "wavpack -h"}};
    static constexpr std::array targets{
        OptionChoice{static_cast<int>(EncodeTarget::Flac), formats::flac.extension,
                     QT_TRANSLATE_NOOP("Options", "F&LAC"),
                     QT_TRANSLATE_NOOP("Options", "Encode to FLAC files")},
        OptionChoice{static_cast<int>(EncodeTarget::Wavpack), formats::wv.extension,
                     QT_TRANSLATE_NOOP("Options", "&WavPack"),
                     QT_TRANSLATE_NOOP("Options", "Encode to WavPack files")}};
};

const EncodeOptions& encodeOptions();

} // namespace quav
