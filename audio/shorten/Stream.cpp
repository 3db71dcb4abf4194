#include "audio/shorten/Stream.h"

#include <algorithm>
#include <array>

namespace quav::shorten {

namespace {

constexpr std::array<SampleType, 6> types{{
    {.number = 1, .bytesPerSample = 1, .isUnsigned = false, .bigEndian = false},
    {.number = 2, .bytesPerSample = 1, .isUnsigned = true, .bigEndian = false},
    {.number = 3, .bytesPerSample = 2, .isUnsigned = false, .bigEndian = true},
    {.number = 4, .bytesPerSample = 2, .isUnsigned = true, .bigEndian = true},
    {.number = 5, .bytesPerSample = 2, .isUnsigned = false, .bigEndian = false},
    {.number = 6, .bytesPerSample = 2, .isUnsigned = true, .bigEndian = false},
}};

template <typename Test>
std::optional<SampleType> find(Test test) {
    const auto* const found = std::find_if(types.begin(), types.end(), test);
    return found == types.end() ? std::nullopt : std::optional(*found);
}

} // namespace

std::optional<SampleType> sampleTypeOf(std::uint32_t number) {
    return find([number](const SampleType& type) { return type.number == number; });
}

std::optional<SampleType> sampleTypeOf(const pcm::PcmFormat& format) {
    return find([&format](const SampleType& type) {
        return type.bytesPerSample == format.bytesPerSample &&
               type.isUnsigned == format.isUnsigned &&
               (type.bytesPerSample == 1 || type.bigEndian == format.bigEndian);
    });
}

} // namespace quav::shorten
