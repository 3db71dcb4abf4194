#pragma once

#include "app/Option.h"

namespace quav {

/// The options that encoding and decoding share.
class ConversionOptions : public OptionTable {
protected:
    /// `besideKey` names the control that says whether outputs go beside their sources, and
    /// `besideSetting` where that is kept.
    ConversionOptions(std::initializer_list<const char*> groups, const char* besideKey,
                      QLatin1StringView besideSetting);
    ~ConversionOptions() = default;

    /// The row of the format of the outputs, which each table has of its own type.
    static OptionInfo target(std::span<const OptionChoice> targets);

public:
    /// Whether each output is written next to its source instead of into a chosen folder.
    Option<bool> beside;
    Option<bool> deleteOriginals;
    /// Whether the sound of source and output is compared also when nothing is deleted.
    Option<bool> verifyAudio;
    /// Whether sources are deleted although not all of their tags, pictures and chunks are in the
    /// outputs. Otherwise they are kept, and when all is done it is asked what is to become of
    /// them.
    Option<bool> acceptLosses;
};

namespace optiongroups {
inline constexpr const char* target = QT_TRANSLATE_NOOP("Options", "Target");
inline constexpr const char* flac = QT_TRANSLATE_NOOP("Options", "FLAC");
inline constexpr const char* wavpack = QT_TRANSLATE_NOOP("Options", "WavPack");
inline constexpr const char* output = QT_TRANSLATE_NOOP("Options", "Output");
} // namespace optiongroups

} // namespace quav
