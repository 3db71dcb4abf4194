#include "audio/pcm/Bytes.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/OutputFile.h"
#include "audio/shorten/Decoder.h"
#include "audio/shorten/Encoder.h"
#include "common/ToolMain.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <string>
#include <string_view>

using namespace quav;

namespace {

/// The name of an output beside its input: one of these endings is replaced, any other kept.
std::string outputBeside(const std::string& input, std::span<const std::string_view> endings,
                         std::string_view newEnding) {
    if (input == "-") {
        return input;
    }
    std::string lower = input;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    std::string output = input;
    for (const std::string_view ending : endings) {
        if (lower.ends_with(ending)) {
            output.resize(input.size() - ending.size());
            break;
        }
    }
    return output.append(newEnding);
}

void encodeFile(const std::string& from, const std::string& to) {
    constexpr std::array<std::string_view, 5> endings{".wav", ".wave", ".aif", ".aiff", ".aifc"};
    pcm::InputFile input = pcm::InputFile::open(from);
    pcm::OutputFile output(to.empty() ? outputBeside(from, endings, ".shn") : to);
    shorten::encode(input, output);
    output.commit();
}

void decodeFile(const std::string& from, const std::string& to) {
    constexpr std::array<std::string_view, 1> endings{".shn"};
    pcm::InputFile input = pcm::InputFile::open(from);
    shorten::Decoder decoder(input);
    const bool isAiff = pcm::startsWith(decoder.header(), "FORM");
    pcm::OutputFile output(to.empty() ? outputBeside(from, endings, isAiff ? ".aiff" : ".wav")
                                      : to);
    // A reader that wants no more than the header has it at once.
    output.write(decoder.header());
    output.flush();
    decoder.decode(output);
    output.commit();
}

} // namespace

int main(int argc, char** argv) {
    CLI::App options(
        "Packs WAV and AIFF files of 8 or 16 bits into Shorten files without loss, and "
        "unpacks them. The source stays.",
        "shorten");
    bool decodes = false;
    std::string from;
    std::string to;
    options.add_flag("-x", decodes, "Unpack");
    options.add_option("IN", from, "The file to read; - is standard input")->required();
    options.add_option("OUT", to,
                       "The file to write, new or empty; - is standard output. Usually IN with "
                       "another ending");
    const auto run = [&] {
        decodes ? decodeFile(from, to) : encodeFile(from, to);
        return 0;
    };
    return tools::runTool({options, run, {}}, argc, argv);
}
