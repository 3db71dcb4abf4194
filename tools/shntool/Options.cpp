#include "shntool/Options.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/Progress.h"
#include "shntool/Child.h"
#include "shntool/TextFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <getopt.h>
#include <sstream>
#include <unistd.h>
#include <utility>

namespace quav::shntool {

namespace {

constexpr const char* globalLetters = "DF:HP:hi:qr:vw";
constexpr const char* outputLetters = "O:a:d:o:z:";

constexpr const char* globalHelp =
    "  -D       tell how files are read\n"
    "  -F FILE  take the names of the files from FILE, one on each line\n"
    "  -H       show hours in times: h:mm:ss\n"
    "  -P TYPE  how progress is shown: pct (usual), dot, spin, face or none\n"
    "  -i FMT   read a format with another program: \"FORMAT DECODER ARGUMENTS\"; %f in the\n"
    "           arguments stands for the file\n"
    "  -q       tell nothing but results and errors\n"
    "  -r ORDER order of the files: none (as given, usual), natural or ascii\n"
    "  -w       no warnings\n"
    "  -h       this help\n"
    "  -v       the version\n"
    "  --       what follows are names of files\n";

constexpr const char* outputHelp =
    "  -O WHEN  write over files: ask (usual), always or never\n"
    "  -a TEXT  put TEXT in front of output names\n"
    "  -d DIR   folder for outputs\n"
    "  -o FMT   format of outputs: \"FORMAT [ext=EXTENSION] [ENCODER ARGUMENTS]\"; %f in the\n"
    "           arguments stands for the file. Also cust ext=EXTENSION { ENCODER ARGUMENTS }\n"
    "  -z TEXT  put TEXT behind output names, before the extension\n";

enum class Order { Given, Natural, Ascii };

constexpr std::array<std::pair<const char*, ProgressKind>, 5> kinds{
    {{"pct", ProgressKind::Percent},
     {"dot", ProgressKind::Dots},
     {"spin", ProgressKind::Spinner},
     {"face", ProgressKind::Face},
     {"none", ProgressKind::None}}};
constexpr std::array<std::pair<const char*, Order>, 3> orders{
    {{"none", Order::Given}, {"natural", Order::Natural}, {"ascii", Order::Ascii}}};
constexpr std::array<std::pair<const char*, Overwrite>, 3> actions{
    {{"ask", Overwrite::Ask}, {"always", Overwrite::Always}, {"never", Overwrite::Never}}};

[[noreturn]] void wrongUsage(const std::string& text) {
    throw ModeError(text, ModeError::Kind::Usage);
}

std::string helpText(const Mode& mode) {
    std::string text = std::string("Usage: shntool ") + mode.name + " [OPTIONS] [FILES]\n\n" +
                       mode.description + ".\n\n";
    if (*mode.help != '\0') {
        text += std::string("Options of this mode:\n") + mode.help + '\n';
    }
    if (mode.writes) {
        text += std::string("Options for outputs:\n") + outputHelp + '\n';
    }
    return text + "Options of every mode:\n" + globalHelp;
}

template <typename Value, std::size_t Size>
Value choice(const std::array<std::pair<const char*, Value>, Size>& choices, const char* text,
             const char* what) {
    const auto chosen = std::find_if(choices.begin(), choices.end(), [&](const auto& one) {
        return std::strcmp(one.first, text) == 0;
    });
    if (chosen == choices.end()) {
        wrongUsage("invalid " + std::string(what) + ": [" + text + "]");
    }
    return chosen->second;
}

// Stands between the words of a format that was given as arguments of their own, which may hold
// blanks.
constexpr char wordEnd = '\x1f';

// Makes one argument of "cust ext=EXTENSION { ENCODER ARGUMENTS }" behind -o, given as many, which
// is kept in `joined`.
void joinBracedFormats(std::vector<char*>& arguments, std::deque<std::string>& joined) {
    const auto is = [](const char* argument, const char* text) {
        return std::strcmp(argument, text) == 0;
    };
    for (std::size_t at = 0; at + 1 < arguments.size() && !is(arguments[at], "--"); ++at) {
        if (!is(arguments[at], "-o") || !is(arguments[at + 1], "cust")) {
            continue;
        }
        const auto first = arguments.begin() + static_cast<std::ptrdiff_t>(at) + 1;
        auto word = first + 1;
        std::string format = "cust";
        if (word != arguments.end() && std::strncmp(*word, "ext=", 4) == 0) {
            format += wordEnd + std::string(*word++);
        }
        if (word == arguments.end() || !is(*word, "{")) {
            continue; // "-o cust", and an encoder from the environment
        }
        const auto end =
            std::find_if(word, arguments.end(), [&](const char* one) { return is(one, "}"); });
        if (end == arguments.end()) {
            wrongUsage("no closing } after the encoder of format: [cust]");
        }
        for (++word; word != end; ++word) {
            format += wordEnd + std::string(*word);
        }
        *first = joined.emplace_back(format).data();
        arguments.erase(first + 1, end + 1);
    }
}

std::vector<std::string> namesIn(const std::string& text) {
    std::istringstream lines(text);
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (!line.empty()) {
            names.push_back(line);
        }
    }
    return names;
}

std::vector<std::string> namesFromFile(const std::string& path) {
    try {
        return namesIn(readText(path));
    } catch (const pcm::Failure&) {
        throw ModeError("could not open input filename file: [" + path + "]");
    }
}

void sortFiles(std::vector<std::string>& files, Order order) {
    if (order == Order::Natural) {
        std::stable_sort(files.begin(), files.end(), [](const auto& one, const auto& other) {
            return ::strverscmp(one.c_str(), other.c_str()) < 0;
        });
    } else if (order == Order::Ascii) {
        std::stable_sort(files.begin(), files.end());
    }
}

// The options while they are being read.
struct Parsing {
    explicit Parsing(const Mode& of) : mode(of) { options.console.mode = mode.name; }

    const Mode& mode;
    Options options;
    std::vector<std::string> format;
    std::string namesFile;
    Order order = Order::Given;

    // Returns whether that was all: the help or the version.
    bool take(char option, const char* value) {
        switch (option) {
        case 'h':
            printText(helpText(mode));
            return true;
        case 'v':
            printText(versionText() + '\n');
            return true;
        case '?': {
            // getopt has said what is wrong.
            pcm::tellUser(helpText(mode));
            throw ModeError("");
        }
        default:
            if (std::strchr(globalLetters, option) != nullptr) {
                takeGlobal(option, value);
            } else if (mode.writes && std::strchr(outputLetters, option) != nullptr) {
                takeOutput(option, value);
            } else {
                options.own[option] = value != nullptr ? value : "";
                options.order += option;
            }
            return false;
        }
    }

    void takeGlobal(char option, const char* value) {
        switch (option) {
        case 'D':
            options.console.debug = true;
            break;
        case 'F':
            namesFile = value;
            break;
        case 'H':
            options.times = TimeStyle::Hours;
            break;
        case 'P':
            options.console.progress = choice(kinds, value, "progress indicator type");
            break;
        case 'i':
            options.decoders.push_back(InputDecoder::parse(value));
            break;
        case 'q':
            options.console.quiet = true;
            break;
        case 'r':
            order = choice(orders, value, "reorder type");
            break;
        default: // w
            options.console.warnings = false;
        }
    }

    void takeOutput(char option, const char* value) {
        switch (option) {
        case 'O':
            options.overwrite = choice(actions, value, "overwrite action");
            break;
        case 'a':
            options.prefix = value;
            break;
        case 'd':
            options.folder = value;
            break;
        case 'o':
            format = splitFormat(value);
            break;
        default: // z
            options.postfix = value;
        }
    }

    // The words of "FORMAT [ext=EXTENSION] [ENCODER ARGUMENTS]", perhaps with braces.
    static std::vector<std::string> splitFormat(const char* value) {
        if (std::strchr(value, wordEnd) != nullptr) {
            std::istringstream stream(value);
            std::vector<std::string> words;
            for (std::string word; std::getline(stream, word, wordEnd);) {
                words.push_back(word);
            }
            return words;
        }
        std::vector<std::string> words = splitWords(value);
        std::erase_if(words, [](const std::string& word) { return word == "{" || word == "}"; });
        return words;
    }
};

} // namespace

std::string Options::value(char option) const {
    const auto found = own.find(option);
    return found != own.end() ? found->second : "";
}

char Options::lastOf(const std::string& choices) const {
    const std::size_t last = order.find_last_of(choices);
    return last != std::string::npos ? order[last] : choices.front();
}

std::optional<Options> parseOptions(const Mode& mode, std::vector<char*> arguments) {
    Parsing parsing(mode);
    std::deque<std::string> joined;
    joinBracedFormats(arguments, joined);

    const std::string letters =
        std::string(globalLetters) + (mode.writes ? outputLetters : "") + mode.letters;
    constexpr std::array<option, 3> longOptions{
        {{"help", no_argument, nullptr, 'h'}, {"version", no_argument, nullptr, 'v'}, {}}};
    const int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    int letter = 0;
    while ((letter = ::getopt_long(count, arguments.data(), letters.c_str(), longOptions.data(),
                                   nullptr)) >= 0) {
        if (parsing.take(static_cast<char>(letter), ::optarg)) {
            return {};
        }
    }
    Options options = std::move(parsing.options);
    if (mode.writes) {
        options.output = OutputFormat::parse(
            parsing.format.empty() ? std::vector<std::string>{"wav"} : parsing.format);
    }
    options.files.assign(arguments.begin() + ::optind, arguments.begin() + count);
    if (!parsing.namesFile.empty()) {
        options.files = namesFromFile(parsing.namesFile);
    } else if (options.files.empty() && mode.reads) {
        if (::isatty(STDIN_FILENO) == 1) {
            pcm::tellUser("enter the names of the files, one on each line:\n");
        }
        options.files = namesIn(readText("-"));
    }
    // A hyphen alone would be standard input.
    std::replace(options.files.begin(), options.files.end(), std::string("-"), std::string("./-"));
    sortFiles(options.files, parsing.order);
    return options;
}

namespace {

template <typename Value, std::size_t Size>
std::string wordsOf(const std::array<std::pair<const char*, Value>, Size>& choices) {
    std::string words;
    for (const auto& one : choices) {
        words += (words.empty() ? "" : " ") + std::string(one.first);
    }
    return words;
}

std::string formatNames(bool Format::*isFit) {
    std::string names;
    for (const Format& format : formats()) {
        if (format.*isFit) {
            names += (names.empty() ? "" : " ") + std::string(format.name);
        }
    }
    return names;
}

std::string choicesOf(const Mode& mode, char letter) {
    switch (letter) {
    case 'P':
        return wordsOf(kinds);
    case 'r':
        return wordsOf(orders);
    case 'i':
        return formatNames(&Format::isRead);
    case 'O':
        return mode.writes ? wordsOf(actions) : "";
    case 'o':
        return mode.writes ? formatNames(&Format::isWritten) : "";
    default:
        return "";
    }
}

} // namespace

std::vector<OptionText> optionsOf(const Mode& mode) {
    std::vector<OptionText> options;
    std::istringstream lines(std::string(mode.help) + (mode.writes ? outputHelp : "") + globalHelp);
    bool isOption = false; // what the lines are about
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (line.starts_with("  -")) {
            isOption = word.size() == 2 && word != "--";
            if (isOption) {
                options.push_back({word[1], "", choicesOf(mode, word[1]), ""});
                if (line[5] != ' ') {
                    words >> options.back().value;
                }
                word.clear();
                words >> word;
            }
        } else {
            isOption = isOption && line.starts_with("     ");
        }
        for (; isOption && !word.empty(); word.clear(), words >> word) {
            std::string& text = options.back().description;
            text += (text.empty() ? "" : " ") + word;
        }
    }
    return options;
}

std::string versionText() {
    return "shntool (Quav Workbench) " QUAV_VERSION;
}

} // namespace quav::shntool
