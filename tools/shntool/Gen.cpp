#include "audio/pcm/PcmFormat.h"
#include "shntool/Modes.h"
#include "shntool/Work.h"

namespace quav::shntool {

int runGen(const Options& options, Console& console) {
    if (!options.has('l')) {
        throw ModeError("length must be specified");
    }
    constexpr pcm::PcmFormat cd{
        .channels = 2, .bitsPerSample = 16, .bytesPerSample = 2, .sampleRate = 44100};
    const std::string text = options.value('l');
    const Length length = parseLength(text, canonicalHeader(cd, 0).wave);
    warnOfRounding(console, text, length);

    Work work(options, console);
    const WaveHeader header = canonicalHeader(cd, length.bytes);
    const std::string name = work.nameOf("silence");
    Meter meter(console,
                "Generating [" + name + "] (" + work.length(header.wave, length.bytes) + ")",
                length.bytes);
    try {
        const auto output = work.create(name, header);
        const std::string told =
            "error while transferring " + std::to_string(length.bytes) + " bytes of data";
        const bool isDone = work.transfer(output.get(), told, [&] {
            writeZeros(*output, length.bytes + length.bytes % 2);
            output->commit();
        });
        if (!isDone) {
            throw ModeError("failed to generate file");
        }
    } catch (const OutputUnavailable& reason) {
        throw ModeError(reason.what() + std::string(": [") + name + "]");
    }
    meter.done();
    return work.status();
}

} // namespace quav::shntool
