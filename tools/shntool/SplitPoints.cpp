#include "shntool/SplitPoints.h"

#include <cctype>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace quav::shntool {

namespace {

std::string trimmed(const std::string& text) {
    constexpr const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The first word of a line in capitals, and what follows it.
struct Command {
    std::string word;
    std::string rest;

    explicit Command(const std::string& line) {
        const std::string text = trimmed(line);
        const std::size_t end = text.find_first_of(" \t");
        word = text.substr(0, end);
        for (char& letter : word) {
            letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        }
        rest = end == std::string::npos ? "" : trimmed(text.substr(end));
    }

    std::string quoted() const {
        const std::size_t first = rest.find('"');
        const std::size_t last = rest.rfind('"');
        const bool isQuoted = first == 0 && last > first;
        std::string text = isQuoted ? rest.substr(1, last - 1) : rest;
        if (!isQuoted) {
            std::erase(text, '"');
        }
        return text;
    }
};

class CueParser {
public:
    explicit CueParser(SplitPoints& to) : to_(to) {}

    void add(const Command& command) {
        if (command.word == "TRACK") {
            to_.tracks.emplace_back();
        } else if (command.word == "TITLE") {
            (to_.tracks.empty() ? to_.album : to_.tracks.back().title) = command.quoted();
        } else if (command.word == "PERFORMER") {
            (to_.tracks.empty() ? to_.performer : to_.tracks.back().performer) = command.quoted();
        } else if (command.word == "INDEX" && !to_.tracks.empty()) {
            const Command index(command.rest);
            if (std::atoi(index.word.c_str()) == 1) {
                to_.tracks.back().start = timeOf(index.rest);
            }
        }
    }

    // A track without a beginning cannot be split off.
    void finish() {
        std::erase_if(to_.tracks, [](const CueTrack& track) { return track.start.empty(); });
        for (const CueTrack& track : to_.tracks) {
            to_.places.push_back(track.start);
        }
    }

private:
    // m:ss:ff as m:ss.ff
    static std::string timeOf(std::string text) {
        const std::size_t last = text.rfind(':');
        if (last != std::string::npos && text.find(':') != last) {
            text[last] = '.';
        }
        return text;
    }

    SplitPoints& to_;
};

} // namespace

SplitPoints SplitPoints::parse(const std::string& text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    std::vector<std::string> lines;
    std::istringstream stream(text.starts_with(mark) ? text.substr(mark.size()) : text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(trimmed(line));
    }
    SplitPoints points;
    for (const std::string& line : lines) {
        const std::string word = Command(line).word;
        points.isCueSheet =
            points.isCueSheet || word == "TRACK" || word == "INDEX" || word == "FILE";
    }
    if (!points.isCueSheet) {
        points.places = lines;
        return points;
    }
    CueParser parser(points);
    for (const std::string& line : lines) {
        parser.add(Command(line));
    }
    parser.finish();
    return points;
}

} // namespace quav::shntool
