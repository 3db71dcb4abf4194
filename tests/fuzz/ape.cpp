#include "Fuzz.h"
#include "audio/ape/ApeDecoder.h"

using namespace quav;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const pcm::InputFile input = fuzz::inputOf(data, size);
        ape::ApeFile file(input);
        if (file.version() != ape::newestVersion) {
            return 0; // FFmpeg reads these.
        }
        if (size % 2 == 0) {
            ape::verifyApe(file, 1, {});
            return 0;
        }
        if (size % 3 == 0) {
            file.preferPlainHeader();
        }
        fuzz::BoundedSink sink(std::size_t{1} << 20);
        sink.write(file.wavHeader());
        ape::decodeApe(file, 1, {}, sink);
    } catch (const pcm::Failure&) {
        // A clear message is a good end.
    }
    return 0;
}
