#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Progress.h"
#include "audio/pcm/TerminalText.h"
#include "audio/pcm/WavHeader.h"
#include "audio/tta/Decode.h"
#include "audio/tta/Encode.h"
#include "audio/tta/Stream.h"
#include "common/ToolMain.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace quav;
using pcm::Failure;

namespace {

std::string number(std::uint64_t value, std::size_t width = 0) {
    const std::string digits = std::to_string(value);
    return std::string(width - std::min(width, digits.size()), ' ') + digits;
}

// Programs that follow a test look for a per cent sign: one in a file name must not be taken for
// progress. People still see one.
std::string withoutPercentSigns(std::string text) {
    constexpr const char* fullWidthPercentSign = "\uFF05";
    for (std::size_t at = 0; (at = text.find('%', at)) != std::string::npos;) {
        text.replace(at, 1, fullWidthPercentSign);
    }
    return text;
}

std::string printableName(const std::string& name) {
    return withoutPercentSigns(pcm::printable(name, STDERR_FILENO));
}

class DiscardingSink final : public pcm::ByteSink {
public:
    void write(std::span<const std::uint8_t>) override {}
};

class TtaEnc {
public:
    explicit TtaEnc(CLI::App& options);

    int run();
    std::string describe(const Failure& failure) const;

private:
    void encode(pcm::InputFile& input, pcm::OutputFile& output);
    void decode(const pcm::InputFile& input, pcm::OutputFile& output);
    void test(const pcm::InputFile& input);
    pcm::Progress conversionProgress(const tta::Header& header);
    pcm::Progress testProgress(const tta::Stream& stream);

    bool isEncode_ = false;
    bool isDecode_ = false;
    bool isTest_ = false;
    std::string input_;
    std::string output_;
    std::size_t jobs_ = 1;
    bool lineIsOpen_ = false; // progress stands on the last line of standard error
};

TtaEnc::TtaEnc(CLI::App& options) {
    CLI::Option* encode = options.add_flag("-e,--encode", isEncode_, "Encode WAV or AIFF to TTA");
    CLI::Option* decode = options.add_flag("-d,--decode", isDecode_, "Decode TTA to WAV");
    CLI::Option* test = options.add_flag("-t,--test", isTest_, "Decode, but write nothing");
    CLI::Option* output =
        options.add_option("-o,--output", output_, "File to write; - is standard output")
            ->type_name("FILE");
    options.add_option("INPUT", input_, "File to read; - is standard input")->required();
    options.add_option("-j,--jobs", jobs_, "Frames to work on side by side")
        ->check(CLI::Range(1U, 64U))
        ->type_name("JOBS")
        ->capture_default_str();
    encode->excludes(decode)->excludes(test);
    decode->excludes(test);
    output->excludes(test);
}

int TtaEnc::run() {
    if (!isTest_ && output_.empty()) {
        throw CLI::RequiredError("-o");
    }
    pcm::InputFile input = pcm::InputFile::open(input_);
    if (isTest_) {
        test(std::move(input).spooled("-"));
        return 0;
    }
    pcm::OutputFile output(output_);
    if (!isEncode_) {
        // What the input is stands behind its tags, and where the frames are in front of them.
        input = std::move(input).spooled(output_);
    }
    if (isDecode_ || (!isEncode_ && tta::findStream(input))) {
        decode(input, output);
    } else {
        encode(input, output);
    }
    return 0;
}

std::string TtaEnc::describe(const Failure& failure) const {
    const std::string line =
        std::string(lineIsOpen_ ? "\n" : "") + "ttaenc: " + tools::toldText(failure);
    return isTest_ ? withoutPercentSigns(line) : line;
}

void TtaEnc::encode(pcm::InputFile& input, pcm::OutputFile& output) {
    pcm::PcmReader reader(input);
    const tta::Header header =
        tta::headerFor(reader.format(), reader.countBlocks(output_), input.name());
    pcm::Progress progress = conversionProgress(header);
    tta::encode(reader, header, jobs_, output, progress);
    output.commit();
    progress.finish();
}

void TtaEnc::decode(const pcm::InputFile& input, pcm::OutputFile& output) {
    const tta::Stream stream(input);
    const tta::Header& header = stream.header();
    const pcm::PcmFormat format = header.wavFormat();
    // Programs that read us know the plainest header alone, and read no more when it is all they
    // want.
    const auto kind = output_ == "-" ? pcm::WavKind::Plain : pcm::WavKind::Usual;
    output.write(pcm::wavHeader(format, header.blocks, kind));
    output.flush();
    pcm::Progress progress = conversionProgress(header);
    tta::decode(stream, jobs_, output, progress, [&](const std::string& damage) {
        throw Failure(Failure::Kind::Input, input.name() + ": " + damage);
    });
    output.write(std::vector<std::uint8_t>(pcm::wavPadding(format, header.blocks)));
    output.commit();
    progress.finish();
}

void TtaEnc::test(const pcm::InputFile& input) {
    constexpr std::size_t maximalLines = 20;
    const tta::Stream stream(input);
    const std::size_t frames = stream.header().frames();
    const std::string name = printableName(input.name());
    DiscardingSink nowhere;
    pcm::Progress progress = testProgress(stream);
    std::size_t damagedFrames = 0;
    std::string lines;
    tta::decode(stream, jobs_, nowhere, progress, [&](const std::string& damage) {
        if (++damagedFrames <= maximalLines) {
            lines += '\n' + name + ": " + damage;
        }
    });
    progress.finish();
    if (damagedFrames > 0) {
        if (damagedFrames > maximalLines) {
            lines += "\nand " + number(damagedFrames - maximalLines) + " more";
        }
        pcm::tellUser(lines);
        throw Failure(Failure::Kind::Input, input.name() + ": is damaged in " +
                                                number(damagedFrames) + " of " + number(frames) +
                                                " frames");
    }
    pcm::tellUser("\rverified " + name + ": every frame is intact\n");
}

pcm::Progress TtaEnc::conversionProgress(const tta::Header& header) {
    if (input_ == "-" || output_ == "-") {
        return {};
    }
    lineIsOpen_ = true;
    pcm::Progress progress(header.blocks, [](const pcm::Progress::Moment& moment) {
        return "\rPercent Progress: " + number(moment.percent) + '%' +
               (moment.percent == 100 ? "\n" : "");
    });
    progress.advanceTo(0);
    return progress;
}

pcm::Progress TtaEnc::testProgress(const tta::Stream& stream) {
    lineIsOpen_ = true;
    const std::string start = "verifying " + printableName(stream.name()) + ", ";
    const std::string back(12, '\b');
    pcm::Progress progress(
        stream.header().blocks, [start, back](const pcm::Progress::Moment& moment) {
            return (moment.percent == 0 ? start : back) + number(moment.percent, 3) + "% done...";
        });
    progress.advanceTo(0);
    return progress;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App options("Turns WAV and AIFF files into TTA files, and these into WAV files", "ttaenc");
    TtaEnc ttaEnc(options);
    return tools::runTool(
        {.options = options,
         .run = [&] { return ttaEnc.run(); },
         .describe = [&](const Failure& failure) { return ttaEnc.describe(failure); }},
        argc, argv);
}
