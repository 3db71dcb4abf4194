#include "codecs/EncodeOptions.h"

#include "app/OptionValues.h"

namespace quav {

EncodeOptions::EncodeOptions()
    : ConversionOptions(
          {optiongroups::target, optiongroups::flac, optiongroups::wavpack, optiongroups::output},
          "sourceEncodeButton", keys::encodeToSourceDirectory) {}

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
