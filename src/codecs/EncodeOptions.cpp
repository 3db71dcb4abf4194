#include "codecs/EncodeOptions.h"

#include "app/OptionValues.h"

namespace quav {

EncodeOptions::EncodeOptions()
    : ConversionOptions(
          {optiongroups::target, optiongroups::flac, optiongroups::wavpack, optiongroups::output},
          "sourceEncodeButton", keys::encodeToSourceDirectory) {
    comesWith({"archive",
               QT_TRANSLATE_NOOP("Presets", "Archive"),
               {flacLevel.is(8), flacVerify.is(true), generateFFP.is(true)}});
    comesWith({"fast", QT_TRANSLATE_NOOP("Presets", "Fast"), {flacLevel.is(3)}});
}

bool EncodeOptions::isTarget(EncodeTarget target, const OptionValues& values) {
    return values[encodeOptions().outputFormat] == target;
}

bool EncodeOptions::levelCounts(const OptionValues& values, const ListFacts& /*facts*/) {
    return isTarget(EncodeTarget::Flac, values) && !values[encodeOptions().flacLax];
}

const EncodeOptions& encodeOptions() {
    static const EncodeOptions options;
    return options;
}

} // namespace quav
