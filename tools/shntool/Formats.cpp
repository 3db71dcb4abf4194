#include "shntool/Formats.h"

#include "shntool/Child.h"
#include "shntool/Console.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace quav::shntool {

namespace {

constexpr std::string_view placeholder = "%f";

const Format* find(std::string_view name) {
    const auto known = std::find_if(formats().begin(), formats().end(),
                                    [&](const Format& one) { return one.name == name; });
    return known != formats().end() ? &*known : nullptr;
}

[[noreturn]] void invalid(std::string_view name) {
    throw ModeError("invalid file format: [" + std::string(name) + "]", ModeError::Kind::Usage);
}

std::vector<std::string> fromEnvironment(std::string_view format, const char* purpose) {
    std::string variable = "ST_";
    for (const char letter : format) {
        variable += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    const char* const value = std::getenv((variable + purpose).c_str());
    return splitWords(value != nullptr ? value : "");
}

void checkPlaceholder(const std::vector<std::string>& command, std::string_view what,
                      std::string_view format) {
    const bool names = std::any_of(command.begin(), command.end(), [](const std::string& word) {
        return word.find(placeholder) != std::string::npos;
    });
    if (!command.empty() && !names) {
        throw ModeError(std::string(what) +
                        " argument list does not contain filename placeholder [%f] for format: [" +
                        std::string(format) + "]");
    }
}

// A program without arguments gets those of the format.
void refineCommand(std::vector<std::string>& command, const std::vector<std::string>& words) {
    if (words.size() == 1 && !command.empty()) {
        command.front() = words.front();
    } else if (!words.empty()) {
        command = words;
    }
}

// Takes "ext=" and the encoder from the words of a format.
void refine(OutputFormat& format, std::vector<std::string> words) {
    constexpr std::string_view extension = "ext=";
    if (!words.empty() && words.front().starts_with(extension)) {
        format.extension = words.front().substr(extension.size());
        words.erase(words.begin());
    }
    refineCommand(format.encoder, words);
}

} // namespace

const std::vector<Format>& formats() {
    static const std::vector<Format> all{
        {"wav", "wav", true, true, "", "", "RIFF WAVE, RF64"},
        {"aiff", "aiff", true, true, "sox -t aiff %f -t wav -", "",
         "Audio Interchange File Format, AIFF-C without loss"},
        {"shn", "shn", true, true, "shorten -x %f -", "shorten - %f", "Shorten"},
        {"flac", "flac", true, true, "flac -c -d -s %f", "flac -s -o %f -",
         "Free Lossless Audio Codec"},
        {"ape", "ape", true, true, "mac %f - -d", "mac - %f -c2000", "Monkey's Audio"},
        {"alac", "m4a", true, false, "alac %f", "", "Apple Lossless in MPEG-4"},
        {"tta", "tta", true, true, "ttaenc -d -o - %f", "ttaenc -e -o %f -", "True Audio"},
        {"wv", "wv", true, true, "wvunpack -q -y %f -o -", "wavpack -q -y - -o %f", "WavPack"},
        {"cust", "", false, true, "", "", "What the encoder writes that is named behind it"},
        {"term", "", false, true, "", "", "WAV on standard output"},
        {"null", "", false, true, "", "", "Nothing, to try what would be done"},
    };
    return all;
}

const Format& findFormat(std::string_view name) {
    const Format* const format = find(name);
    if (format == nullptr) {
        invalid(name);
    }
    return *format;
}

const Format& findOutputFormat(std::string_view name) {
    const Format& format = findFormat(name);
    if (!format.isWritten) {
        invalid(name);
    }
    return format;
}

OutputFormat OutputFormat::parse(const std::vector<std::string>& words) {
    const std::string name = words.empty() ? "" : words.front();
    const Format& known = findOutputFormat(name);
    OutputFormat format{name, std::string(known.extension), splitWords(std::string(known.encoder))};
    refine(format, shntool::fromEnvironment(name, "_ENC"));
    refine(format, {words.begin() + 1, words.end()});
    if (name == "cust" && format.encoder.empty()) {
        throw ModeError("no encoder given for format: [cust]", ModeError::Kind::Usage);
    }
    checkPlaceholder(format.encoder, "encoder", name);
    return format;
}

InputDecoder InputDecoder::parse(const std::string& text) {
    const std::vector<std::string> words = splitWords(text);
    const std::string name = words.empty() ? "" : words.front();
    const Format& format = findFormat(name);
    if (!format.isRead) {
        invalid(name);
    }
    InputDecoder decoder{name, splitWords(std::string(format.decoder))};
    refineCommand(decoder.command, {words.begin() + 1, words.end()});
    checkPlaceholder(decoder.command, "decoder", name);
    return decoder;
}

std::optional<InputDecoder> InputDecoder::fromEnvironment(std::string_view format) {
    const std::vector<std::string> words = shntool::fromEnvironment(format, "_DEC");
    if (words.empty()) {
        return {};
    }
    InputDecoder decoder{std::string(format), splitWords(std::string(findFormat(format).decoder))};
    refineCommand(decoder.command, words);
    checkPlaceholder(decoder.command, "decoder", format);
    return decoder;
}

} // namespace quav::shntool
