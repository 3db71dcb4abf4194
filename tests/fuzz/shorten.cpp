#include "Fuzz.h"
#include "audio/shorten/Decoder.h"

using namespace quav;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        pcm::InputFile input = fuzz::inputOf(data, size);
        fuzz::BoundedSink sink(std::size_t{1} << 20);
        shorten::Decoder(input).decode(sink);
    } catch (const pcm::Failure&) {
        // A clear message is a good end.
    }
    return 0;
}
