#include "codecs/DecodeOptions.h"

#include "app/Formats.h"
#include "app/ListFacts.h"
#include "platform/Settings.h"

namespace quav {

// What is for FLAC files alone stands last, so that nothing moves when it comes and goes.
DecodeOptions::DecodeOptions()
    : ConversionOptions({optiongroups::target, optiongroups::output, optiongroups::flac},
                        "sourceDecodeButton", keys::decodeToSourceDirectory) {}

bool DecodeOptions::hasFlac(const OptionValues& /*values*/, const ListFacts& facts) {
    return facts.hasFormat(formats::flac.name());
}

const DecodeOptions& decodeOptions() {
    static const DecodeOptions options;
    return options;
}

} // namespace quav
