#include "tags/TagFiles.h"

#include <taglib/audioproperties.h>

namespace quav {

bool holdsAudio(const TagLib::File& file) {
    const auto* properties = file.isValid() ? file.audioProperties() : nullptr;
    return properties && properties->sampleRate() > 0;
}

} // namespace quav
